#ifndef ZVCORE_ZVDESKTOPSERVICES_H
#define ZVCORE_ZVDESKTOPSERVICES_H

#include <ZVCore/zvcore_export.h>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QUrl>

// Qt's handler for "http" and "https" links in a process that uses the frame. Every
// QDesktopServices::openUrl() of a web address, from the frame or from the host, passes
// through openUrl(), which tags links that carry "key=" with the language, the product
// id and the channel before the system browser opens them.
class ZVCORE_AUTOTEST_EXPORT ZVDesktopServices : public QObject
{
    Q_OBJECT

public:
    static ZVDesktopServices* Instance();

    // Stored lower-cased.
    void SetLanguage(const QString& language);
    // Stored with every letter p removed, either case.
    void SetPid(const QString& pid);
    // Ignored when empty, so a known channel is never lost.
    void SetCustom(const QString& custom);

    QString GetLanguage() const { return m_language; }
    QString GetPid() const { return m_pid; }
    QString GetCustom() const { return m_custom; }

    // The address openUrl() hands to the system for \a url.
    QUrl TaggedUrl(const QUrl& url) const;

public Q_SLOTS:
    void openUrl(QUrl url);

private:
    ZVDesktopServices();
    ~ZVDesktopServices() override;

    QString m_language;
    QString m_pid;
    QString m_custom;
};

#endif // ZVCORE_ZVDESKTOPSERVICES_H
