#include <ZVControl/ZVStyleButton>

ZVStyleButton::ZVStyleButton(QWidget* parent)
    : QPushButton(parent)
{
}

ZVStyleButton::ZVStyleButton(const QString& text, QWidget* parent)
    : QPushButton(text, parent)
{
}

ZVStyleButton::~ZVStyleButton() = default;
