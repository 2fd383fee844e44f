#include "zvapplicationinfo.h"
#include "zvapplicationinfo_p.h"
#include "../crash/crashhandler_p.h"
#include "desktopresolution_p.h"
#include "launcharguments.h"
#include "planhighdpi.h"
#include "screenmetrics_p.h"
#include "xmlguard.h"

#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/CLanguageStore>
#include <ZVCore/private/CStyleSheetManager>
#include <ZVCore/private/ZVDesktopServices>
#include <ZVFoundation/CDataCollectionGA4>
#include <ZVFoundation/private/ZVQtCompat>

#include <QtCore/QAtomicPointer>
#include <QtCore/QSaveFile>
#include <QtCore/QProcess>
#include <QtCore/QVariant>

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

// The current directory as the process found it, taken when the library is loaded:
// before the host's main() runs, so before anything changed it.
const QString& startupDirectory()
{
    static const QString directory = QDir::currentPath();
    return directory;
}
[[maybe_unused]] const bool g_startupDirectoryTaken = !startupDirectory().isEmpty();

} // namespace

QString ZVApplicationInfo::GetStartupDirectory()
{
    return startupDirectory();
}

namespace {

// A screen wider than this many physical pixels gets the "Picture4K" pictures.
constexpr int kHighDpiWidth = 2500;

const QString kFrameworkSheet = QStringLiteral("ZVUIFramework.qss");
const QString kFontFamily = QStringLiteral("Segoe UI");

// Set once the context is built, for the crash handler, which must not build it.
QAtomicPointer<ZVApplicationInfo> g_context;

std::u16string u16(const QString& s)
{
    return std::u16string(reinterpret_cast<const char16_t*>(s.utf16()), size_t(s.size()));
}

QStringList toStringList(const std::vector<std::u16string>& list)
{
    QStringList out;
    for (const std::u16string& s : list)
        out.append(QString::fromUtf16(s.data(), int(s.size())));
    return out;
}

} // namespace

namespace Crash {

ZVApplicationInfo* ExistingContext()
{
    return g_context.loadAcquire();
}

void RunHostSteps(EXCEPTION_POINTERS* info)
{
    ZVApplicationInfoPrivate::recordCrash();
    if (ZVApplicationInfo* context = ExistingContext()) {
        ZVApplicationInfoPrivate::logFeedbackStart(context->GetFeedbackArguments(true));
        context->CallCrashCakkback(info);
    }
}

} // namespace Crash

QString ZVApplicationInfoPrivate::feedbackProgram()
{
    // The executable's folder as the system names it, without its trailing separator.
    QString dir = CLanguageStore::GetInstance()->GetAppDir();
    if (!dir.isEmpty())
        dir.chop(1);
    return dir + QLatin1Char('/') + QString::fromUtf16(kFeedbackProgram);
}

void ZVApplicationInfoPrivate::logFeedbackStart(const QStringList& arguments)
{
    qDebug().noquote() << "ZVCore: Start FeedBack ->" << ZVQtCompat::DebugText(arguments);
}

void ZVApplicationInfoPrivate::recordCrash()
{
    QCoreApplication* app = QCoreApplication::instance();
    if (!app)
        return;
    app->setProperty("AppCrashed", true);
    const QString collection = app->property("CrashDataCollection").toString();
    if (!collection.isEmpty()) {
        qDebug() << "send GA crash" << collection;
        CDataCollectionGA4::GetInstance()->Send(QStringList{collection});
    }
}

FeedbackFields ZVApplicationInfoPrivate::feedbackFields() const
{
    FeedbackFields fields;
    fields.receiveEmailOnCrash = u16(receiveEmailOnCrash);
    fields.fbReceiveEmailAccount = u16(fbReceiveEmailAccount);
    fields.applicationFilePath = u16(QCoreApplication::instance() ? QCoreApplication::applicationFilePath() : QString());
    fields.userEmailInfo = u16(userEmailInfo);
    fields.sendEmailAccount = u16(sendEmailAccount);
    fields.sendEmailPwd = u16(sendEmailPwd);
    return fields;
}

void ZVApplicationInfoPrivate::prepareCrashFeedback()
{
    Crash::PrepareFeedback(feedbackProgram(), toStringList(FeedbackArguments(feedbackFields(), true)));
}

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
    if (XmlGuard::Parse(document, file.readAll())) {
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

    d->prepareCrashFeedback();
    g_context.storeRelease(this);
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
    Q_D(ZVApplicationInfo);
    d->receiveEmailOnCrash = account;
    d->prepareCrashFeedback();
}

void ZVApplicationInfo::SetUserEmailInfo(const QString& email)
{
    Q_D(ZVApplicationInfo);
    d->userEmailInfo = email;
    d->prepareCrashFeedback();
}

void ZVApplicationInfo::SetSendEmailInfo(const QString& account, const QString& pwd)
{
    Q_D(ZVApplicationInfo);
    d->sendEmailAccount = account;
    d->sendEmailPwd = pwd;
    d->prepareCrashFeedback();
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

namespace {

// Option values as the high-DPI decision reads them: a value that is not a number reads
// as 0 or false (where QVariant would call any other text true).
bool optionBool(const QVariant& value)
{
    if (ZVQtCompat::TypeId(value) == QMetaType::Bool)
        return value.toBool();
    if (ZVQtCompat::TypeId(value) == QMetaType::QString) {
        const QString text = value.toString().trimmed();
        if (text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
            return true;
        bool ok = false;
        const double number = text.toDouble(&ok);
        return ok && number != 0.0;
    }
    bool ok = false;
    const double number = value.toDouble(&ok);
    return ok && number != 0.0;
}

int optionInt(const QVariant& value)
{
    bool ok = false;
    const int number = value.toInt(&ok);
    return ok ? number : 0;
}

double optionDouble(const QVariant& value)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    return ok ? number : 0.0;
}

} // namespace

void ZVApplicationInfo::EnableHighDPISupport(const QMap<QString, QVariant>& options)
{
    HighDpiOptions o;
    if (options.contains(QStringLiteral("ignoreSystemFactor")))
        o.ignoreSystemFactor = optionBool(options.value(QStringLiteral("ignoreSystemFactor")));
    if (options.contains(QStringLiteral("windowWidth")))
        o.windowWidth = optionInt(options.value(QStringLiteral("windowWidth")));
    if (options.contains(QStringLiteral("windowHeight")))
        o.windowHeight = optionInt(options.value(QStringLiteral("windowHeight")));
    if (options.contains(QStringLiteral("expectedRatio")))
        o.expectedRatio = optionDouble(options.value(QStringLiteral("expectedRatio")));
    if (options.contains(QStringLiteral("positive")))
        o.positive = optionBool(options.value(QStringLiteral("positive")));
    if (options.contains(QStringLiteral("syncRatio")))
        o.syncRatio = optionBool(options.value(QStringLiteral("syncRatio")));

    Platform::SetDpiAwareness();
    ScreenMetrics metrics{};
    if (!Platform::ReadScreenMetrics(metrics)) {
        // Nothing to measure (no X11 screen, or a platform without one): Qt scales.
        ZVQtCompat::SetHighDpiAttribute(ZVQtCompat::kEnableHighDpiScaling);
        ZVQtCompat::SetHighDpiAttribute(ZVQtCompat::kUseHighDpiPixmaps);
        return;
    }

    const HighDpiPlan plan = PlanHighDpi(o, metrics);
    for (const std::string& line : plan.log)
        qDebug().noquote() << QString::fromStdString(line);
    if (plan.enableQtScaling)
        ZVQtCompat::SetHighDpiAttribute(ZVQtCompat::kEnableHighDpiScaling);
    if (plan.setScaleFactor) {
        qputenv("QT_SCALE_FACTOR", QByteArray::fromStdString(plan.scaleFactor));
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
        // Qt 6 always scales by the screen's DPI on its own, and would multiply the fixed
        // factor by that. Qt 5 scales by the factor alone, its own scaling being off on
        // this path; so does Qt 6 without its platform scaling.
        qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
#endif
    }

    const QString factorFile = CLanguageStore::GetInstance()->GetAppDir() + QLatin1String("factor.tmp");
    bool written = false;
    if (plan.writeFactorFile) {
        // Through a temporary file and a rename: a reader never sees half a number. The
        // rename replaces the old file in one step; deleting it first would leave a
        // moment without any file, which a process killed right then would leave
        // behind. So the old file is deleted only when no new one took its place.
        QSaveFile file(factorFile);
        if (file.open(QIODevice::WriteOnly)) {
            const QByteArray text = QByteArray::fromStdString(plan.scaleFactor);
            written = file.write(text) == text.size() && file.commit();
        }
    }
    if (plan.deleteFactorFile && !written && QFileInfo::exists(factorFile))
        QFile::remove(factorFile);
    ZVQtCompat::SetHighDpiAttribute(ZVQtCompat::kUseHighDpiPixmaps);
}

void ZVApplicationInfo::InitCrashHandle()
{
    Crash::Install();
    // A crash before the context exists still starts the feedback program, with the
    // fields known so far.
    if (ZVApplicationInfo* context = Crash::ExistingContext())
        context->d_func()->prepareCrashFeedback();
    else
        ZVApplicationInfoPrivate().prepareCrashFeedback();
}

void ZVApplicationInfo::SetCrashCallback(std::function<long(EXCEPTION_POINTERS*)> callback)
{
    d_func()->crashCallback = std::move(callback);
}

void ZVApplicationInfo::CallCrashCakkback(EXCEPTION_POINTERS* info)
{
    Q_D(ZVApplicationInfo);
    if (d->crashCallback)
        d->crashCallback(info);
}

QStringList ZVApplicationInfo::GetFeedbackArguments(bool crashed)
{
    return toStringList(FeedbackArguments(d_func()->feedbackFields(), crashed));
}

void ZVApplicationInfo::StartFeedback(bool crashed)
{
    if (crashed)
        ZVApplicationInfoPrivate::recordCrash();
    const QStringList arguments = GetFeedbackArguments(crashed);
    QProcess::startDetached(ZVApplicationInfoPrivate::feedbackProgram(), arguments);
    ZVApplicationInfoPrivate::logFeedbackStart(arguments);
}

} // namespace ZVUIFramework
