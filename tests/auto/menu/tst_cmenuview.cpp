// The title menu. What needs no link file runs in this process; reading the link file
// needs the language manager, which chooses and saves a language in the program's
// folder, so those cases run in a probe copied into a fresh folder of their own.
#include "probe.h"

#include <ZVCore/ZVCustomEvent>
#include <ZVCore/ZVCustomEventSendObj>
#include <ZVCore/private/CCustomMenu>
#include <ZVCore/private/CMenuView>
#include <ZVCore/private/MenuItemInfo>
#include <ZVCore/private/zvcoreconfig_p.h>
#include <ZVFoundation/CSimpleCrypt>

#include <QtGui/QCursor>
#include <QtGui/QDesktopServices>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include <algorithm>
#include <cerrno>
#include <cstring>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#include <sys/types.h>
#endif

namespace {

const char kReadError[] = "ZVCore: URL xml read error, ";

QByteArray enc(const QString& plain)
{
    return CSimpleCrypt(ZVCORE_LINK_CIPHER_KEY).encryptToString(plain).toLatin1();
}

QByteArray field(const QByteArray& name, const QByteArray& value)
{
    return '<' + name + '>' + value + "</" + name + '>';
}

// A shown entry named \a name with further fields.
QByteArray shown(const QByteArray& name, const QByteArray& fields = QByteArray())
{
    return "<childMenu>" + field("isShow", "1") + field("menuName", name) + fields + "</childMenu>";
}

QByteArray menuElement(const QByteArray& entries)
{
    return "<menu>" + entries + "</menu>";
}

QByteArray linkFile(const QByteArray& body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<links>" + body + "</links>\n";
}

const QString kLinkFile = QStringLiteral("language/main/English_URL.xml");

// The actions of a reported menu: the "key" of each entry, "-" for a separator.
QStringList actionKeys(const QJsonObject& r)
{
    QStringList keys;
    for (const QJsonValue& v : r.value(QStringLiteral("actions")).toArray()) {
        const QJsonObject a = v.toObject();
        keys.append(a.value(QStringLiteral("separator")).toBool() ? QStringLiteral("-")
                                                                   : a.value(QStringLiteral("key")).toString());
    }
    return keys;
}

QStringList actionTexts(const QJsonObject& r)
{
    QStringList texts;
    for (const QJsonValue& v : r.value(QStringLiteral("actions")).toArray()) {
        const QJsonObject a = v.toObject();
        if (!a.value(QStringLiteral("separator")).toBool())
            texts.append(a.value(QStringLiteral("text")).toString());
    }
    return texts;
}

QJsonObject entryNamed(const QJsonObject& r, const QString& name)
{
    for (const QJsonValue& v : r.value(QStringLiteral("entries")).toArray()) {
        if (v.toObject().value(QStringLiteral("name")).toString() == name)
            return v.toObject();
    }
    return QJsonObject();
}

QStringList strings(const QJsonValue& v)
{
    QStringList out;
    for (const QJsonValue& s : v.toArray())
        out.append(s.toString());
    return out;
}

QList<QJsonObject> reportsOf(const ProbeRun& run, const QString& cmd)
{
    QList<QJsonObject> out;
    for (const QJsonObject& r : run.reports) {
        if (r.value(QStringLiteral("cmd")).toString() == cmd)
            out.append(r);
    }
    return out;
}

bool readErrorLogged(const ProbeRun& run)
{
    for (const QString& line : run.log) {
        if (line.startsWith(QLatin1String(kReadError)))
            return true;
    }
    return false;
}

// Where the language manager looks for the English link file of \a product, as the
// running program sees its own folder.
QString linkFilePath(const ProbeFolder& product)
{
    return QDir::toNativeSeparators(QFileInfo(product.path()).canonicalFilePath() + QLatin1Char('/') + kLinkFile);
}

} // namespace

// Takes what the menu hands to the desktop services and the bus.
class Recorder : public QObject
{
    Q_OBJECT

public:
    QStringList happened;

public slots:
    void record(const QUrl& url) { happened.append(QStringLiteral("url:") + QString::fromLatin1(url.toEncoded())); }

protected:
    void customEvent(QEvent* event) override
    {
        const auto* bus = dynamic_cast<const ZVCustomEvent*>(event);
        happened.append(QStringLiteral("bus:%1:%2").arg(int(event->type())).arg(bus ? bus->value : -1));
    }
};

class tst_CMenuView : public QObject
{
    Q_OBJECT

private:
    // Runs the probe with the English link file \a xml (none when null) and \a commands.
    static ProbeRun runMenu(ProbeFolder& product, const QByteArray& xml, const QStringList& commands)
    {
        if (!xml.isNull())
            product.write(kLinkFile, xml);
        return product.run(QStringList{QStringLiteral("prop:ForceLanguage=string:English")} + commands);
    }

    static ProbeRun runMenu(const QByteArray& xml, const QStringList& commands = {QStringLiteral("menu:1")})
    {
        ProbeFolder product;
        return runMenu(product, xml, commands);
    }

private slots:
    void init();
    void cleanup();

    // --- in this process -------------------------------------------------------------
    void constructedEmpty();
    void otherChangeEventsIgnored_data();
    void otherChangeEventsIgnored();
    void dispatch_data();
    void dispatch();
    void dispatchNullEntry();
    void dispatchSurvivesEntryDeletedByReceiver();
    void showMenuBeforeAnyLanguageChange();

    // --- in the probe ---------------------------------------------------------------
    void sortedByOrder_data();
    void sortedByOrder();
    void separators_data();
    void separators();
    void shownEntriesOnly_data();
    void shownEntriesOnly();
    void tagNamesIgnoreCase_data();
    void tagNamesIgnoreCase();
    void allMenusFlattened();
    void fieldElementsByExactName();
    void fieldValues();
    void triggerFromMenu_data();
    void triggerFromMenu();
    void languageChangesRebuild();
    void repeatedChangesLeaveOneMenu_data();
    void repeatedChangesLeaveOneMenu();
    void unreadableLinkFile_data();
    void unreadableLinkFile();
    void linkFileInAPipe();
    void unreadableForPermissions();
    void malformedLinkFile_data();
    void malformedLinkFile();
    void manyEntries();
    void showMenuAtButton();
};

void tst_CMenuView::init()
{
    QCursor::setPos(QPoint(1, 1));
}

void tst_CMenuView::cleanup()
{
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
    for (int id : {1001, 5000, 5001, 5002, 60001})
        ZVCustomEventSendObj::GetInstance()->Detach(id);
}

// --- in this process -----------------------------------------------------------------

void tst_CMenuView::constructedEmpty()
{
    QWidget title;
    CMenuView view(&title);
    QCOMPARE(view.parentWidget(), &title);
    QVERIFY(view.menu() == nullptr);
    QVERIFY(view.entries().isEmpty());
    QVERIFY(view.findChildren<CCustomMenu*>().isEmpty());
    QVERIFY(qobject_cast<QWidget*>(&view) != nullptr);
}

void tst_CMenuView::otherChangeEventsIgnored_data()
{
    QTest::addColumn<int>("type");

    QTest::newRow("FontChange") << int(QEvent::FontChange);
    QTest::newRow("StyleChange") << int(QEvent::StyleChange);
    QTest::newRow("EnabledChange") << int(QEvent::EnabledChange);
    QTest::newRow("PaletteChange") << int(QEvent::PaletteChange);
    QTest::newRow("LocaleChange") << int(QEvent::LocaleChange);
    QTest::newRow("LayoutDirectionChange") << int(QEvent::LayoutDirectionChange);
    QTest::newRow("ActivationChange") << int(QEvent::ActivationChange);
    QTest::newRow("WindowTitleChange") << int(QEvent::WindowTitleChange);
}

void tst_CMenuView::otherChangeEventsIgnored()
{
    QFETCH(int, type);

    CMenuView view;
    QSignalSpy inited(&view, &CMenuView::signalMenuItemInited);
    QEvent change(static_cast<QEvent::Type>(type));
    QCoreApplication::sendEvent(&view, &change);
    QCOMPARE(inited.count(), 0);
    QVERIFY(view.menu() == nullptr);
    QVERIFY(view.entries().isEmpty());
}

void tst_CMenuView::dispatch_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("url");
    QTest::addColumn<int>("event");
    QTest::addColumn<QStringList>("expected");

    const QString shop = QStringLiteral("https://shop.example/buy?item=7");
    const QString shopEncoded = QStringLiteral("url:https://shop.example/buy?item=7");
    const int none = 60001; // the default of an entry

    QTest::newRow("Feedback") << "Feedback" << QString() << none << QStringList{"signalShowFeedback"};
    QTest::newRow("feedback") << "feedback" << QString() << none << QStringList{"signalShowFeedback"};
    QTest::newRow("About") << "About" << QString() << none << QStringList{"signalShowAboutDlg"};
    QTest::newRow("about") << "about" << QString() << none << QStringList{"signalShowAboutDlg"};
    QTest::newRow("ABOUT") << "ABOUT" << QString() << none << QStringList{"signalShowAboutDlg"};
    QTest::newRow("CheckNewVersion") << "CheckNewVersion" << QString() << none << QStringList{"bus:1001:1"};
    QTest::newRow("checknewversion") << "checknewversion" << QString() << none << QStringList{"bus:1001:1"};
    QTest::newRow("Exit") << "Exit" << QString() << none << QStringList{"signalExit"};
    QTest::newRow("eXIT") << "eXIT" << QString() << none << QStringList{"signalExit"};
    QTest::newRow("MultiLanguage") << "MultiLanguage" << QString() << none << QStringList{"signalShowLanguagePopDlg"};
    QTest::newRow("multilanguage") << "multilanguage" << QString() << none << QStringList{"signalShowLanguagePopDlg"};

    // Built-in names keep their meaning whatever else the entry carries.
    QTest::newRow("About with url and event") << "About" << shop << 5000 << QStringList{"signalShowAboutDlg"};
    QTest::newRow("Feedback with url") << "Feedback" << shop << none << QStringList{"signalShowFeedback"};
    QTest::newRow("CheckNewVersion with url and event") << "CheckNewVersion" << shop << 5000
                                                        << QStringList{"bus:1001:1"};
    QTest::newRow("Exit with event") << "Exit" << QString() << 5000 << QStringList{"signalExit"};
    QTest::newRow("MultiLanguage with url") << "MultiLanguage" << shop << none
                                            << QStringList{"signalShowLanguagePopDlg"};

    // Other names: the address if there is one, else the event.
    QTest::newRow("unknown with url") << "Shop" << shop << none << QStringList{shopEncoded};
    QTest::newRow("unknown with url and event") << "Shop" << shop << 5000 << QStringList{shopEncoded};
    QTest::newRow("url parsed tolerantly") << "Shop" << QStringLiteral("https://shop.example/a b") << none
                                           << QStringList{"url:https://shop.example/a%20b"};
    QTest::newRow("http url") << "Home" << QStringLiteral("http://home.example/") << none
                              << QStringList{"url:http://home.example/"};
    QTest::newRow("unknown without url or event") << "Shop" << QString() << none
                                                  << QStringList{"signalAttachEvent:60001", "bus:60001:1"};
    QTest::newRow("unknown with event") << "Shop" << QString() << 5001
                                        << QStringList{"signalAttachEvent:5001", "bus:5001:1"};
    QTest::newRow("empty name") << "" << QString() << none << QStringList{"signalAttachEvent:60001", "bus:60001:1"};
    QTest::newRow("name containing About") << "About us" << QString() << 5002
                                           << QStringList{"signalAttachEvent:5002", "bus:5002:1"};
    QTest::newRow("name containing Exit") << "Exit2" << QString() << none
                                          << QStringList{"signalAttachEvent:60001", "bus:60001:1"};
}

void tst_CMenuView::dispatch()
{
    QFETCH(QString, name);
    QFETCH(QString, url);
    QFETCH(int, event);
    QFETCH(QStringList, expected);

    Recorder recorder;
    QDesktopServices::setUrlHandler(QStringLiteral("https"), &recorder, "record");
    QDesktopServices::setUrlHandler(QStringLiteral("http"), &recorder, "record");
    ZVCustomEventSendObj* bus = ZVCustomEventSendObj::GetInstance();
    bus->Attach(1001, &recorder);

    CMenuView view;
    QSignalSpy feedback(&view, &CMenuView::signalShowFeedback);
    QSignalSpy about(&view, &CMenuView::signalShowAboutDlg);
    QSignalSpy exit(&view, &CMenuView::signalExit);
    QSignalSpy language(&view, &CMenuView::signalShowLanguagePopDlg);
    QSignalSpy attach(&view, &CMenuView::signalAttachEvent);
    QSignalSpy inited(&view, &CMenuView::signalMenuItemInited);
    connect(&view, &CMenuView::signalShowFeedback, &recorder, [&] { recorder.happened.append("signalShowFeedback"); });
    connect(&view, &CMenuView::signalShowAboutDlg, &recorder, [&] { recorder.happened.append("signalShowAboutDlg"); });
    connect(&view, &CMenuView::signalExit, &recorder, [&] { recorder.happened.append("signalExit"); });
    connect(&view, &CMenuView::signalShowLanguagePopDlg, &recorder,
            [&] { recorder.happened.append("signalShowLanguagePopDlg"); });
    // The host attaches its receiver when the id is announced, before the event is sent.
    connect(&view, &CMenuView::signalAttachEvent, &recorder, [&](int id) {
        recorder.happened.append(QStringLiteral("signalAttachEvent:%1").arg(id));
        bus->Attach(id, &recorder);
    });

    MenuItemInfo entry;
    entry.name = name;
    entry.url = url;
    entry.hasUrl = !url.isEmpty();
    entry.event = event;
    view.onMenuItemTriggered(&entry);

    // Everything happened before the call returned.
    QCOMPARE(recorder.happened, expected);
    QCOMPARE(feedback.count(), int(expected.contains("signalShowFeedback")));
    QCOMPARE(about.count(), int(expected.contains("signalShowAboutDlg")));
    QCOMPARE(exit.count(), int(expected.contains("signalExit")));
    QCOMPARE(language.count(), int(expected.contains("signalShowLanguagePopDlg")));
    QCOMPARE(attach.count(), int(expected.first().startsWith("signalAttachEvent:")));
    if (attach.count() == 1)
        QCOMPARE(attach.at(0).at(0).toInt(), event);
    QCOMPARE(inited.count(), 0);
}

void tst_CMenuView::dispatchNullEntry()
{
    Recorder recorder;
    ZVCustomEventSendObj::GetInstance()->Attach(60001, &recorder);
    CMenuView view;
    QSignalSpy attach(&view, &CMenuView::signalAttachEvent);
    view.onMenuItemTriggered(nullptr);
    QCOMPARE(attach.count(), 0);
    QVERIFY(recorder.happened.isEmpty());
}

void tst_CMenuView::dispatchSurvivesEntryDeletedByReceiver()
{
    // A receiver of the announcement may rebuild the menu, which discards the entry.
    Recorder recorder;
    ZVCustomEventSendObj* bus = ZVCustomEventSendObj::GetInstance();
    CMenuView view;
    auto* entry = new MenuItemInfo;
    entry->name = QStringLiteral("Shop");
    entry->event = 5000;
    connect(&view, &CMenuView::signalAttachEvent, &recorder, [&](int id) {
        bus->Attach(id, &recorder);
        delete entry;
        entry = nullptr;
    });
    view.onMenuItemTriggered(entry);
    QCOMPARE(recorder.happened, QStringList{QStringLiteral("bus:5000:1")});
}

void tst_CMenuView::showMenuBeforeAnyLanguageChange()
{
    QWidget window;
    window.setGeometry(100, 100, 300, 200);
    auto* button = new QPushButton(QStringLiteral("Menu"), &window);
    button->setGeometry(20, 20, 80, 24);
    CMenuView view(&window);
    view.hide();
    connect(button, &QPushButton::clicked, &view, &CMenuView::slotShowMenu);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    bool timerRan = false;
    QWidget* popup = nullptr;
    QTimer::singleShot(0, &window, [&] {
        timerRan = true;
        popup = QApplication::activePopupWidget();
        if (popup)
            popup->close();
    });
    button->click();   // returns at once: there is no menu
    view.slotShowMenu(); // no sender at all
    QTRY_VERIFY(timerRan);
    QVERIFY(popup == nullptr);
    QVERIFY(view.menu() == nullptr);
    QVERIFY(view.isHidden());
}

// --- in the probe ---------------------------------------------------------------------

void tst_CMenuView::sortedByOrder_data()
{
    QTest::addColumn<QByteArray>("entries");

    const QByteArray third = shown("C", field("order", "3") + field("displayName", "Third"));
    const QByteArray missing = shown("M", field("displayName", "Missing"));
    const QByteArray second = shown("B", field("order", "2") + field("displayName", "Second"));
    const QByteArray negative = shown("N", field("order", "-5") + field("displayName", "Negative"));
    const QByteArray zero = shown("Z", field("order", "none") + field("displayName", "Zero"));

    QTest::newRow("3, missing, 2, -5, not a number") << third + missing + second + negative + zero;
    QTest::newRow("ascending in the file") << negative + zero + missing + second + third;
    QTest::newRow("descending in the file") << third + second + missing + zero + negative;
    QTest::newRow("missing first") << missing + zero + third + negative + second;
}

void tst_CMenuView::sortedByOrder()
{
    QFETCH(QByteArray, entries);

    const ProbeRun run = runMenu(linkFile(menuElement(entries)));
    QVERIFY(run.finished);
    QCOMPARE(run.exitCode, 0);
    const QJsonObject r = run.report(QStringLiteral("menu"));
    QCOMPARE(actionKeys(r), (QStringList{"N", "Z", "M", "B", "C"}));
    QCOMPARE(actionTexts(r), (QStringList{"Negative", "Zero", "Missing", "Second", "Third"}));
    QCOMPARE(entryNamed(r, QStringLiteral("M")).value(QStringLiteral("order")).toInt(), 1);
    QCOMPARE(entryNamed(r, QStringLiteral("Z")).value(QStringLiteral("order")).toInt(), 0);
    QCOMPARE(entryNamed(r, QStringLiteral("N")).value(QStringLiteral("order")).toInt(), -5);

    // The entry list is left in menu order.
    QStringList entryNames;
    for (const QJsonValue& v : r.value(QStringLiteral("entries")).toArray())
        entryNames.append(v.toObject().value(QStringLiteral("name")).toString());
    QCOMPARE(entryNames, (QStringList{"N", "Z", "M", "B", "C"}));
}

void tst_CMenuView::separators_data()
{
    QTest::addColumn<QByteArray>("a");
    QTest::addColumn<QByteArray>("b");
    QTest::addColumn<QByteArray>("c");
    QTest::addColumn<QStringList>("expected");

    const QByteArray none; // no element at all
    QTest::newRow("1 on the last entry") << none << none << QByteArray("1") << QStringList{"A", "B", "C", "-"};
    QTest::newRow("1 in the middle") << QByteArray("1") << none << none << QStringList{"A", "-", "B", "C"};
    QTest::newRow("1 everywhere") << QByteArray("1") << QByteArray("1") << QByteArray("1")
                                  << QStringList{"A", "-", "B", "-", "C", "-"};
    QTest::newRow("0") << QByteArray("0") << QByteArray("0") << QByteArray("0") << QStringList{"A", "B", "C"};
    QTest::newRow("2") << QByteArray("2") << none << QByteArray("2") << QStringList{"A", "B", "C"};
    QTest::newRow("-1") << QByteArray("-1") << none << none << QStringList{"A", "B", "C"};
    QTest::newRow("true") << QByteArray("true") << QByteArray("yes") << QByteArray("") << QStringList{"A", "B", "C"};
    QTest::newRow("decimal 01 is 1") << none << QByteArray("01") << none << QStringList{"A", "B", "-", "C"};
    QTest::newRow("hex 0x1 is no number") << QByteArray("0x1") << none << none << QStringList{"A", "B", "C"};
}

void tst_CMenuView::separators()
{
    QFETCH(QByteArray, a);
    QFETCH(QByteArray, b);
    QFETCH(QByteArray, c);
    QFETCH(QStringList, expected);

    auto entry = [](const QByteArray& name, int order, const QByteArray& separator) {
        return shown(name, field("order", QByteArray::number(order))
                               + (separator.isNull() ? QByteArray() : field("addSeparator", separator)));
    };
    const ProbeRun run = runMenu(linkFile(menuElement(entry("C", 3, c) + entry("A", 1, a) + entry("B", 2, b))));
    QCOMPARE(run.exitCode, 0);
    const QJsonObject r = run.report(QStringLiteral("menu"));
    QCOMPARE(actionKeys(r), expected);
    QCOMPARE(entryNamed(r, QStringLiteral("A")).value(QStringLiteral("addSeparator")).toBool(), a == "1");
}

void tst_CMenuView::shownEntriesOnly_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<bool>("listed");

    const QByteArray order = field("order", "2");
    QTest::newRow("isShow 1") << QByteArray("<childMenu><isShow>1</isShow><menuName>X</menuName>" + order + "</childMenu>")
                              << true;
    QTest::newRow("isShow 0") << QByteArray("<childMenu><isShow>0</isShow><menuName>X</menuName>" + order + "</childMenu>")
                              << false;
    QTest::newRow("isShow missing") << QByteArray("<childMenu><menuName>X</menuName>" + order + "</childMenu>") << false;
    QTest::newRow("isShow 2") << QByteArray("<childMenu><isShow>2</isShow><menuName>X</menuName>" + order + "</childMenu>")
                              << false;
    QTest::newRow("isShow -1") << QByteArray("<childMenu><isShow>-1</isShow><menuName>X</menuName>" + order + "</childMenu>")
                               << false;
    QTest::newRow("isShow empty") << QByteArray("<childMenu><isShow/><menuName>X</menuName>" + order + "</childMenu>")
                                  << false;
    QTest::newRow("isShow not a number") << QByteArray("<childMenu><isShow>yes</isShow><menuName>X</menuName>" + order
                                                       + "</childMenu>")
                                         << false;
    QTest::newRow("isShow after the name") << QByteArray("<childMenu><menuName>X</menuName><isShow>1</isShow>" + order
                                                         + "</childMenu>")
                                           << true;
    QTest::newRow("first isShow counts, 0 then 1")
        << QByteArray("<childMenu><isShow>0</isShow><isShow>1</isShow><menuName>X</menuName>" + order + "</childMenu>")
        << false;
    QTest::newRow("first isShow counts, 1 then 0")
        << QByteArray("<childMenu><isShow>1</isShow><isShow>0</isShow><menuName>X</menuName>" + order + "</childMenu>")
        << true;
    QTest::newRow("IsShow is another element") << QByteArray("<childMenu><IsShow>1</IsShow><menuName>X</menuName>" + order
                                                             + "</childMenu>")
                                               << false;
    QTest::newRow("Install") << shown("Install", order) << false;
    QTest::newRow("install") << shown("install", order) << false;
    QTest::newRow("INSTALL") << shown("INSTALL", order) << false;
    QTest::newRow("iNsTaLl with url") << shown("iNsTaLl", order + field("url", enc("https://a.example/setup")))
                                      << false;
    QTest::newRow("Installer is another name") << shown("Installer", order) << true;
    QTest::newRow("no menuName") << QByteArray("<childMenu><isShow>1</isShow>" + order + "</childMenu>") << true;
}

void tst_CMenuView::shownEntriesOnly()
{
    QFETCH(QByteArray, entry);
    QFETCH(bool, listed);

    const ProbeRun run = runMenu(linkFile(menuElement(shown("Anchor", field("order", "1")) + entry)));
    QCOMPARE(run.exitCode, 0);
    const QJsonObject r = run.report(QStringLiteral("menu"));
    const QJsonArray entries = r.value(QStringLiteral("entries")).toArray();
    QCOMPARE(entries.size(), listed ? 2 : 1);
    QCOMPARE(r.value(QStringLiteral("actions")).toArray().size(), listed ? 2 : 1);
    QCOMPARE(entries.at(0).toObject().value(QStringLiteral("name")).toString(), QStringLiteral("Anchor"));
}

void tst_CMenuView::tagNamesIgnoreCase_data()
{
    QTest::addColumn<QByteArray>("menuTag");
    QTest::addColumn<QByteArray>("childTag");

    QTest::newRow("menu, childMenu") << QByteArray("menu") << QByteArray("childMenu");
    QTest::newRow("MENU, CHILDMENU") << QByteArray("MENU") << QByteArray("CHILDMENU");
    QTest::newRow("Menu, childmenu") << QByteArray("Menu") << QByteArray("childmenu");
    QTest::newRow("mEnU, ChildMenu") << QByteArray("mEnU") << QByteArray("ChildMenu");
}

void tst_CMenuView::tagNamesIgnoreCase()
{
    QFETCH(QByteArray, menuTag);
    QFETCH(QByteArray, childTag);

    auto entry = [&](const QByteArray& name, const QByteArray& order) {
        return '<' + childTag + '>' + field("isShow", "1") + field("menuName", name) + field("order", order) + "</"
            + childTag + '>';
    };
    const QByteArray xml = linkFile('<' + menuTag + '>' + entry("One", "1") + entry("Two", "2") + "</" + menuTag + '>');
    const ProbeRun run = runMenu(xml);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(actionKeys(run.report(QStringLiteral("menu"))), (QStringList{"One", "Two"}));
}

void tst_CMenuView::allMenusFlattened()
{
    const QByteArray xml = linkFile(
        menuElement(shown("A", field("order", "1")) + shown("D", field("order", "4")))
        // Other elements and entries outside a "menu" are not read.
        + "<other>" + shown("Other", field("order", "2")) + "</other>"
        + shown("Loose", field("order", "2"))
        + "<!-- a comment -->"
        + menuElement(shown("B", field("order", "2"))
                      // A "menu" inside a "menu" makes no submenu and is not read either.
                      + menuElement(shown("Nested", field("order", "2")))
                      + "<separator/>"
                      + shown("C", field("order", "3")))
        + "<menu/>");
    const ProbeRun run = runMenu(xml);
    QCOMPARE(run.exitCode, 0);
    const QJsonObject r = run.report(QStringLiteral("menu"));
    QCOMPARE(actionKeys(r), (QStringList{"A", "B", "C", "D"}));
    QCOMPARE(r.value(QStringLiteral("entries")).toArray().size(), 4);
    for (const QJsonValue& v : r.value(QStringLiteral("actions")).toArray())
        QVERIFY(v.toObject().value(QStringLiteral("parentIsMenu")).toBool());
}

void tst_CMenuView::fieldElementsByExactName()
{
    const QByteArray entry = "<childMenu><isShow>1</isShow>"
                             "<MenuName>Wrong</MenuName><menuName>Right</menuName><menuName>Later</menuName>"
                             "<DisplayName>Wrong caption</DisplayName>"
                             "<displayName>First caption</displayName><displayName>Second caption</displayName>"
                             "<Order>-9</Order>"
                             "<Event>5000</Event>"
                             "<AddSeparator>1</AddSeparator>"
                             "<URL>" + enc("https://wrong.example/") + "</URL>"
                             "</childMenu>";
    const ProbeRun run = runMenu(linkFile(menuElement(entry)));
    QCOMPARE(run.exitCode, 0);
    const QJsonObject r = run.report(QStringLiteral("menu"));
    QCOMPARE(actionKeys(r), QStringList{"Right"});
    const QJsonObject e = entryNamed(r, QStringLiteral("Right"));
    QCOMPARE(e.value(QStringLiteral("displayName")).toString(), QStringLiteral("First caption"));
    QCOMPARE(e.value(QStringLiteral("actionText")).toString(), QStringLiteral("First caption"));
    QCOMPARE(e.value(QStringLiteral("order")).toInt(), 1);
    QCOMPARE(e.value(QStringLiteral("event")).toInt(), 60001);
    QCOMPARE(e.value(QStringLiteral("addSeparator")).toBool(), false);
    QCOMPARE(e.value(QStringLiteral("hasUrl")).toBool(), false);
    QCOMPARE(e.value(QStringLiteral("url")).toString(), QString());
}

void tst_CMenuView::fieldValues()
{
    CSimpleCrypt otherKey(ZVCORE_LINK_CIPHER_KEY ^ Q_UINT64_C(0x5a5a));
    const QByteArray xml = linkFile(menuElement(
        shown("Shop", field("url", enc("https://shop.example/buy?item=7")) + field("displayName", "Shop &amp; more")
                          + field("order", "1") + field("event", "5000"))
        + shown("Padded", field("url", "\n  " + enc("https://padded.example/") + "\n  ") + field("order", "2"))
        + shown("Broken", field("url", "not enciphered") + field("order", "3") + field("event", "5001"))
        + shown("EmptyUrl", field("url", "") + field("order", "4"))
        + shown("EmptyPlain", field("url", enc(QString())) + field("order", "5"))
        + shown("OtherKey", field("url", otherKey.encryptToString(QStringLiteral("https://x.example/")).toLatin1())
                                + field("order", "6"))
        + shown("NoFields")
        + shown("NumberlessEvent", field("event", "soon") + field("order", "7"))
        + shown("NegativeEvent", field("event", "-3") + field("order", "8"))));
    const ProbeRun run = runMenu(xml);
    QCOMPARE(run.exitCode, 0);
    const QJsonObject r = run.report(QStringLiteral("menu"));
    QCOMPARE(r.value(QStringLiteral("entries")).toArray().size(), 9);

    struct Expected { const char* name; const char* url; bool hasUrl; int event; const char* displayName; };
    const Expected expected[] = {
        {"Shop", "https://shop.example/buy?item=7", true, 5000, "Shop & more"},
        {"Padded", "https://padded.example/", true, 60001, ""},
        {"Broken", "", false, 5001, ""},
        {"EmptyUrl", "", false, 60001, ""},
        {"EmptyPlain", "", false, 60001, ""},
        {"OtherKey", "", false, 60001, ""},
        {"NoFields", "", false, 60001, ""},
        {"NumberlessEvent", "", false, 0, ""},
        {"NegativeEvent", "", false, -3, ""},
    };
    for (const Expected& x : expected) {
        const QJsonObject e = entryNamed(r, QLatin1String(x.name));
        QVERIFY2(!e.isEmpty(), x.name);
        QCOMPARE(e.value(QStringLiteral("url")).toString(), QLatin1String(x.url));
        QCOMPARE(e.value(QStringLiteral("hasUrl")).toBool(), x.hasUrl);
        QCOMPARE(e.value(QStringLiteral("event")).toInt(), x.event);
        QCOMPARE(e.value(QStringLiteral("displayName")).toString(), QString::fromUtf8(x.displayName));
        QCOMPARE(e.value(QStringLiteral("actionText")).toString(), QString::fromUtf8(x.displayName));
        QCOMPARE(e.value(QStringLiteral("addSeparator")).toBool(), false);
    }
    QCOMPARE(entryNamed(r, QStringLiteral("NoFields")).value(QStringLiteral("order")).toInt(), 1);

    // The action of each entry: caption, "key" and the menu as parent.
    for (const QJsonValue& v : r.value(QStringLiteral("actions")).toArray()) {
        const QJsonObject a = v.toObject();
        QVERIFY(a.value(QStringLiteral("parentIsMenu")).toBool());
        QVERIFY(a.contains(QStringLiteral("key")));
    }
    QCOMPARE(actionKeys(r).first(), QStringLiteral("Shop"));
    QCOMPARE(actionTexts(r).first(), QStringLiteral("Shop & more"));
    QVERIFY(!readErrorLogged(run));
}

void tst_CMenuView::triggerFromMenu_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("expected");

    const QByteArray url = field("url", enc("https://shop.example/buy"));
    const QStringList opened{"url:https://shop.example/buy"};

    QTest::newRow("about") << QByteArray() << "about" << QStringList{"signalShowAboutDlg"};
    QTest::newRow("ABOUT with url and event") << url + field("event", "5000") << "ABOUT"
                                              << QStringList{"signalShowAboutDlg"};
    QTest::newRow("Feedback") << QByteArray() << "Feedback" << QStringList{"signalShowFeedback"};
    QTest::newRow("CheckNewVersion") << QByteArray() << "CheckNewVersion" << QStringList{"bus:1001:1"};
    QTest::newRow("CheckNewVersion with url") << url << "CheckNewVersion" << QStringList{"bus:1001:1"};
    QTest::newRow("exit with event") << field("event", "5000") << "exit" << QStringList{"signalExit"};
    QTest::newRow("MultiLanguage") << QByteArray() << "MultiLanguage" << QStringList{"signalShowLanguagePopDlg"};
    QTest::newRow("unknown with url") << url << "Shop" << opened;
    QTest::newRow("unknown with url and event") << url + field("event", "5000") << "Shop" << opened;
    QTest::newRow("unknown, nothing else") << QByteArray() << "Shop"
                                           << QStringList{"signalAttachEvent:60001", "bus:60001:1"};
    QTest::newRow("unknown with event") << field("event", "5002") << "Shop"
                                        << QStringList{"signalAttachEvent:5002", "bus:5002:1"};
    QTest::newRow("url that does not decode, event") << field("url", "garbage") + field("event", "5001") << "Shop"
                                                     << QStringList{"signalAttachEvent:5001", "bus:5001:1"};
    QTest::newRow("url that does not decode") << field("url", enc("https://x.example/").mid(3)) << "Shop"
                                              << QStringList{"signalAttachEvent:60001", "bus:60001:1"};
}

void tst_CMenuView::triggerFromMenu()
{
    QFETCH(QByteArray, fields);
    QFETCH(QString, name);
    QFETCH(QStringList, expected);

    const QByteArray xml = linkFile(menuElement(shown("Other", field("event", "5003")) + shown(name.toUtf8(), fields)));
    const ProbeRun run = runMenu(xml, {QStringLiteral("menu:1"), QStringLiteral("menutrigger:") + name});
    QCOMPARE(run.exitCode, 0);
    const QJsonObject r = run.report(QStringLiteral("menutrigger"));
    QVERIFY(r.value(QStringLiteral("found")).toBool());
    QCOMPARE(strings(r.value(QStringLiteral("happened"))), expected);
}

void tst_CMenuView::languageChangesRebuild()
{
    ProbeFolder product;
    QVERIFY(product.write(QStringLiteral("language/main/localconfig.json"), R"({"LanguageInfoArray":[
 {"Name":"English","Show":"English","UrlFileName":"English_URL.xml","LocaleLanguage":"English","LocaleName":""},
 {"Name":"French","Show":"Français","UrlFileName":"French_URL.xml","LocaleLanguage":"French","LocaleName":""}
]})"));
    QVERIFY(product.write(QStringLiteral("language/main/French_URL.xml"),
                          linkFile(menuElement(shown("About", field("displayName", "À propos") + field("order", "2"))
                                               + shown("Exit", field("displayName", "Quitter") + field("order", "3"))
                                               + shown("Feedback", field("displayName", "Commentaires")
                                                                      + field("order", "1"))))));
    const ProbeRun run = runMenu(product,
                                 linkFile(menuElement(shown("About", field("displayName", "About") + field("order", "1"))
                                                      + shown("Shop", field("displayName", "Shop")
                                                                          + field("order", "2")))),
                                 {QStringLiteral("loadcatalogue"), QStringLiteral("menulang:English"),
                                  QStringLiteral("menulang:French")});
    QCOMPARE(run.exitCode, 0);
    const QList<QJsonObject> changes = reportsOf(run, QStringLiteral("menulang"));
    QCOMPARE(changes.size(), 2);

    const QJsonObject english = changes.at(0);
    QCOMPARE(english.value(QStringLiteral("inited")).toInt(), 1);
    QCOMPARE(english.value(QStringLiteral("menuName")).toString(), QStringLiteral("titleMenu"));
    QCOMPARE(english.value(QStringLiteral("menuClass")).toString(), QStringLiteral("CCustomMenu"));
    QVERIFY(english.value(QStringLiteral("menuParentIsView")).toBool());
    QCOMPARE(actionKeys(english), (QStringList{"About", "Shop"}));
    QCOMPARE(actionTexts(english), (QStringList{"About", "Shop"}));
    QCOMPARE(english.value(QStringLiteral("liveMenus")).toInt(), 1);

    const QJsonObject french = changes.at(1);
    QCOMPARE(french.value(QStringLiteral("inited")).toInt(), 2);
    QCOMPARE(french.value(QStringLiteral("menuName")).toString(), QStringLiteral("titleMenu"));
    QVERIFY(french.value(QStringLiteral("menuParentIsView")).toBool());
    QCOMPARE(actionKeys(french), (QStringList{"Feedback", "About", "Exit"}));
    QCOMPARE(actionTexts(french), (QStringList{"Commentaires", "À propos", "Quitter"}));
    QCOMPARE(french.value(QStringLiteral("entries")).toArray().size(), 3);
    // The English menu is taken off the view but deleted only later.
    QVERIFY(french.value(QStringLiteral("previousAlive")).toBool());
    QVERIFY(french.value(QStringLiteral("previousParentless")).toBool());
    QCOMPARE(french.value(QStringLiteral("liveMenus")).toInt(), 2);
    QCOMPARE(french.value(QStringLiteral("viewChildMenus")).toInt(), 1);
    QVERIFY(!french.value(QStringLiteral("previousAliveAfterDelete")).toBool());
    QCOMPARE(french.value(QStringLiteral("liveMenusAfterDelete")).toInt(), 1);
}

void tst_CMenuView::repeatedChangesLeaveOneMenu_data()
{
    QTest::addColumn<int>("changes");

    QTest::newRow("one") << 1;
    QTest::newRow("two") << 2;
    QTest::newRow("five") << 5;
}

void tst_CMenuView::repeatedChangesLeaveOneMenu()
{
    QFETCH(int, changes);

    const QByteArray xml = linkFile(menuElement(shown("About", field("order", "1") + field("addSeparator", "1"))
                                                + shown("Exit", field("order", "2"))));
    const ProbeRun run = runMenu(xml, {QStringLiteral("menu:%1").arg(changes), QStringLiteral("menu:0")});
    QCOMPARE(run.exitCode, 0);
    const QList<QJsonObject> reports = reportsOf(run, QStringLiteral("menu"));
    QCOMPARE(reports.size(), 2);
    const QJsonObject r = reports.at(0);
    QCOMPARE(r.value(QStringLiteral("inited")).toInt(), changes);
    QCOMPARE(actionKeys(r), (QStringList{"About", "-", "Exit"}));
    QCOMPARE(r.value(QStringLiteral("entries")).toArray().size(), 2);
    // Every replaced menu is still alive until the deferred deletions run.
    QCOMPARE(r.value(QStringLiteral("liveMenus")).toInt(), changes);
    QCOMPARE(r.value(QStringLiteral("previousAlive")).toBool(), false); // there was none before
    QCOMPARE(r.value(QStringLiteral("liveMenusAfterDelete")).toInt(), 1);
    QCOMPARE(r.value(QStringLiteral("viewChildMenus")).toInt(), 1);

    // No change: the same menu, untouched.
    const QJsonObject same = reports.at(1);
    QCOMPARE(same.value(QStringLiteral("inited")).toInt(), changes);
    QVERIFY(same.value(QStringLiteral("previousAlive")).toBool());
    QVERIFY(!same.value(QStringLiteral("previousParentless")).toBool());
    QCOMPARE(actionKeys(same), (QStringList{"About", "-", "Exit"}));
    QCOMPARE(same.value(QStringLiteral("liveMenusAfterDelete")).toInt(), 1);
}

void tst_CMenuView::unreadableLinkFile_data()
{
    QTest::addColumn<bool>("directory");

    QTest::newRow("missing") << false;
    QTest::newRow("a folder") << true;
}

void tst_CMenuView::unreadableLinkFile()
{
    QFETCH(bool, directory);

    ProbeFolder product;
    QVERIFY(QDir().mkpath(product.file(directory ? kLinkFile : QStringLiteral("language/main"))));
    const QString path = linkFilePath(product);
    QFile probeFile(path);
    QVERIFY(!probeFile.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString expectedLine = QLatin1String(kReadError) + path + QStringLiteral("->") + probeFile.errorString();

    const ProbeRun run = runMenu(product, QByteArray(), {QStringLiteral("menu:2")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.logged(expectedLine), qPrintable(run.log.join(QLatin1Char('\n'))));
    QCOMPARE(run.log.count(expectedLine), 2); // once per language change
    const QJsonObject r = run.report(QStringLiteral("menu"));
    QCOMPARE(r.value(QStringLiteral("inited")).toInt(), 2);
    QCOMPARE(r.value(QStringLiteral("menuName")).toString(), QStringLiteral("titleMenu"));
    QVERIFY(r.value(QStringLiteral("actions")).toArray().isEmpty());
    QVERIFY(r.value(QStringLiteral("entries")).toArray().isEmpty());
    QCOMPARE(r.value(QStringLiteral("liveMenusAfterDelete")).toInt(), 1);
}

void tst_CMenuView::linkFileInAPipe()
{
    // Opening a FIFO for reading would wait for a writer for ever.
#ifdef Q_OS_WIN
    QSKIP("Windows has no FIFOs in the file system");
#else
    ProbeFolder product;
    QVERIFY(QDir().mkpath(product.file(QStringLiteral("language/main"))));
    QCOMPARE(::mkfifo(QFile::encodeName(product.file(kLinkFile)).constData(), 0600), 0);
    QElapsedTimer timer;
    timer.start();
    const ProbeRun run = runMenu(product, QByteArray(), {QStringLiteral("menu:1")});
    QVERIFY(run.finished);
    QVERIFY(timer.elapsed() < 30000);
    QCOMPARE(run.exitCode, 0);
    const QString prefix = QLatin1String(kReadError) + linkFilePath(product) + QStringLiteral("->");
    QVERIFY2(std::any_of(run.log.cbegin(), run.log.cend(), [&](const QString& l) { return l.startsWith(prefix); }),
             qPrintable(run.log.join(QLatin1Char('\n'))));
    const QJsonObject r = run.report(QStringLiteral("menu"));
    QCOMPARE(r.value(QStringLiteral("menuName")).toString(), QStringLiteral("titleMenu"));
    QVERIFY(r.value(QStringLiteral("actions")).toArray().isEmpty());
#endif
}

void tst_CMenuView::unreadableForPermissions()
{
    if (!ProbeFolder::canHonourFilePermissions())
        QSKIP("needs setpriv to drop the capabilities that read any file");
    ProbeFolder product;
    product.setHonourFilePermissions(true);
    QVERIFY(product.write(kLinkFile, linkFile(menuElement(shown("About")))));
    QVERIFY(QFile::setPermissions(product.file(kLinkFile), QFile::Permissions()));
    const QString expectedLine = QLatin1String(kReadError) + linkFilePath(product) + QStringLiteral("->")
        + QString::fromLocal8Bit(std::strerror(EACCES));
    const ProbeRun run = runMenu(product, QByteArray(), {QStringLiteral("menu:1")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.logged(expectedLine), qPrintable(run.log.join(QLatin1Char('\n'))));
    QVERIFY(run.report(QStringLiteral("menu")).value(QStringLiteral("actions")).toArray().isEmpty());
}

void tst_CMenuView::malformedLinkFile_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("plain text") << QByteArray("About=https://a.example/\n");
    QTest::newRow("unclosed") << QByteArray("<links><menu>" + shown("About"));
    QTest::newRow("mismatched tags") << QByteArray("<links><menu>" + shown("About") + "</links></menu>");
    QTest::newRow("two roots") << QByteArray("<links><menu>" + shown("About") + "</menu></links><links/>");
    QTest::newRow("binary") << QByteArray("\x00\x01\x02\xff\xfe<menu>", 9);
}

void tst_CMenuView::malformedLinkFile()
{
    QFETCH(QByteArray, content);

    const ProbeRun run = runMenu(content);
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(!readErrorLogged(run), qPrintable(run.log.join(QLatin1Char('\n'))));
    const QJsonObject r = run.report(QStringLiteral("menu"));
    QCOMPARE(r.value(QStringLiteral("inited")).toInt(), 1);
    QCOMPARE(r.value(QStringLiteral("menuName")).toString(), QStringLiteral("titleMenu"));
    QVERIFY(r.value(QStringLiteral("actions")).toArray().isEmpty());
    QVERIFY(r.value(QStringLiteral("entries")).toArray().isEmpty());
}

void tst_CMenuView::manyEntries()
{
    const int count = 10000;
    QByteArray entries;
    entries.reserve(count * 120);
    // Written in descending order, so the sort has all the work to do.
    for (int i = count; i >= 1; --i) {
        entries += shown("E" + QByteArray::number(i), field("order", QByteArray::number(i))
                                                          + field("displayName", "Entry " + QByteArray::number(i)));
    }
    QElapsedTimer timer;
    timer.start();
    const ProbeRun run = runMenu(linkFile(menuElement(entries)));
    const qint64 wall = timer.elapsed();
    QVERIFY(run.finished);
    QCOMPARE(run.exitCode, 0);
    const QJsonObject r = run.report(QStringLiteral("menu"));
    const QStringList keys = actionKeys(r);
    QCOMPARE(keys.size(), count);
    for (int i = 0; i < count; ++i) {
        if (keys.at(i) != QStringLiteral("E%1").arg(i + 1))
            QFAIL(qPrintable(QStringLiteral("position %1 holds %2").arg(i).arg(keys.at(i))));
    }
    // Far below the test's time limit of two minutes.
    QVERIFY2(r.value(QStringLiteral("elapsedMs")).toInt() < 15000,
             qPrintable(QString::number(r.value(QStringLiteral("elapsedMs")).toInt())));
    QVERIFY2(wall < 45000, qPrintable(QString::number(wall)));
}

void tst_CMenuView::showMenuAtButton()
{
    const QByteArray xml = linkFile(menuElement(shown("About", field("displayName", "About") + field("order", "1"))
                                                + shown("Exit", field("displayName", "Exit") + field("order", "2"))));
    const ProbeRun run = runMenu(xml, {QStringLiteral("menushow"), QStringLiteral("menu:1"), QStringLiteral("menushow")});
    QCOMPARE(run.exitCode, 0);
    const QList<QJsonObject> shows = reportsOf(run, QStringLiteral("menushow"));
    QCOMPARE(shows.size(), 2);

    // Before any language change there is no menu and the button does nothing.
    QCOMPARE(shows.at(0).value(QStringLiteral("popup")).toBool(), false);

    const QJsonObject shown = shows.at(1);
    QCOMPARE(shown.value(QStringLiteral("popup")).toBool(), true);
    QVERIFY(shown.value(QStringLiteral("isViewMenu")).toBool());
    QCOMPARE(shown.value(QStringLiteral("name")).toString(), QStringLiteral("titleMenu"));
    // Just below the button, left edges aligned, no offset.
    const QJsonArray below = shown.value(QStringLiteral("buttonBelow")).toArray();
    QCOMPARE(shown.value(QStringLiteral("x")).toInt(), below.at(0).toInt());
    QCOMPARE(shown.value(QStringLiteral("y")).toInt(), below.at(1).toInt());
}

QTEST_MAIN(tst_CMenuView)
#include "tst_cmenuview.moc"
