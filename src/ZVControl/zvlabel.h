#ifndef ZVCONTROL_ZVLABEL_H
#define ZVCONTROL_ZVLABEL_H

#include <ZVControl/zvcontrol_export.h>

#include <QtWidgets/QLabel>

/*!
 * A label that style sheets can tell apart from Qt's own labels, so that an application
 * sheet can give the framework's labels a look of their own without touching any QLabel
 * inside Qt's dialogs.
 *
 * \code
 * qApp->setStyleSheet(QStringLiteral("ZVLabel { color: #606060; }"));
 * auto* hint = new ZVLabel(QStringLiteral("Drop files here"), panel);
 * \endcode
 */
class ZVCONTROL_EXPORT ZVLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ZVLabel(QWidget* parent = nullptr);
    explicit ZVLabel(const QString& text, QWidget* parent = nullptr);
    ~ZVLabel() override;
};

#endif // ZVCONTROL_ZVLABEL_H
