#ifndef ZVCORE_ZVAPPLICATIONINFO_H
#define ZVCORE_ZVAPPLICATIONINFO_H

#include <ZVCore/zvcore_export.h>

#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QScopedPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <functional>

#if defined(Q_OS_WIN)
// The system's own type; <windows.h> defines it in full.
struct _EXCEPTION_POINTERS;
typedef struct _EXCEPTION_POINTERS EXCEPTION_POINTERS;
#else
#include <csignal>
#include <ucontext.h>

namespace ZVUIFramework {
/// What a crash callback learns of the crash where there are signals instead of
/// structured exceptions.
struct CrashContext
{
    int signalNumber;
    siginfo_t* signalInfo;
    ucontext_t* context;
};
} // namespace ZVUIFramework

// The same callback signature on every platform: hosts write
// std::function<long(EXCEPTION_POINTERS*)> wherever they build.
typedef ZVUIFramework::CrashContext EXCEPTION_POINTERS;
#endif

class CSkin;

namespace ZVUIFramework {

class ZVApplicationInfoPrivate;

/*!
 * The process-wide context of the frame: the product's identity read from
 * "productInfo.xml" beside the executable, the e-mail settings handed to the feedback
 * program, the updater's extra arguments, the skin and the list of style sheets.
 *
 * Its first use reads the product file and makes the executable's folder the current
 * directory, so relative paths (skin pictures, the crash dump) resolve there.
 *
 * \code
 * QApplication app(argc, argv);
 * auto* context = ZVUIFramework::ZVApplicationInfo::GetInstance();
 * context->SetSendEmailInfo(QStringLiteral("reports@example.com"), password);
 * context->addQss(QStringLiteral("Host.qss"), true);   // before InitSkin
 * context->InitSkin(false, QStringLiteral("dark"));    // skin/dark/qss/, pictures, font
 * qDebug() << context->GetAppName() << context->GetPID();
 * \endcode
 */
class ZVCORE_EXPORT ZVApplicationInfo : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(ZVApplicationInfo)

public:
    /// The single instance, built on first call and destroyed at process exit.
    static ZVApplicationInfo* GetInstance();

    /*!
     * The current directory the process was started in (QDir::currentPath() form), as
     * it was before the first GetInstance() made the executable's folder current.
     * Resolve relative paths from the command line against it:
     *
     * \code
     * const QString file = QDir(ZVApplicationInfo::GetStartupDirectory()).absoluteFilePath(argument);
     * \endcode
     */
    static QString GetStartupDirectory();

    QString GetAppName() const;
    QString GetAppTitle() const;
    QString GetBrandName() const;
    QString GetInfo() const;
    QString GetPID() const;
    QString GetReceiveEmailOnCrash() const;
    QString GetSendEmailAccount() const;
    QString GetSendEmailPwd() const;
    QString GetFBReceiveEmailAccount() const;
    QString GetUserEmailInfo() const;

    void SetInfo(const QString& info);
    void SetReceiveEmailOnCrash(const QString& account);
    void SetUserEmailInfo(const QString& email);
    /// Sets the sending mail account, then its password.
    void SetSendEmailInfo(const QString& account, const QString& pwd);

    /// Extra arguments given to the updater, before the ones the frame adds.
    QStringList GetUpdaterArguments();
    void SetUpdaterArguments(const QStringList& arguments);

    /// The skin the context holds; always the same object.
    CSkin& GetSkinObject();

    /// The name of the language in use, as the language manager holds it.
    QString GetCurrentLanguage();

    /// Adds or replaces a style sheet of the skin's "qss/" folder. Sheets are applied in
    /// the order of their names by InitSkin; \a rewriteUrls turns "url(:/" references
    /// into the skin's picture folder.
    void addQss(const QString& name, bool rewriteUrls);

    /// Fills the skin's paths, sets the application font and applies the style sheets.
    /// \a normalPictures skips the 4K test; \a skinName selects skin/<name>/ (empty:
    /// skin/).
    void InitSkin(bool normalPictures, const QString& skinName);

    /// Whether the desktop is wider than 2500 physical pixels, which selects the
    /// "Picture4K" pictures.
    bool IsHighDPI();

    /*!
     * Decides, before the QApplication exists, how Qt scales: Qt's own high-DPI scaling
     * when the screen has room for 1280 x 960 logical pixels at the system's scale, else
     * a fixed "QT_SCALE_FACTOR", stepped down by 0.25 until a window of the design size
     * fits the work area. Options: "ignoreSystemFactor" (bool), "windowWidth",
     * "windowHeight" (int), "expectedRatio" (double), "positive" (bool), "syncRatio"
     * (bool: write the chosen factor to "factor.tmp" beside the executable).
     *
     * \code
     * int main(int argc, char** argv)
     * {
     *     ZVUIFramework::ZVApplicationInfo::EnableHighDPISupport(
     *         {{"windowWidth", 1100}, {"windowHeight", 760}, {"syncRatio", true}});
     *     QApplication app(argc, argv);
     * \endcode
     */
    static void EnableHighDPISupport(const QMap<QString, QVariant>& options);

    /// Installs the crash handler: on a crash the process writes "crashcore.dmp" into
    /// the current directory, starts the feedback program in crash mode and calls the
    /// host's callback. Call it early in main, after the QApplication exists.
    static void InitCrashHandle();
    /// Replaces the host's crash callback; an empty function clears it.
    void SetCrashCallback(std::function<long(EXCEPTION_POINTERS*)> callback);
    /// Calls the host's crash callback, if one is set; its result is not used.
    void CallCrashCakkback(EXCEPTION_POINTERS* info);

    /// The feedback program's six arguments (see StartFeedback).
    QStringList GetFeedbackArguments(bool crashed);
    /// Starts the feedback program beside the executable, detached: with the crash
    /// address and "0" after a crash, with the feedback address and "1" otherwise.
    void StartFeedback(bool crashed);

private:
    explicit ZVApplicationInfo(QObject* parent);
    ~ZVApplicationInfo() override;

    QScopedPointer<ZVApplicationInfoPrivate> d_ptr;
};

} // namespace ZVUIFramework

#endif // ZVCORE_ZVAPPLICATIONINFO_H
