#include <ZVControl/ZVLabel>
#include <ZVControl/ZVMenu>
#include <ZVControl/ZVStyleButton>
#include <ZVControl/ZVStyleComboBox>
#include <ZVControl/ZVStyleDialog>
#include <ZVControl/ZVStyleWidget>

#include <QtWidgets/QApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    ZVStyleDialog dialog;
    ZVStyleWidget bar(&dialog);
    ZVLabel label(QStringLiteral("label"), &dialog);
    ZVStyleComboBox combo(&dialog);
    ZVStyleButton button(QStringLiteral("OK"), &dialog);
    ZVMenu menu(QStringLiteral("menu"), &dialog);
    if (!(dialog.windowFlags() & Qt::FramelessWindowHint) || label.text() != QStringLiteral("label")
        || menu.title() != QStringLiteral("menu") || button.text() != QStringLiteral("OK")) {
        std::fprintf(stderr, "consumer_control: unexpected widget state\n");
        return 1;
    }
    if (menu.execMenuAtWidget(nullptr, QPoint()) != nullptr) {
        std::fprintf(stderr, "consumer_control: a menu at no widget chose something\n");
        return 1;
    }
    std::printf("consumer_control: ZVControl works\n");
    return 0;
}
