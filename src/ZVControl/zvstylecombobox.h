#ifndef ZVCONTROL_ZVSTYLECOMBOBOX_H
#define ZVCONTROL_ZVSTYLECOMBOBOX_H

#include <ZVControl/zvcontrol_export.h>

#include <QtWidgets/QComboBox>

/*!
 * A combo box that style sheets address as \c ZVStyleComboBox, apart from Qt's own.
 *
 * \code
 * qApp->setStyleSheet(QStringLiteral("ZVStyleComboBox { border: 1px solid #c0c0c0; }"));
 * auto* units = new ZVStyleComboBox(panel);
 * units->addItems({QStringLiteral("mm"), QStringLiteral("in")});
 * \endcode
 */
class ZVCONTROL_EXPORT ZVStyleComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ZVStyleComboBox(QWidget* parent = nullptr);
    ~ZVStyleComboBox() override;
};

#endif // ZVCONTROL_ZVSTYLECOMBOBOX_H
