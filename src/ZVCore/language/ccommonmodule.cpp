#include "ccommonmodule.h"

#include <ZVCore/private/CLanguageStore>
#include <ZVCore/private/XmlGuard>
#include <ZVCore/private/ZVDesktopServices>
#include <ZVCore/private/zvcoreconfig_p.h>
#include <ZVFoundation/CSimpleCrypt>
#include <ZVFoundation/private/ZVQtCompat>

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QSaveFile>
#include <QtCore/QTranslator>
#include <QtCore/QVariant>
#include <QtGui/QDesktopServices>
#include <QtGui/QGuiApplication>
#include <QtXml/QDomDocument>

#include <algorithm>
#include <vector>

namespace ZVUIFramework {

namespace {

QString utf8(const std::string& s)
{
    return QString::fromUtf8(s.data(), int(s.size()));
}

// The whole content of a regular file; anything else (missing, a folder, a FIFO that
// would block) reads as empty.
QByteArray readRegularFile(const QString& path)
{
    if (!QFileInfo(path).isFile())
        return QByteArray();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

// The catalogue records that match the system's language, in the order in which the
// automatic choice considers them. The order comes from an insertion sort under a
// predicate that looks only at its first operand ("a before b whenever a has locale
// names"): each record with locale names is moved to the front in turn, so those
// records come first in reverse file order, then the records without locale names in
// file order. It is written out here because that predicate is no strict weak order,
// which std::sort would be free to mishandle.
std::vector<const MCLanguageInfo*> automaticCandidates(const std::vector<MCLanguageInfo>& catalogue,
                                                       const QString& systemLanguage)
{
    std::vector<const MCLanguageInfo*> named;
    std::vector<const MCLanguageInfo*> unnamed;
    for (const MCLanguageInfo& record : catalogue) {
        if (utf8(record.localeLanguage) != systemLanguage)
            continue;
        if (record.localeName.empty())
            unnamed.push_back(&record);
        else
            named.push_back(&record);
    }
    std::reverse(named.begin(), named.end());
    named.insert(named.end(), unnamed.begin(), unnamed.end());
    return named;
}

bool matchesLocaleName(const MCLanguageInfo& record, const QString& systemName)
{
    if (record.localeName.empty())
        return true;
    const QStringList fragments = utf8(record.localeName).split(QLatin1Char(','));
    for (const QString& fragment : fragments) {
        if (!fragment.isEmpty() && systemName.contains(fragment))
            return true;
    }
    return false;
}

// A creation time in seconds since 1970, or \a missing when the file does not exist.
// Where the file system keeps no birth time (many Linux file systems, or a kernel
// without statx), the last status change stands in for it.
qint64 createdSecs(const QString& path, qint64 missing)
{
    const QFileInfo info(path);
    if (!info.exists())
        return missing;
    QDateTime created = info.birthTime();
    if (!created.isValid())
        created = info.metadataChangeTime();
    return created.isValid() ? created.toSecsSinceEpoch() : missing;
}

QString markerPath(const char* name)
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(name);
}

QString readMarker(const QString& path)
{
    return ZVQtCompat::Utf8UpToNul(readRegularFile(path));
}

} // namespace

CCommonModule* CCommonModule::GetInstance()
{
    // Kept for the life of the process: the translators it installed must not vanish
    // under the application, and its link file is read until the end.
    static CCommonModule* instance = new CCommonModule;
    return instance;
}

CCommonModule::CCommonModule()
    : m_cipher(new CSimpleCrypt(ZVCORE_LINK_CIPHER_KEY))
{
    InitLanguage();
}

CCommonModule::~CCommonModule()
{
    delete m_frameworkTranslator;
    delete m_hostTranslator;
    delete m_cipher;
}

void CCommonModule::InitLanguage()
{
    QStringList offered;
    for (const MCLanguageInfo& record : CLanguageStore::GetInstance()->GetLanguageList())
        offered.append(utf8(record.name));
    const QString name = ChooseLanguage(offered);
    qDebug().noquote().nospace() << "ZVCore: Set Language->" << name;
    SetLanguage(name);
    ZVDesktopServices::Instance()->SetCustom(GetChannelValue());
}

QString CCommonModule::ChooseLanguage(const QStringList& offered)
{
    if (const QCoreApplication* app = QCoreApplication::instance()) {
        const QString forced = app->property("ForceLanguage").toString();
        if (!forced.isEmpty())
            return forced;
    }

    const QString saved = ZVQtCompat::Utf8UpToNul(readRegularFile(CLanguageStore::GetInstance()->GetSavedLanguagePath()));
    if (!saved.isEmpty())
        return saved;

    const QLocale system = QLocale::system();
    const QString systemName = system.name();
    QString candidate;
    for (const MCLanguageInfo* record :
         automaticCandidates(CLanguageStore::GetInstance()->GetLanguageList(), QLocale::languageToString(system.language()))) {
        if (matchesLocaleName(*record, systemName)) {
            candidate = utf8(record->name);
            break;
        }
    }
    qDebug().noquote().nospace() << "ZVCore: Auto Select Language->" << candidate;
    return offered.contains(candidate) ? candidate : QStringLiteral("English");
}

void CCommonModule::ReplaceTranslator(QTranslator*& slot, const QString& file)
{
    if (slot) {
        QCoreApplication::removeTranslator(slot);
        delete slot;
    }
    slot = new QTranslator;
    // A file that does not load leaves an empty translator in its role.
    (void)slot->load(file);
    QCoreApplication::installTranslator(slot);
}

void CCommonModule::SetLanguage(const QString& name)
{
    CLanguageStore* store = CLanguageStore::GetInstance();
    const QChar sep = QDir::separator();

    m_linkFilePath = GetLinkFilePath(name);
    m_currentLanguage = name;

    const QString qmDir = store->GetLanguageQmPath();
    ReplaceTranslator(m_frameworkTranslator,
                      qmDir + sep + QLatin1String("ZVCore") + sep + QLatin1String("ZVCore_") + name + QLatin1String(".qm"));
    ReplaceTranslator(m_hostTranslator, qmDir + sep + name + QLatin1String(".qm"));

    // Written through a temporary file and renamed, so an interrupted write leaves the
    // previous choice rather than a torn name. A folder that cannot be written is
    // ignored, like a file that cannot be opened.
    QSaveFile saved(store->GetSavedLanguagePath());
    saved.setDirectWriteFallback(true);
    if (saved.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        saved.write(name.toUtf8());
        saved.commit();
    }

    if (QCoreApplication* app = QCoreApplication::instance()) {
        QEvent change(QEvent::LanguageChange);
        QCoreApplication::sendEvent(app, &change);
    }

    bool rightToLeft = false;
    if (name == QLatin1String("Arabic") && QCoreApplication::instance())
        rightToLeft = QCoreApplication::instance()->property("EnableRightToLeft").toBool();
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        QGuiApplication::setLayoutDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);

    ZVDesktopServices::Instance()->SetLanguage(m_currentLanguage);
}

QString CCommonModule::GetCurrentLanguage() const
{
    return m_currentLanguage;
}

CSimpleCrypt* CCommonModule::GetCipher() const
{
    return m_cipher;
}

QString CCommonModule::GetLinkFilePath(const QString& language) const
{
    const QString dir = CLanguageStore::GetInstance()->GetLanguageMainPath() + QDir::separator();
    // Over the whole catalogue in file order, so a repeated name takes the last record.
    QString fileName;
    bool found = false;
    for (const MCLanguageInfo& record : CLanguageStore::GetInstance()->GetLanguageList()) {
        if (utf8(record.name) == language) {
            fileName = utf8(record.urlFileName);
            found = true;
        }
    }
    if (!found || !QFileInfo::exists(dir + fileName))
        fileName = QStringLiteral("English_URL.xml");
    return dir + fileName;
}

QString CCommonModule::GetCurrentLinkFilePath() const
{
    return m_linkFilePath;
}

void CCommonModule::LookupLink(const QString& key, int& isShow, QString& url) const
{
    const QByteArray bytes = readRegularFile(m_linkFilePath);
    if (bytes.isEmpty())
        return;
    QDomDocument document;
    if (!XmlGuard::Parse(document, bytes))
        return;
    for (QDomNode menu = document.documentElement().firstChild(); !menu.isNull(); menu = menu.nextSibling()) {
        if (!menu.isElement() || menu.toElement().tagName() != QLatin1String("menu"))
            continue;
        for (QDomNode child = menu.firstChild(); !child.isNull(); child = child.nextSibling()) {
            if (!child.isElement() || child.toElement().tagName() != QLatin1String("childMenu"))
                continue;
            const QDomElement entry = child.toElement();
            const QDomElement menuName = entry.firstChildElement(QStringLiteral("menuName"));
            if (menuName.isNull() || !menuName.text().contains(key))
                continue;
            const QDomElement urlElement = entry.firstChildElement(QStringLiteral("url"));
            if (!urlElement.isNull())
                url = urlElement.text();
            const QDomElement shown = entry.firstChildElement(QStringLiteral("isShow"));
            if (!shown.isNull())
                isShow = shown.text().toInt(nullptr, 10);
            return; // the first match wins
        }
    }
}

QString CCommonModule::GetDecodedLink(const QString& key) const
{
    int isShow = 1;
    QString url;
    LookupLink(key, isShow, url);
    return url.isEmpty() ? QString() : m_cipher->decryptToString(url);
}

void CCommonModule::OpenLink(const QString& key) const
{
    int isShow = 1;
    QString url;
    LookupLink(key, isShow, url);
    if (isShow == 1 && !url.isEmpty())
        QDesktopServices::openUrl(QUrl(m_cipher->decryptToString(url)));
}

bool CCommonModule::IsLinkShown(const QString& key) const
{
    int isShow = 1;
    QString url;
    LookupLink(key, isShow, url);
    return isShow != 0;
}

bool CCommonModule::HasCustomMarker()
{
    return QFileInfo::exists(markerPath("custom"));
}

QString CCommonModule::GetChannelValue()
{
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    const qint64 missing = now + 10;
    const QString customPath = markerPath("custom");
    const QString domainPath = markerPath("domain");
    const qint64 customTime = createdSecs(customPath, missing);
    const qint64 domainTime = createdSecs(domainPath, missing);

    QString chosen;
    if (domainTime > customTime) {
        chosen = customPath;
    } else if (domainTime < customTime) {
        chosen = domainPath;
    } else {
        qDebug().noquote() << "customCreatedTimeT == domainCreatedTimeT" << missing;
        return QString();
    }
    QString value = readMarker(chosen);
    value.remove(QLatin1Char('\r'));
    value.remove(QLatin1Char('\n'));
    qDebug().noquote() << chosen << value;
    return value;
}

QString CCommonModule::ReadCustomMarker()
{
    const QString value = readMarker(markerPath("custom"));
    qDebug().noquote().nospace() << "custom:" << value;
    return value;
}

QString CCommonModule::ReadDomainMarker()
{
    const QString value = readMarker(markerPath("domain"));
    qDebug().noquote().nospace() << "domain:" << value;
    return value;
}

} // namespace ZVUIFramework
