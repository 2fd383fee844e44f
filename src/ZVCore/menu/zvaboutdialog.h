#ifndef ZVCORE_ZVABOUTDIALOG_H
#define ZVCORE_ZVABOUTDIALOG_H

#include <ZVCore/zvcore_export.h>
#include <ZVControl/ZVStyleDialog>

#include <QtCore/QString>

class CCustomWidgetTitle;
class QLabel;
class ZVLabel;

// The modal "About Us" box: product name, description, company introduction, home and
// support links, version and copyright. Texts come from application properties, with
// built-in fallbacks, and are filled once, at the first polish.
class ZVCORE_AUTOTEST_EXPORT ZVAboutDialog : public ZVStyleDialog
{
    Q_OBJECT
    Q_PROPERTY(QString linkColor READ linkColor WRITE setLinkColor)

public:
    explicit ZVAboutDialog(QWidget* parent = nullptr);
    ~ZVAboutDialog() override;

    QString linkColor() const;
    void setLinkColor(const QString& color);

    // The home and support addresses shown in the labels (property, else built in)
    // and opened on a click (link file, then property, then built in).
    static QString homeUrlForDisplay();
    static QString homeUrlForOpening();
    static QString supportUrlForDisplay();
    static QString supportUrlForOpening();

protected:
    bool event(QEvent* event) override;

private:
    void fillTexts();

    CCustomWidgetTitle* m_title = nullptr;
    QWidget* m_background = nullptr;
    QLabel* m_logo = nullptr;
    QLabel* m_productName = nullptr;
    QLabel* m_productInfo = nullptr;
    QLabel* m_separator = nullptr;
    QLabel* m_companyInfo = nullptr;
    ZVLabel* m_homeLink = nullptr;
    ZVLabel* m_supportLink = nullptr;
    QLabel* m_version = nullptr;
    QLabel* m_copyright = nullptr;
    QString m_linkColor;
    bool m_filled = false;
};

#endif // ZVCORE_ZVABOUTDIALOG_H
