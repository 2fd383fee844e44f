#include <ZVControl/ZVLabel>

ZVLabel::ZVLabel(QWidget* parent)
    : QLabel(parent)
{
}

ZVLabel::ZVLabel(const QString& text, QWidget* parent)
    : QLabel(text, parent)
{
}

ZVLabel::~ZVLabel() = default;
