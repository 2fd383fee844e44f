#include <ZVControl/ZVStyleDialog>

#include <QtGui/QPainter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

ZVStyleDialog::ZVStyleDialog(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    setAttribute(Qt::WA_TranslucentBackground);
}

ZVStyleDialog::~ZVStyleDialog() = default;

void ZVStyleDialog::paintEvent(QPaintEvent* event)
{
    if (!event)
        return;
    // With a translucent window nothing paints a background unless the style sheet does,
    // through PE_Widget.
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}
