#include <ZVControl/ZVStyleComboBox>

ZVStyleComboBox::ZVStyleComboBox(QWidget* parent)
    : QComboBox(parent)
{
}

ZVStyleComboBox::~ZVStyleComboBox() = default;
