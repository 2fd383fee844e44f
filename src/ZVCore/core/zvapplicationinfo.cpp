#include "zvapplicationinfo.h"
#include "zvapplicationinfo_p.h"
#include "desktopresolution_p.h"

#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/CLanguageStore>
#include <ZVCore/private/CStyleSheetManager>
#include <ZVCore/private/ZVDesktopServices>

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtGui/QDesktopServices>
#include <QtGui/QFont>
#include <QtWidgets/QApplication>
#include <QtXml/QDomDocument>

namespace ZVUIFramework {

namespace {

// A screen wider than this many physical pixels gets the "Picture4K" pictures.
constexpr int kHighDpiWidth = 2500;

const QString kFrameworkSheet = QStringLiteral("ZVUIFramework.qss");
const QString kFontFamily = QStringLiteral("Segoe UI");

} // namespace

void ZVApplicationInfoPrivate::readProductInfo(const QString& path)
{
    // Only a regular file is read: a FIFO or a device at that name would block or never
    // end, and a folder is not a product file.
    if (!QFileInfo(path).isFile())
        return;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    QDomDocument document;
    // Parse errors are not reported: an unparsable file simply matches no tag.
    if (document.setContent(file.readAll())) {
        static const struct
        {
            const char* tag;
            QString ZVApplicationInfoPrivate::*field;
        } table[] = {
            {"ZV_PID", &ZVApplicationInfoPrivate::pid},
            {"ZV_APP_NAME", &ZVApplicationInfoPrivate::appName},
            {"ZV_APP_TITLE", &ZVApplicationInfoPrivate::appTitle},
            {"ZV_INFO", &ZVApplicationInfoPrivate::info},
            {"ZV_BRANDNAME", &ZVApplicationInfoPrivate::brandName},
            {"ZV_FEEDBACK_RECEIVE_EMAIL", &ZVApplicationInfoPrivate::fbReceiveEmailAccount},
            {"ZV_WATCHDOG_RECEIVE_EMAIL", &ZVApplicationInfoPrivate::receiveEmailOnCrash},
        };
        for (QDomElement e = document.documentElement().firstChildElement(); !e.isNull();
             e = e.nextSiblingElement()) {
            const QString tag = e.tagName();
            for (const auto& entry : table) {
                if (tag.compare(QLatin1String(entry.tag), Qt::CaseInsensitive) == 0) {
                    this->*entry.field = e.text(); // a repeated tag overwrites
                    break;
                }
            }
        }
    }
    file.close();
}

ZVApplicationInfo* ZVApplicationInfo::GetInstance()
{
    static ZVApplicationInfo instance(nullptr);
    return &instance;
}

ZVApplicationInfo::ZVApplicationInfo(QObject* parent)
    : QObject(parent)
    , d_ptr(new ZVApplicationInfoPrivate)
{
    Q_D(ZVApplicationInfo);
    CLanguageStore* store = CLanguageStore::GetInstance();
    d->readProductInfo(store->GetProductInfoPath());
    d->qssFiles.insert(kFrameworkSheet, true);

    // Every web link the process opens, the host's included, passes through the
    // link-opening service from now on. The channel value is computed here without the
    // language manager, which must not exist before the first core window has loaded
    // the catalogue.
    ZVDesktopServices* links = ZVDesktopServices::Instance();
    links->SetPid(d->pid);
    links->SetCustom(CCommonModule::GetChannelValue());
    QDesktopServices::setUrlHandler(QStringLiteral("http"), links, "openUrl");
    QDesktopServices::setUrlHandler(QStringLiteral("https"), links, "openUrl");

    // Relative paths used later (skin pictures written relative into the style sheet,
    // the crash dump) resolve against the product's folder.
    if (!store->GetAppDir().isEmpty())
        QDir::setCurrent(store->GetAppDir());
}

ZVApplicationInfo::~ZVApplicationInfo() = default;

QString ZVApplicationInfo::GetAppName() const
{
    return d_func()->appName;
}

QString ZVApplicationInfo::GetAppTitle() const
{
    return d_func()->appTitle;
}

QString ZVApplicationInfo::GetBrandName() const
{
    return d_func()->brandName;
}

QString ZVApplicationInfo::GetInfo() const
{
    return d_func()->info;
}

QString ZVApplicationInfo::GetPID() const
{
    return d_func()->pid;
}

QString ZVApplicationInfo::GetReceiveEmailOnCrash() const
{
    return d_func()->receiveEmailOnCrash;
}

QString ZVApplicationInfo::GetSendEmailAccount() const
{
    return d_func()->sendEmailAccount;
}

QString ZVApplicationInfo::GetSendEmailPwd() const
{
    return d_func()->sendEmailPwd;
}

QString ZVApplicationInfo::GetFBReceiveEmailAccount() const
{
    return d_func()->fbReceiveEmailAccount;
}

QString ZVApplicationInfo::GetUserEmailInfo() const
{
    return d_func()->userEmailInfo;
}

void ZVApplicationInfo::SetInfo(const QString& info)
{
    d_func()->info = info;
}

void ZVApplicationInfo::SetReceiveEmailOnCrash(const QString& account)
{
    d_func()->receiveEmailOnCrash = account;
}

void ZVApplicationInfo::SetUserEmailInfo(const QString& email)
{
    d_func()->userEmailInfo = email;
}

void ZVApplicationInfo::SetSendEmailInfo(const QString& account, const QString& pwd)
{
    Q_D(ZVApplicationInfo);
    d->sendEmailAccount = account;
    d->sendEmailPwd = pwd;
}

QStringList ZVApplicationInfo::GetUpdaterArguments()
{
    return d_func()->updaterArguments;
}

void ZVApplicationInfo::SetUpdaterArguments(const QStringList& arguments)
{
    d_func()->updaterArguments = arguments;
}

CSkin& ZVApplicationInfo::GetSkinObject()
{
    return d_func()->skin;
}

QString ZVApplicationInfo::GetCurrentLanguage()
{
    return CCommonModule::GetInstance()->GetCurrentLanguage();
}

void ZVApplicationInfo::addQss(const QString& name, bool rewriteUrls)
{
    d_func()->qssFiles.insert(name, rewriteUrls);
}

bool ZVApplicationInfo::IsHighDPI()
{
    return Platform::DesktopHorizontalResolution() > kHighDpiWidth;
}

void ZVApplicationInfo::InitSkin(bool normalPictures, const QString& skinName)
{
    Q_D(ZVApplicationInfo);
    bool highDpi = false;
    if (!normalPictures) {
        highDpi = IsHighDPI();
        qDebug().noquote().nospace() << "ZVCore: HighDPI " << highDpi;
    }

    QString base = CLanguageStore::GetInstance()->GetAppDir();
    base.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const QString skinDir = skinName.isEmpty() ? QStringLiteral("skin/")
                                               : QStringLiteral("skin/") + skinName + QLatin1Char('/');
    const QString pictureDir = skinDir + (highDpi ? QLatin1String("Picture4K/") : QLatin1String("PictureNormal/"));
    const QString imagePath = base + pictureDir;
    const QString qssPath = base + skinDir + QLatin1String("qss/");

    d->skin.SetQssPath(qssPath);
    d->skin.SetImagePath(imagePath);
    d->skin.SetFontName(kFontFamily);

    // QApplication::setFont, not QGuiApplication's: only the former reaches the widgets
    // that exist already.
    if (qobject_cast<QApplication*>(QCoreApplication::instance())) {
        QFont font = QApplication::font();
        font.setFamily(kFontFamily);
        QApplication::setFont(font);
    }

    CStyleSheetManager::Apply(d->qssFiles,
                              CStyleSheetManager::RelativeImagePath() ? pictureDir : imagePath);
}

} // namespace ZVUIFramework
