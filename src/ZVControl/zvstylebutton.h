#ifndef ZVCONTROL_ZVSTYLEBUTTON_H
#define ZVCONTROL_ZVSTYLEBUTTON_H

#include <ZVControl/zvcontrol_export.h>

#include <QtWidgets/QPushButton>

/*!
 * A push button that style sheets address as \c ZVStyleButton, apart from Qt's own.
 *
 * \code
 * qApp->setStyleSheet(QStringLiteral(
 *     "ZVStyleButton { color: white; background: #2060c0; border-radius: 3px; }"));
 * auto* ok = new ZVStyleButton(QStringLiteral("OK"), dialog);
 * QObject::connect(ok, &QPushButton::clicked, dialog, &QDialog::accept);
 * \endcode
 */
class ZVCONTROL_EXPORT ZVStyleButton : public QPushButton
{
    Q_OBJECT

public:
    explicit ZVStyleButton(QWidget* parent = nullptr);
    explicit ZVStyleButton(const QString& text, QWidget* parent = nullptr);
    ~ZVStyleButton() override;
};

#endif // ZVCONTROL_ZVSTYLEBUTTON_H
