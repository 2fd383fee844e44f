// zvprobe: a small host program that the scenario tests copy into a fresh folder with
// product files and run there. The frame's context and language store are process-wide
// and read the executable's folder, so each scenario runs in a process of its own.
//
//   zvprobe <command> [<command> ...]
//
// Commands run in order; those that report print one JSON object on a line of its own,
// with "cmd" naming the command:
//   prop:<name>=<bool|int|string>:<value>   set an application property
//   addqss:<name>=<0|1>                     ZVApplicationInfo::addQss
//   initskin:<0|1>:<skin name>              ZVApplicationInfo::InitSkin(normal, name)
//   context                                  the context's identity fields, cwd, folders
//   skin                                     skin paths, fonts and the style sheet
//   catalogue                                load localconfig.json and list the records
//   loadcatalogue                            load localconfig.json, report nothing
//   language                                 the language manager's state (creates it)
//   setlang:<name>                           CCommonModule::SetLanguage
//   linkpath:<language>                      CCommonModule::GetLinkFilePath
//   link:<key>                               look-up, decoded link and "is shown" of a key
//   openlink:<key>                           CCommonModule::OpenLink
//   openurl:<url>                            QDesktopServices::openUrl
//   channel                                  channel value and the two marker readers
//   services                                 the link-opening service's values
//   translate:<context>:<source>             QCoreApplication::translate
//   setcrashmail:<address>                   ZVApplicationInfo::SetReceiveEmailOnCrash
//   setuser:<address>                        ZVApplicationInfo::SetUserEmailInfo
//   setsend:<account>|<password>             ZVApplicationInfo::SetSendEmailInfo
//   setupdaterargs:<a>|<b>|...               ZVApplicationInfo::SetUpdaterArguments
//   feedbackargs:<0|1>                       ZVApplicationInfo::GetFeedbackArguments
//   startfeedback:<0|1>                      ZVApplicationInfo::StartFeedback
//   properties                               the application properties the frame sets
//   controlmodule                            builds a CControlModule
//   send:<id>                                ZVCustomEventSendObj::SendEvent(id, 1)
//   wait:<ms>                                runs the event loop
//   crashhandle                              ZVApplicationInfo::InitCrashHandle
//   crashcallback:<marker file>              a host callback that writes the marker
//   crash:<how>                              segv | segv-thread | abort | fpe | two-threads | overflow
//   appversion:<version>                     QCoreApplication::setApplicationVersion
//   langdialog:<action>[=<arg>]              builds and drives a LanguageSelectDialog
//   aboutdialog:<action>[=<arg>]             builds and drives a ZVAboutDialog
//   titlebar:<action>[:<arg>]                the main title bar on a bare window: window |
//                                            maximize | build | show | click:<button> |
//                                            menufeedback | report
//   menu:<n>                                 title menu: <n> LanguageChange events to a CMenuView
//   menulang:<name>                          title menu: SetLanguage, then the posted LanguageChange
//   menutrigger:<name>                       title menu: triggers the entry named <name>
//   menushow                                 title menu: slotShowMenu from a button
//   corewindow:<action>[:<arg>]              the core window as a host builds it: build |
//                                            show:<x>,<y>,<w>,<h> | spin | report |
//                                            hittest:<l>,<t>,<w>,<h>,<x>,<y> (physical pixels)
// hardening.h lists the commands for hostile files, crash torture and writers killed in
// the middle of a write.
// Log lines go to standard error as Qt writes them; tests set QT_MESSAGE_PATTERN.
#include <ZVControl/ZVDialogTitleBar>
#include <ZVControl/ZVLabel>
#include <ZVCore/CSkin>
#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/ZVCoreWindow>
#include <ZVCore/ZVCustomEvent>
#include <ZVCore/ZVCustomEventSendObj>
#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/CControlModule>
#include <ZVCore/private/CCustomMenu>
#include <ZVCore/private/CCustomWidgetTitle>
#include <ZVCore/private/CLanguageStore>
#include <ZVCore/private/CMenuView>
#include <ZVCore/private/CStyleSheetManager>
#include <ZVCore/private/LanguageSelectDialog>
#include <ZVCore/private/MenuItemInfo>
#include <ZVCore/private/ZVAboutDialog>
#include <ZVCore/private/ZVDesktopServices>
#include <ZVCore/private/ZVMainWindowTitle>

#include "hardening.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QPointer>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtGui/QCursor>
#include <QtGui/QDesktopServices>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QAbstractItemView>
#include <QAction> // QtWidgets in Qt 5, QtGui in Qt 6
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTextBrowser>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <unistd.h>
#endif

using namespace ZVUIFramework;

// Kept out of line and out of the anonymous namespace, so that a debugger shows its
// name in the crashing thread's stack.
extern "C" __attribute__((noinline)) void crash_here()
{
    volatile int* volatile nowhere = nullptr;
    *nowhere = 42;
}

extern "C" __attribute__((noinline)) int overflow_here(int depth)
{
    volatile char frame[4096];
    frame[0] = char(depth);
    return overflow_here(depth + 1) + frame[0];
}

namespace {

void report(const QString& cmd, QJsonObject object)
{
    object.insert(QStringLiteral("cmd"), cmd);
    const QByteArray line = QJsonDocument(summariseLongStrings(object)).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fflush(stdout);
}

QString utf8(const std::string& s)
{
    return QString::fromUtf8(s.data(), int(s.size()));
}

// --- language and About dialogs ------------------------------------------------------

// Counts the bus events it receives, by id.
class BusCounter : public QObject
{
public:
    QMap<int, int> counts;

protected:
    void customEvent(QEvent* event) override { ++counts[int(event->type())]; }
};

// Qt's desktop services call their handler's slot by name; a text browser's virtual
// setSource(QUrl) slot records the addresses without a meta-object of the probe's own.
class UrlRecorder : public QTextBrowser
{
public:
    using QTextBrowser::setSource;
    QStringList opened;
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    // Qt 6's setSource slot is not virtual; it hands the address to doSetSource.
    void doSetSource(const QUrl& url, QTextDocument::ResourceType) override { opened.append(url.toString()); }
#else
    void setSource(const QUrl& url) override { opened.append(url.toString()); }
#endif
};

QJsonArray marginsJson(const QMargins& m)
{
    return QJsonArray{m.left(), m.top(), m.right(), m.bottom()};
}

QJsonArray sizeJson(const QSize& s)
{
    return QJsonArray{s.width(), s.height()};
}

// A layout as nested JSON: spacing, margins and its items in order, each a widget (by
// object name), a layout or a spacer, with its stretch factor.
QJsonObject layoutJson(QLayout* layout)
{
    QJsonArray items;
    auto* box = qobject_cast<QBoxLayout*>(layout);
    for (int i = 0; layout && i < layout->count(); ++i) {
        QLayoutItem* item = layout->itemAt(i);
        QJsonObject o;
        if (QWidget* w = item->widget()) {
            o.insert(QStringLiteral("widget"), w->objectName());
            o.insert(QStringLiteral("class"), QString::fromLatin1(w->metaObject()->className()));
        } else if (QLayout* l = item->layout()) {
            o.insert(QStringLiteral("layout"), layoutJson(l));
        } else if (QSpacerItem* spacer = item->spacerItem()) {
            o.insert(QStringLiteral("spacer"), sizeJson(spacer->sizeHint()));
            o.insert(QStringLiteral("hPolicy"), int(spacer->sizePolicy().horizontalPolicy()));
            o.insert(QStringLiteral("vPolicy"), int(spacer->sizePolicy().verticalPolicy()));
        }
        if (box)
            o.insert(QStringLiteral("stretch"), box->stretch(i));
        items.append(o);
    }
    if (!layout)
        return QJsonObject();
    return QJsonObject{
        {QStringLiteral("spacing"), layout->spacing()},
        {QStringLiteral("margins"), marginsJson(layout->contentsMargins())},
        {QStringLiteral("items"), items},
    };
}

QJsonObject labelJson(const QLabel* label)
{
    if (!label)
        return QJsonObject{{QStringLiteral("missing"), true}};
    return QJsonObject{
        {QStringLiteral("class"), QString::fromLatin1(label->metaObject()->className())},
        {QStringLiteral("text"), label->text()},
        {QStringLiteral("alignment"), int(label->alignment())},
        {QStringLiteral("toolTip"), label->toolTip()},
        {QStringLiteral("wordWrap"), label->wordWrap()},
        {QStringLiteral("minimumSize"), sizeJson(label->minimumSize())},
        {QStringLiteral("maximumSize"), sizeJson(label->maximumSize())},
        {QStringLiteral("hidden"), label->isHidden()},
    };
}

void mouse(QWidget* target, QEvent::Type type, const QString& args)
{
    // x,y,buttons; buttons "left", "right", "left+right" or "none"
    const QStringList parts = args.split(QLatin1Char(','));
    const QPoint local(parts.value(0).toInt(), parts.value(1).toInt());
    Qt::MouseButtons buttons;
    for (const QString& b : parts.value(2).split(QLatin1Char('+'))) {
        if (b == QLatin1String("left"))
            buttons |= Qt::LeftButton;
        else if (b == QLatin1String("right"))
            buttons |= Qt::RightButton;
    }
    Qt::MouseButton button = Qt::NoButton;
    if (type != QEvent::MouseMove)
        button = buttons & Qt::LeftButton ? Qt::LeftButton : buttons & Qt::RightButton ? Qt::RightButton : Qt::NoButton;
    if (type == QEvent::MouseButtonRelease)
        buttons = Qt::NoButton;
    QMouseEvent event(type, local, target->mapToGlobal(local), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &event);
}

LanguageSelectDialog* g_languageDialog = nullptr;
ZVAboutDialog* g_aboutDialog = nullptr;
BusCounter* g_busCounter = nullptr;
UrlRecorder* g_urlRecorder = nullptr;

//   langdialog:new          attach a counter to event 1002, then build the dialog
//   langdialog:restart=<0|1>  writeText
//   langdialog:show | polish | languagechange | ok | cancel | titleclose
//   langdialog:select=<i>   the combo box's current index
//   langdialog:exec=<i>     exec(), while a timer selects <i> and clicks OK
//   langdialog:press|move|release=<x>,<y>,<buttons>   mouse events on the dialog
//   langdialog:report       after the posted events were delivered
//   langdialog:peek         the same report without delivering them
bool languageDialogCommand(const QString& rest)
{
    const QString action = rest.section(QLatin1Char('='), 0, 0);
    const QString arg = rest.section(QLatin1Char('='), 1);
    if (action == QLatin1String("new")) {
        g_busCounter = new BusCounter;
        ZVCustomEventSendObj::GetInstance()->Attach(1002, g_busCounter);
        g_languageDialog = new LanguageSelectDialog;
        return true;
    }
    LanguageSelectDialog* d = g_languageDialog;
    if (!d)
        return false;
    auto* combo = d->findChild<QComboBox*>(QStringLiteral("Core_language_combo"));
    auto* ok = d->findChild<QPushButton*>(QStringLiteral("Core_language_ok"));
    auto* cancel = d->findChild<QPushButton*>(QStringLiteral("Core_language_cancel"));
    auto* title = d->findChild<ZVDialogTitleBar*>();
    if (!combo || !ok || !cancel || !title)
        return false;
    if (action == QLatin1String("restart")) {
        d->writeText(arg == QLatin1String("1"));
    } else if (action == QLatin1String("show")) {
        d->show();
        QCoreApplication::processEvents();
    } else if (action == QLatin1String("polish")) {
        QEvent polish(QEvent::Polish);
        QCoreApplication::sendEvent(d, &polish);
    } else if (action == QLatin1String("languagechange")) {
        QEvent change(QEvent::LanguageChange);
        QCoreApplication::sendEvent(d, &change);
    } else if (action == QLatin1String("select")) {
        combo->setCurrentIndex(arg.toInt());
    } else if (action == QLatin1String("ok")) {
        ok->click();
    } else if (action == QLatin1String("cancel")) {
        cancel->click();
    } else if (action == QLatin1String("titleclose")) {
        title->closeButton()->click();
    } else if (action == QLatin1String("exec")) {
        const int index = arg.toInt();
        bool wasModal = false;
        QTimer::singleShot(0, d, [=, &wasModal] {
            wasModal = QApplication::activeModalWidget() == d;
            combo->setCurrentIndex(index);
            ok->click();
        });
        const int result = d->exec();
        report(QStringLiteral("langdialog:exec"), {{QStringLiteral("result"), result},
                                                   {QStringLiteral("wasModal"), wasModal},
                                                   {QStringLiteral("visible"), d->isVisible()}});
    } else if (action == QLatin1String("press")) {
        mouse(d, QEvent::MouseButtonPress, arg);
    } else if (action == QLatin1String("move")) {
        mouse(d, QEvent::MouseMove, arg);
    } else if (action == QLatin1String("release")) {
        mouse(d, QEvent::MouseButtonRelease, arg);
    } else if (action == QLatin1String("report") || action == QLatin1String("peek")) {
        // What had arrived before the queue ran tells a posted event from a sent one.
        const int pending = g_busCounter ? g_busCounter->counts.value(1002) : -1;
        // A peek leaves the queue alone: its layout requests would polish the dialog.
        if (action == QLatin1String("report")) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
        QJsonArray texts;
        QJsonArray names;
        for (int i = 0; i < combo->count(); ++i) {
            texts.append(combo->itemText(i));
            names.append(combo->itemData(i, Qt::UserRole).toString());
        }
        QWidget* background = d->findChild<QWidget*>(QStringLiteral("background_widget"));
        QWidget* spacer = d->findChild<QWidget*>(QStringLiteral("Core_language_notice_spacer"));
        QWidget* popup = combo->view()->parentWidget();
        QFile saved(CLanguageStore::GetInstance()->GetSavedLanguagePath());
        const bool savedExists = saved.open(QIODevice::ReadOnly);
        report(QStringLiteral("langdialog"), {
            {QStringLiteral("items"), texts},
            {QStringLiteral("names"), names},
            {QStringLiteral("currentIndex"), combo->currentIndex()},
            {QStringLiteral("comboClass"), QString::fromLatin1(combo->metaObject()->className())},
            {QStringLiteral("popupFrameless"), popup && popup->windowFlags().testFlag(Qt::FramelessWindowHint)},
            {QStringLiteral("popupTranslucent"), popup && popup->testAttribute(Qt::WA_TranslucentBackground)},
            {QStringLiteral("size"), sizeJson(d->size())},
            {QStringLiteral("minimumSize"), sizeJson(d->minimumSize())},
            {QStringLiteral("maximumSize"), sizeJson(d->maximumSize())},
            {QStringLiteral("pos"), QJsonArray{d->pos().x(), d->pos().y()}},
            {QStringLiteral("visible"), d->isVisible()},
            {QStringLiteral("layout"), layoutJson(d->layout())},
            {QStringLiteral("background"), QJsonObject{
                {QStringLiteral("minimumSize"), sizeJson(background->minimumSize())},
                {QStringLiteral("maximumSize"), sizeJson(background->maximumSize())},
                {QStringLiteral("styleSheet"), background->styleSheet()},
                {QStringLiteral("layout"), layoutJson(background->layout())},
            }},
            {QStringLiteral("title"), QJsonObject{
                {QStringLiteral("class"), QString::fromLatin1(title->metaObject()->className())},
                {QStringLiteral("minimumHeight"), title->minimumHeight()},
                {QStringLiteral("maximumHeight"), title->maximumHeight()},
                {QStringLiteral("dragsDialog"), title->mouseDragTarget() == d},
                {QStringLiteral("hasMinimize"), title->minimizeButton() != nullptr},
                {QStringLiteral("minimizeHidden"), !title->minimizeButton() || title->minimizeButton()->isHidden()},
                {QStringLiteral("maximizeHidden"), !title->maximizeButton() || title->maximizeButton()->isHidden()},
            }},
            {QStringLiteral("notice"), labelJson(d->findChild<QLabel*>(QStringLiteral("Core_language_notice_label")))},
            {QStringLiteral("spacerHidden"), spacer ? spacer->isHidden() : false},
            {QStringLiteral("spacerHeight"), spacer ? QJsonArray{spacer->minimumHeight(), spacer->maximumHeight()} : QJsonArray()},
            {QStringLiteral("select"), labelJson(d->findChild<QLabel*>(QStringLiteral("Core_language_select_label")))},
            {QStringLiteral("okText"), ok->text()},
            {QStringLiteral("cancelText"), cancel->text()},
            {QStringLiteral("okClass"), QString::fromLatin1(ok->metaObject()->className())},
            {QStringLiteral("buttonsFlat"), ok->isFlat() && cancel->isFlat()},
            {QStringLiteral("buttonSizes"), QJsonArray{sizeJson(ok->minimumSize()), sizeJson(ok->maximumSize()),
                                                        sizeJson(cancel->minimumSize()), sizeJson(cancel->maximumSize())}},
            {QStringLiteral("events1002BeforeDelivery"), pending},
            {QStringLiteral("events1002"), g_busCounter ? g_busCounter->counts.value(1002) : -1},
            {QStringLiteral("language"), CCommonModule::GetInstance()->GetCurrentLanguage()},
            {QStringLiteral("saved"), savedExists ? QString::fromUtf8(saved.readAll()) : QString()},
        });
    } else {
        return false;
    }
    return true;
}

//   aboutdialog:new         the context first, then an "https" recorder, then the dialog
//   aboutdialog:stylesheet=<text>   the application's style sheet
//   aboutdialog:show | polish | titleclose
//   aboutdialog:click=<home|support>   the label reports a click on its link
//   aboutdialog:report
bool aboutDialogCommand(const QString& rest)
{
    const QString action = rest.section(QLatin1Char('='), 0, 0);
    const QString arg = rest.section(QLatin1Char('='), 1);
    if (action == QLatin1String("new")) {
        ZVApplicationInfo::GetInstance(); // installs the frame's own handler first
        g_urlRecorder = new UrlRecorder;
        QDesktopServices::setUrlHandler(QStringLiteral("https"), g_urlRecorder, "setSource");
        g_aboutDialog = new ZVAboutDialog;
        return true;
    }
    if (action == QLatin1String("stylesheet")) {
        qApp->setStyleSheet(arg);
        return true;
    }
    ZVAboutDialog* d = g_aboutDialog;
    if (!d)
        return false;
    auto* title = d->findChild<CCustomWidgetTitle*>(QStringLiteral("Core_about_title"));
    auto* home = d->findChild<ZVLabel*>(QStringLiteral("Core_official_website"));
    auto* support = d->findChild<ZVLabel*>(QStringLiteral("Core_contact_support"));
    if (!title || !home || !support)
        return false;
    if (action == QLatin1String("show")) {
        d->show();
        QCoreApplication::processEvents();
    } else if (action == QLatin1String("polish")) {
        QEvent polish(QEvent::Polish);
        QCoreApplication::sendEvent(d, &polish);
    } else if (action == QLatin1String("titleclose")) {
        if (auto* close = title->findChild<QPushButton*>(QStringLiteral("Core_btn_close")))
            close->click();
    } else if (action == QLatin1String("click")) {
        // The href the label passes is not the one opened.
        Q_EMIT (arg == QLatin1String("home") ? home : support)->linkActivated(QStringLiteral("https://href.invalid/"));
    } else if (action == QLatin1String("report")) {
        QJsonObject labels;
        for (const char* name : {"Core_label_logo", "Core_productName", "Core_productInfo", "Core_separator_line",
                                 "Core_labelCompanyInfo", "Core_official_website", "Core_contact_support",
                                 "Core_label_version", "Core_label_copyright"}) {
            labels.insert(QLatin1String(name), labelJson(d->findChild<QLabel*>(QLatin1String(name))));
        }
        QWidget* background = d->findChild<QWidget*>(QStringLiteral("background_widget"));
        auto* titleLabel = title->findChild<QLabel*>(QStringLiteral("Core_label_title"));
        report(QStringLiteral("aboutdialog"), {
            {QStringLiteral("objectName"), d->objectName()},
            {QStringLiteral("minimumSize"), sizeJson(d->minimumSize())},
            {QStringLiteral("maximumSize"), sizeJson(d->maximumSize())},
            {QStringLiteral("visible"), d->isVisible()},
            {QStringLiteral("linkColor"), d->property("linkColor").toString()},
            {QStringLiteral("layout"), layoutJson(d->layout())},
            {QStringLiteral("title"), QJsonObject{
                {QStringLiteral("class"), QString::fromLatin1(title->metaObject()->className())},
                {QStringLiteral("minimumHeight"), title->minimumHeight()},
                {QStringLiteral("maximumHeight"), title->maximumHeight()},
                {QStringLiteral("dragsDialog"), title->mouseDragTarget() == d},
                {QStringLiteral("text"), titleLabel ? titleLabel->text() : QString()},
            }},
            {QStringLiteral("background"), QJsonObject{
                {QStringLiteral("minimumSize"), sizeJson(background->minimumSize())},
                {QStringLiteral("maximumSize"), sizeJson(background->maximumSize())},
                {QStringLiteral("styleSheet"), background->styleSheet()},
                {QStringLiteral("layout"), layoutJson(background->layout())},
            }},
            {QStringLiteral("labels"), labels},
            {QStringLiteral("homeDisplay"), ZVAboutDialog::homeUrlForDisplay()},
            {QStringLiteral("homeOpening"), ZVAboutDialog::homeUrlForOpening()},
            {QStringLiteral("supportDisplay"), ZVAboutDialog::supportUrlForDisplay()},
            {QStringLiteral("supportOpening"), ZVAboutDialog::supportUrlForOpening()},
            {QStringLiteral("opened"), QJsonArray::fromStringList(g_urlRecorder ? g_urlRecorder->opened : QStringList())},
            {QStringLiteral("direction"),
             QGuiApplication::layoutDirection() == Qt::RightToLeft ? QStringLiteral("rtl") : QStringLiteral("ltr")},
        });
    } else {
        return false;
    }
    return true;
}

// --- title menu ----------------------------------------------------------------------

// Records what the title menu's entries did: its signals, the bus events that reached
// the receiver and the addresses handed to the desktop services.
class TitleMenuLog : public QTextBrowser
{
public:
    using QTextBrowser::setSource;
    QJsonArray happened;
    // Qt's desktop services call "setSource(QUrl)" on the handler by name; Qt 6's slot
    // is not virtual and hands the address to doSetSource.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    void doSetSource(const QUrl& url, QTextDocument::ResourceType) override { happened.append(QStringLiteral("url:") + url.toString()); }
#else
    void setSource(const QUrl& url) override { happened.append(QStringLiteral("url:") + url.toString()); }
#endif

protected:
    void customEvent(QEvent* event) override
    {
        const auto* bus = dynamic_cast<const ZVCustomEvent*>(event);
        happened.append(QStringLiteral("bus:%1:%2").arg(int(event->type())).arg(bus ? bus->value : -1));
    }
};

// One view under a hidden window for the whole run, as the title bar holds it.
struct TitleMenuScenario
{
    QWidget* window = nullptr;
    CMenuView* view = nullptr;
    TitleMenuLog* log = nullptr;
    QPushButton* button = nullptr;
    int inited = 0;
};

TitleMenuScenario& titleMenuScenario()
{
    static TitleMenuScenario s;
    if (s.view)
        return s;
    // The language manager sets its language before the view exists, so that only the
    // changes the commands make reach the view.
    CCommonModule::GetInstance();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LanguageChange);
    s.window = new QWidget;
    s.view = new CMenuView(s.window);
    s.view->hide();
    s.log = new TitleMenuLog;
    QDesktopServices::setUrlHandler(QStringLiteral("https"), s.log, "setSource");
    QDesktopServices::setUrlHandler(QStringLiteral("http"), s.log, "setSource");
    ZVCustomEventSendObj::GetInstance()->Attach(1001, s.log);
    TitleMenuLog* log = s.log;
    QObject::connect(s.view, &CMenuView::signalShowLanguagePopDlg, log,
                     [log] { log->happened.append(QStringLiteral("signalShowLanguagePopDlg")); });
    QObject::connect(s.view, &CMenuView::signalShowAboutDlg, log,
                     [log] { log->happened.append(QStringLiteral("signalShowAboutDlg")); });
    QObject::connect(s.view, &CMenuView::signalShowFeedback, log,
                     [log] { log->happened.append(QStringLiteral("signalShowFeedback")); });
    QObject::connect(s.view, &CMenuView::signalExit, log, [log] { log->happened.append(QStringLiteral("signalExit")); });
    // As the core window does: a receiver attaches to each id the menu announces.
    QObject::connect(s.view, &CMenuView::signalAttachEvent, log, [log](int id) {
        log->happened.append(QStringLiteral("signalAttachEvent:%1").arg(id));
        ZVCustomEventSendObj::GetInstance()->Attach(id, log);
    });
    TitleMenuScenario* scenario = &s;
    QObject::connect(s.view, &CMenuView::signalMenuItemInited, log, [scenario] { ++scenario->inited; });
    return s;
}

int liveTitleMenus()
{
    int count = 0;
    for (const QWidget* w : QApplication::allWidgets()) {
        if (w->objectName() == QLatin1String("titleMenu"))
            ++count;
    }
    return count;
}

// The view's menu and entries; then the menus still alive before and after the
// deferred deletions are delivered, and whether \a previous survived each.
void reportTitleMenu(const QString& cmd, const QPointer<CCustomMenu>& previous, qint64 elapsedMs)
{
    TitleMenuScenario& s = titleMenuScenario();
    CCustomMenu* menu = s.view->menu();
    QJsonArray actions;
    if (menu) {
        for (const QAction* action : menu->actions()) {
            QJsonObject a{{QStringLiteral("text"), action->text()},
                          {QStringLiteral("separator"), action->isSeparator()},
                          {QStringLiteral("parentIsMenu"), action->parent() == menu}};
            const QVariant key = action->property("key");
            if (key.isValid())
                a.insert(QStringLiteral("key"), key.toString());
            actions.append(a);
        }
    }
    QJsonArray entries;
    for (const MenuItemInfo* e : s.view->entries()) {
        entries.append(QJsonObject{{QStringLiteral("name"), e->name},
                                   {QStringLiteral("displayName"), e->displayName},
                                   {QStringLiteral("url"), e->url},
                                   {QStringLiteral("hasUrl"), e->hasUrl},
                                   {QStringLiteral("order"), e->order},
                                   {QStringLiteral("event"), e->event},
                                   {QStringLiteral("addSeparator"), e->addSeparator},
                                   {QStringLiteral("actionText"), e->action ? e->action->text() : QString()}});
    }
    QJsonObject o{
        {QStringLiteral("elapsedMs"), elapsedMs},
        {QStringLiteral("inited"), s.inited},
        {QStringLiteral("hasMenu"), menu != nullptr},
        {QStringLiteral("menuName"), menu ? menu->objectName() : QString()},
        {QStringLiteral("menuClass"), menu ? QString::fromLatin1(menu->metaObject()->className()) : QString()},
        {QStringLiteral("menuParentIsView"), menu && menu->parent() == s.view},
        {QStringLiteral("viewChildMenus"), s.view->findChildren<CCustomMenu*>().size()},
        {QStringLiteral("actions"), actions},
        {QStringLiteral("entries"), entries},
        {QStringLiteral("previousAlive"), !previous.isNull()},
        {QStringLiteral("previousParentless"), previous && previous->parent() == nullptr},
        {QStringLiteral("liveMenus"), liveTitleMenus()},
    };
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    o.insert(QStringLiteral("previousAliveAfterDelete"), !previous.isNull());
    o.insert(QStringLiteral("liveMenusAfterDelete"), liveTitleMenus());
    report(cmd, o);
}

//   menu:<n>            sends the view <n> LanguageChange events; reports the menu
//   menulang:<name>     CCommonModule::SetLanguage, then delivers the LanguageChange it
//                       posted; reports the menu
//   menutrigger:<name>  triggers the menu's action whose "key" is <name>; reports what
//                       happened, in order
//   menushow            clicks a button connected to slotShowMenu while a timer notes and
//                       closes the open popup
bool titleMenuCommand(const QString& verb, const QString& rest)
{
    TitleMenuScenario& s = titleMenuScenario();
    const QPointer<CCustomMenu> previous = s.view->menu();
    if (verb == QLatin1String("menu")) {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < rest.toInt(); ++i) {
            QEvent change(QEvent::LanguageChange);
            QCoreApplication::sendEvent(s.view, &change);
        }
        reportTitleMenu(verb, previous, timer.elapsed());
        return true;
    }
    if (verb == QLatin1String("menulang")) {
        QElapsedTimer timer;
        timer.start();
        CCommonModule::GetInstance()->SetLanguage(rest);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LanguageChange);
        reportTitleMenu(verb, previous, timer.elapsed());
        return true;
    }
    if (verb == QLatin1String("menutrigger")) {
        QAction* found = nullptr;
        if (CCustomMenu* menu = s.view->menu()) {
            for (QAction* action : menu->actions()) {
                if (action->property("key").toString() == rest && !action->isSeparator()) {
                    found = action;
                    break;
                }
            }
        }
        s.log->happened = QJsonArray();
        if (found)
            found->trigger();
        report(verb, {{QStringLiteral("found"), found != nullptr}, {QStringLiteral("happened"), s.log->happened}});
        return true;
    }
    if (verb == QLatin1String("menushow")) {
        if (!s.button) {
            auto* window = new QWidget;
            window->setGeometry(100, 100, 300, 200);
            s.button = new QPushButton(QStringLiteral("Menu"), window);
            s.button->setGeometry(20, 20, 80, 24);
            QObject::connect(s.button, &QPushButton::clicked, s.view, &CMenuView::slotShowMenu);
            window->show();
            QCoreApplication::processEvents();
        }
        // QMenu snaps to a cursor right next to where it opens.
        QCursor::setPos(QPoint(1, 1));
        QJsonObject seen{{QStringLiteral("popup"), false}};
        QTimer::singleShot(0, s.button, [&seen] {
            QWidget* popup = QApplication::activePopupWidget();
            if (!popup)
                return;
            seen = QJsonObject{{QStringLiteral("popup"), true},
                               {QStringLiteral("name"), popup->objectName()},
                               {QStringLiteral("isViewMenu"), popup == titleMenuScenario().view->menu()},
                               {QStringLiteral("x"), popup->x()},
                               {QStringLiteral("y"), popup->y()}};
            popup->close();
        });
        s.button->click();
        // Without a menu the click returns at once; the timer still has to run.
        QEventLoop loop;
        QTimer::singleShot(100, &loop, &QEventLoop::quit);
        loop.exec();
        const QPoint below = s.button->mapToGlobal(QPoint(0, s.button->height()));
        seen.insert(QStringLiteral("buttonBelow"), QJsonArray{below.x(), below.y()});
        report(verb, seen);
        return true;
    }
    return false;
}

bool run(const QString& command)
{
    const QString verb = command.section(QLatin1Char(':'), 0, 0);
    const QString rest = command.section(QLatin1Char(':'), 1);

    if (verb == QLatin1String("prop")) {
        const QString name = rest.section(QLatin1Char('='), 0, 0);
        const QString typed = rest.section(QLatin1Char('='), 1);
        const QString type = typed.section(QLatin1Char(':'), 0, 0);
        const QString value = typed.section(QLatin1Char(':'), 1);
        QVariant v;
        if (type == QLatin1String("bool"))
            v = value == QLatin1String("true");
        else if (type == QLatin1String("int"))
            v = value.toInt();
        else
            v = value;
        qApp->setProperty(name.toUtf8().constData(), v);
        return true;
    }
    if (verb == QLatin1String("addqss")) {
        ZVApplicationInfo::GetInstance()->addQss(rest.section(QLatin1Char('='), 0, 0),
                                                 rest.section(QLatin1Char('='), 1) == QLatin1String("1"));
        return true;
    }
    if (verb == QLatin1String("initskin")) {
        ZVApplicationInfo::GetInstance()->InitSkin(rest.section(QLatin1Char(':'), 0, 0) == QLatin1String("1"),
                                                   rest.section(QLatin1Char(':'), 1));
        return true;
    }
    if (verb == QLatin1String("context")) {
        ZVApplicationInfo* c = ZVApplicationInfo::GetInstance();
        CLanguageStore* store = CLanguageStore::GetInstance();
        report(verb, {
            {QStringLiteral("pid"), c->GetPID()},
            {QStringLiteral("appName"), c->GetAppName()},
            {QStringLiteral("appTitle"), c->GetAppTitle()},
            {QStringLiteral("brandName"), c->GetBrandName()},
            {QStringLiteral("info"), c->GetInfo()},
            {QStringLiteral("receiveEmailOnCrash"), c->GetReceiveEmailOnCrash()},
            {QStringLiteral("fbReceiveEmailAccount"), c->GetFBReceiveEmailAccount()},
            {QStringLiteral("cwd"), QDir::currentPath()},
            {QStringLiteral("startupDir"), ZVApplicationInfo::GetStartupDirectory()},
            {QStringLiteral("appDir"), store->GetAppDir()},
            {QStringLiteral("productInfo"), store->GetProductInfoPath()},
            {QStringLiteral("languageMain"), store->GetLanguageMainPath()},
            {QStringLiteral("languageQm"), store->GetLanguageQmPath()},
            {QStringLiteral("savedLanguage"), store->GetSavedLanguagePath()},
            {QStringLiteral("localConfig"), store->GetLocalConfigPath()},
            {QStringLiteral("qssSetting"), CStyleSheetManager::QssSettingPath()},
            {QStringLiteral("qssDir"), CStyleSheetManager::QssDirPath()},
        });
        return true;
    }
    if (verb == QLatin1String("skin")) {
        CSkin& skin = ZVApplicationInfo::GetInstance()->GetSkinObject();
        report(verb, {
            {QStringLiteral("imagePath"), skin.GetImagePath()},
            {QStringLiteral("qssPath"), skin.GetQssPath()},
            {QStringLiteral("fontFamily"), skin.GetFontStyle(CSkin::Style0).family()},
            {QStringLiteral("appFontFamily"), QApplication::font().family()},
            {QStringLiteral("styleSheet"), qApp->styleSheet()},
            {QStringLiteral("isHighDPI"), ZVApplicationInfo::GetInstance()->IsHighDPI()},
        });
        return true;
    }
    if (verb == QLatin1String("catalogue")) {
        CLanguageStore* store = CLanguageStore::GetInstance();
        store->LoadLocalConfig();
        QJsonArray records;
        for (const MCLanguageInfo& r : store->GetLanguageList()) {
            records.append(QJsonObject{
                {QStringLiteral("Name"), utf8(r.name)},
                {QStringLiteral("Show"), utf8(r.show)},
                {QStringLiteral("UrlFileName"), utf8(r.urlFileName)},
                {QStringLiteral("LocaleLanguage"), utf8(r.localeLanguage)},
                {QStringLiteral("LocaleName"), utf8(r.localeName)},
                {QStringLiteral("AppleLanguage"), utf8(r.appleLanguage)},
            });
        }
        report(verb, {{QStringLiteral("records"), records}});
        return true;
    }
    if (verb == QLatin1String("loadcatalogue")) {
        CLanguageStore::GetInstance()->LoadLocalConfig();
        return true;
    }
    if (verb == QLatin1String("language")) {
        CCommonModule* module = CCommonModule::GetInstance();
        QFile saved(CLanguageStore::GetInstance()->GetSavedLanguagePath());
        const bool savedExists = saved.open(QIODevice::ReadOnly);
        const QByteArray savedBytes = savedExists ? saved.readAll() : QByteArray();
        report(verb, {
            {QStringLiteral("current"), ZVApplicationInfo::GetInstance()->GetCurrentLanguage()},
            {QStringLiteral("direction"),
             QGuiApplication::layoutDirection() == Qt::RightToLeft ? QStringLiteral("rtl") : QStringLiteral("ltr")},
            {QStringLiteral("savedExists"), savedExists},
            {QStringLiteral("savedHex"), QString::fromLatin1(savedBytes.toHex())},
            {QStringLiteral("linkFile"), module->GetCurrentLinkFilePath()},
        });
        return true;
    }
    if (verb == QLatin1String("setlang")) {
        CCommonModule::GetInstance()->SetLanguage(rest);
        return true;
    }
    if (verb == QLatin1String("linkpath")) {
        report(verb, {{QStringLiteral("path"), CCommonModule::GetInstance()->GetLinkFilePath(rest)}});
        return true;
    }
    if (verb == QLatin1String("link")) {
        CCommonModule* module = CCommonModule::GetInstance();
        // Values the look-up must leave alone when it finds nothing.
        int isShow = -7;
        QString url = QStringLiteral("untouched");
        module->LookupLink(rest, isShow, url);
        report(verb, {
            {QStringLiteral("isShow"), isShow},
            {QStringLiteral("url"), url},
            {QStringLiteral("decoded"), module->GetDecodedLink(rest)},
            {QStringLiteral("shown"), module->IsLinkShown(rest)},
        });
        return true;
    }
    if (verb == QLatin1String("openlink")) {
        CCommonModule::GetInstance()->OpenLink(rest);
        return true;
    }
    if (verb == QLatin1String("openurl")) {
        QDesktopServices::openUrl(QUrl(rest));
        return true;
    }
    if (verb == QLatin1String("channel")) {
        report(verb, {
            {QStringLiteral("value"), CCommonModule::GetChannelValue()},
            {QStringLiteral("hasCustom"), CCommonModule::HasCustomMarker()},
            {QStringLiteral("custom"), CCommonModule::ReadCustomMarker()},
            {QStringLiteral("domain"), CCommonModule::ReadDomainMarker()},
        });
        return true;
    }
    if (verb == QLatin1String("services")) {
        ZVApplicationInfo::GetInstance(); // installs the service
        ZVDesktopServices* s = ZVDesktopServices::Instance();
        report(verb, {
            {QStringLiteral("language"), s->GetLanguage()},
            {QStringLiteral("pid"), s->GetPid()},
            {QStringLiteral("custom"), s->GetCustom()},
        });
        return true;
    }
    if (verb == QLatin1String("translate")) {
        const QByteArray context = rest.section(QLatin1Char(':'), 0, 0).toUtf8();
        const QByteArray source = rest.section(QLatin1Char(':'), 1).toUtf8();
        report(verb, {{QStringLiteral("text"), QCoreApplication::translate(context.constData(), source.constData())}});
        return true;
    }
    if (verb == QLatin1String("setcrashmail")) {
        ZVApplicationInfo::GetInstance()->SetReceiveEmailOnCrash(rest);
        return true;
    }
    if (verb == QLatin1String("setuser")) {
        ZVApplicationInfo::GetInstance()->SetUserEmailInfo(rest);
        return true;
    }
    if (verb == QLatin1String("setsend")) {
        ZVApplicationInfo::GetInstance()->SetSendEmailInfo(rest.section(QLatin1Char('|'), 0, 0),
                                                           rest.section(QLatin1Char('|'), 1));
        return true;
    }
    if (verb == QLatin1String("setupdaterargs")) {
        ZVApplicationInfo::GetInstance()->SetUpdaterArguments(rest.split(QLatin1Char('|')));
        return true;
    }
    if (verb == QLatin1String("feedbackargs")) {
        report(verb, {{QStringLiteral("arguments"),
                       QJsonArray::fromStringList(ZVApplicationInfo::GetInstance()->GetFeedbackArguments(rest == QLatin1String("1")))}});
        return true;
    }
    if (verb == QLatin1String("startfeedback")) {
        ZVApplicationInfo::GetInstance()->StartFeedback(rest == QLatin1String("1"));
        return true;
    }
    if (verb == QLatin1String("properties")) {
        const QVariant crashed = qApp->property("AppCrashed");
        report(verb, {{QStringLiteral("AppCrashedSet"), crashed.isValid()},
                      {QStringLiteral("AppCrashed"), crashed.toBool()}});
        return true;
    }
    if (verb == QLatin1String("controlmodule")) {
        new CControlModule(qApp);
        return true;
    }
    if (verb == QLatin1String("send")) {
        ZVCustomEventSendObj::GetInstance()->SendEvent(rest.toInt(), 1);
        return true;
    }
    if (verb == QLatin1String("wait")) {
        QEventLoop loop;
        QTimer::singleShot(rest.toInt(), &loop, &QEventLoop::quit);
        loop.exec();
        return true;
    }
    if (verb == QLatin1String("crashhandle")) {
        ZVApplicationInfo::InitCrashHandle();
        return true;
    }
    if (verb == QLatin1String("crashcallback")) {
        const QByteArray marker = QFile::encodeName(rest);
        ZVApplicationInfo::GetInstance()->SetCrashCallback([marker](EXCEPTION_POINTERS* info) -> long {
            if (FILE* f = std::fopen(marker.constData(), "w")) {
#ifdef Q_OS_WIN
                std::fprintf(f, "%d\n", info && info->ExceptionRecord ? int(info->ExceptionRecord->ExceptionCode) : -1);
#else
                std::fprintf(f, "%d\n", info ? info->signalNumber : -1);
#endif
                std::fclose(f);
            }
            return 1;
        });
        return true;
    }
    if (verb == QLatin1String("crashcallback-faulty")) {
        ZVApplicationInfo::GetInstance()->SetCrashCallback([](EXCEPTION_POINTERS*) -> long {
            crash_here();
            return 1;
        });
        return true;
    }
    if (verb == QLatin1String("crashcallback-hang")) {
        ZVApplicationInfo::GetInstance()->SetCrashCallback([](EXCEPTION_POINTERS*) -> long {
            for (;;) {
#ifdef Q_OS_WIN
                ::Sleep(INFINITE);
#else
                ::pause();
#endif
            }
        });
        return true;
    }
    if (verb == QLatin1String("crash")) {
        std::fflush(stdout);
        if (rest == QLatin1String("segv")) {
            crash_here();
        } else if (rest == QLatin1String("segv-thread")) {
            std::thread(crash_here).join();
        } else if (rest == QLatin1String("segv-qthread")) {
            // On a QThread, while the GUI thread runs its event loop.
            QThread* thread = QThread::create(crash_here);
            thread->start();
            QEventLoop loop;
            loop.exec();
        } else if (rest == QLatin1String("segv-eventloop")) {
            // On the GUI thread, from a timer of the running event loop.
            QTimer::singleShot(100, [] { crash_here(); });
            QEventLoop loop;
            loop.exec();
        } else if (rest == QLatin1String("abort")) {
            std::abort();
        } else if (rest == QLatin1String("fpe")) {
            std::raise(SIGFPE);
        } else if (rest == QLatin1String("two-threads")) {
            std::thread a(crash_here);
            std::thread b(crash_here);
            a.join();
            b.join();
        } else if (rest == QLatin1String("overflow")) {
            overflow_here(0);
        }
        return false;
    }
    if (verb == QLatin1String("appversion")) {
        QCoreApplication::setApplicationVersion(rest);
        return true;
    }
    if (verb == QLatin1String("langdialog"))
        return languageDialogCommand(rest);
    if (verb == QLatin1String("aboutdialog"))
        return aboutDialogCommand(rest);
    if (verb == QLatin1String("titlebar")) {
        // The latest bare top-level window, standing in for the core window, and the
        // latest title bar built on it.
        static QPointer<QWidget> titleWindow;
        static QPointer<ZVMainWindowTitle> title;
        const QString action = rest.section(QLatin1Char(':'), 0, 0);
        const QString arg = rest.section(QLatin1Char(':'), 1);
        if (action == QLatin1String("window")) {
            titleWindow = new QWidget;
            titleWindow->resize(800, 600);
        } else if (action == QLatin1String("maximize") && titleWindow) {
            titleWindow->setWindowState(Qt::WindowMaximized);
        } else if (action == QLatin1String("build")) {
            title = new ZVMainWindowTitle(titleWindow);
            title->init();
        } else if (action == QLatin1String("show") && titleWindow) {
            titleWindow->show();
        } else if (action == QLatin1String("click") && title) {
            if (auto* button = title->findChild<QPushButton*>(arg))
                button->click();
        } else if (action == QLatin1String("menufeedback") && title && title->menuView()) {
            emit title->menuView()->signalShowFeedback();
        } else if (action == QLatin1String("report") && title) {
            const auto* label = title->findChild<QLabel*>(QStringLiteral("label_title"));
            const auto* feedback = title->findChild<QPushButton*>(QStringLiteral("btn_feedback"));
            const auto* max = title->findChild<QPushButton*>(QStringLiteral("btn_max"));
            report(verb, {
                {QStringLiteral("titleText"), label ? label->text() : QString()},
                {QStringLiteral("feedbackToolTip"), feedback ? feedback->toolTip() : QString()},
                {QStringLiteral("maxed"), max ? QJsonValue::fromVariant(max->property("maxed")) : QJsonValue()},
                {QStringLiteral("firstShowDone"), ZVMainWindowTitle::firstShowDone()},
                {QStringLiteral("mainWindowIsLatest"),
                 titleWindow && ZVMainWindowTitle::mainWindow() == titleWindow.data()},
                {QStringLiteral("receiveEmailOnCrash"), ZVApplicationInfo::GetInstance()->GetReceiveEmailOnCrash()},
            });
        } else {
            return false;
        }
        return true;
    }
    if (verb == QLatin1String("menu") || verb == QLatin1String("menulang") || verb == QLatin1String("menutrigger")
        || verb == QLatin1String("menushow"))
        return titleMenuCommand(verb, rest);
    if (verb == QLatin1String("highdpi")) {
        return true; // done before the application object existed
    }
    if (verb == QLatin1String("highdpi-report")) {
        QFile factor(CLanguageStore::GetInstance()->GetAppDir() + QStringLiteral("factor.tmp"));
        const bool exists = factor.open(QIODevice::ReadOnly);
        report(verb, {
            {QStringLiteral("scaleFactorSet"), qEnvironmentVariableIsSet("QT_SCALE_FACTOR")},
            {QStringLiteral("scaleFactor"), QString::fromLocal8Bit(qgetenv("QT_SCALE_FACTOR"))},
            {QStringLiteral("qtScaling"), QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling)},
            {QStringLiteral("pixmaps"), QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps)},
            {QStringLiteral("factorFile"), exists},
            {QStringLiteral("factorHex"), QString::fromLatin1(exists ? factor.readAll().toHex() : QByteArray())},
        });
        return true;
    }
    if (verb == QLatin1String("corewindow")) {
        // The latest core window, built and placed as a host does.
        static QPointer<ZVCoreWindow> coreWindow;
        const QString action = rest.section(QLatin1Char(':'), 0, 0);
        QList<int> numbers;
        for (const QString& n : rest.section(QLatin1Char(':'), 1).split(QLatin1Char(','), Qt::SkipEmptyParts))
            numbers.append(n.toInt());
        if (action == QLatin1String("build")) {
            coreWindow = new ZVCoreWindow(nullptr);
            coreWindow->setMenuWidget(coreWindow->GetTitleWidget());
        } else if (action == QLatin1String("show") && coreWindow && numbers.size() == 4) {
            coreWindow->setGeometry(numbers.at(0), numbers.at(1), numbers.at(2), numbers.at(3));
            coreWindow->show();
            QEventLoop loop;
            QTimer::singleShot(50, &loop, &QEventLoop::quit);
            loop.exec();
        } else if (action == QLatin1String("spin")) {
            // One pass of the event loop, as the host's exec() starts with.
            QEventLoop loop;
            QTimer::singleShot(0, &loop, &QEventLoop::quit);
            loop.exec();
        } else if (action == QLatin1String("report") && coreWindow) {
            const auto* title = qobject_cast<ZVMainWindowTitle*>(coreWindow->GetTitleWidget());
            const CCustomMenu* menu = title && title->menuView() ? title->menuView()->menu() : nullptr;
            QJsonArray keys;
            QJsonArray texts;
            if (menu) {
                for (const QAction* a : menu->actions()) {
                    if (a->isSeparator())
                        continue;
                    keys.append(a->property("key").toString());
                    texts.append(a->text());
                }
            }
            report(verb + QLatin1Char(':') + action, {
                {QStringLiteral("hasTitle"), title != nullptr},
                {QStringLiteral("hasMenu"), menu != nullptr},
                {QStringLiteral("menuName"), menu ? menu->objectName() : QString()},
                {QStringLiteral("keys"), keys},
                {QStringLiteral("texts"), texts},
                {QStringLiteral("language"), ZVApplicationInfo::GetInstance()->GetCurrentLanguage()},
                {QStringLiteral("catalogueSize"), int(CLanguageStore::GetInstance()->GetLanguageList().size())},
                {QStringLiteral("dpr"), coreWindow->devicePixelRatioF()},
            });
        } else if (action == QLatin1String("hittest") && coreWindow && numbers.size() == 6) {
            const QRect windowRect(numbers.at(0), numbers.at(1), numbers.at(2), numbers.at(3));
            const QPoint pos(numbers.at(4), numbers.at(5));
            report(verb + QLatin1Char(':') + action, {
                {QStringLiteral("x"), pos.x()},
                {QStringLiteral("y"), pos.y()},
                {QStringLiteral("code"), double(coreWindow->HitTest(windowRect, pos))},
                {QStringLiteral("dpr"), coreWindow->devicePixelRatioF()},
            });
        } else {
            return false;
        }
        return true;
    }
    bool ok = true;
    if (runHardeningCommand(verb, rest, &ok))
        return ok;
    std::fprintf(stderr, "zvprobe: unknown command %s\n", qPrintable(command));
    return false;
}

} // namespace

// "highdpi:<name>=<value>,..." as the first command runs the high-DPI decision before the
// application object exists, as a host does; "highdpi-report" then shows its effects.
static void enableHighDpiFromArguments(int argc, char** argv)
{
    if (argc < 2 || std::strncmp(argv[1], "highdpi:", 8) != 0)
        return;
    QMap<QString, QVariant> options;
    const QString list = QString::fromUtf8(argv[1] + 8);
    for (const QString& item : list.split(QLatin1Char(','), Qt::SkipEmptyParts))
        options.insert(item.section(QLatin1Char('='), 0, 0), item.section(QLatin1Char('='), 1));
    ZVApplicationInfo::EnableHighDPISupport(options);
}

int main(int argc, char** argv)
{
    runHardeningLoopBeforeApplication(argc, argv);
    enableHighDpiFromArguments(argc, argv);
    QApplication app(argc, argv);
    const QStringList commands = QCoreApplication::arguments().mid(1);
    for (const QString& command : commands) {
        if (!run(command))
            return 2;
    }
    return 0;
}
