#include "zvdesktopservices.h"

#include <QtCore/QUrlQuery>
#include <QtGui/QDesktopServices>

ZVDesktopServices* ZVDesktopServices::Instance()
{
    static ZVDesktopServices instance;
    return &instance;
}

ZVDesktopServices::ZVDesktopServices() = default;

ZVDesktopServices::~ZVDesktopServices() = default;

void ZVDesktopServices::SetLanguage(const QString& language)
{
    m_language = language.toLower();
}

void ZVDesktopServices::SetPid(const QString& pid)
{
    m_pid = pid;
    m_pid.remove(QLatin1Char('p'), Qt::CaseInsensitive);
}

void ZVDesktopServices::SetCustom(const QString& custom)
{
    if (!custom.isEmpty())
        m_custom = custom;
}

QUrl ZVDesktopServices::TaggedUrl(const QUrl& url) const
{
    QUrl tagged = url;
    // The whole address is searched, not only the query, so "monkey=1" counts too; but
    // an address without a query is never tagged.
    if (tagged.hasQuery() && url.toString().contains(QLatin1String("key="))) {
        // An unknown language or product id still adds its item, with an empty value
        // ("lang="): QUrlQuery would write a null value as a bare "lang".
        const auto value = [](const QString& v) { return v.isNull() ? QString(QLatin1String("")) : v; };
        QUrlQuery query(tagged.query());
        query.addQueryItem(QStringLiteral("lang"), value(m_language));
        query.addQueryItem(QStringLiteral("pid"), value(m_pid));
        if (!m_custom.isEmpty())
            query.addQueryItem(QStringLiteral("custom"), m_custom);
        tagged.setQuery(query);
    }
    return tagged;
}

void ZVDesktopServices::openUrl(QUrl url)
{
    // Called from inside the registered handler, Qt hands the address to the system
    // instead of calling the handler again.
    QDesktopServices::openUrl(TaggedUrl(url));
}
