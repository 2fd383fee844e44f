// The demo product end to end, as a user meets it: zvcore-demo started from a copy of its
// folder on a private desktop (Xvfb, openbox, xcompmgr), driven with the mouse and the
// keyboard through xdotool. What the program did is read where a user or an administrator
// would see it: windows and their names on the X server, the saved language file, the
// companions' record of their command lines, and the demo's own log on standard error.
// Screenshots of every step are kept under <build>/tests/display/artefacts/demo.
#include <QtCore/QDirIterator>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QtTest>

#include <memory>

#include <signal.h>

#include "displaysession.h"

namespace {

// The size the demo gives its window, shadow margin included.
constexpr int kWidth = 1000;
constexpr int kHeight = 680;
// The title bar: 45 high below the 5-pixel shadow margin; from the right (from the left
// when mirrored) a 20-pixel gap, then close, maximise, minimise, menu and feedback, each
// 20 wide with 15 between them.
constexpr int kMargin = 5;
constexpr int kTitleCentreY = kMargin + 45 / 2;
int buttonCentreFromEdge(int indexFromEdge)
{
    return kMargin + 20 + 10 + indexFromEdge * 35;
}
enum TitleButton { Close = 0, Maximise = 1, Minimise = 2, Menu = 3, Feedback = 4 };

const QString kSentTo = QStringLiteral("feedback@example.com");   // productInfo.xml
const QString kUserEmail = QStringLiteral("user@example.com");    // set by the demo's main
const QString kSendAccount = QStringLiteral("reports@example.com");
const QString kProductArgument = QStringLiteral("--product=folderlens");
const QString kUpdateServer = QStringLiteral("https://updates.example.com/");

QString artefact(const QString& name)
{
    return QStringLiteral(ZV_DISPLAY_ARTEFACTS "/demo/") + name + QStringLiteral(".png");
}

bool copyTree(const QString& from, const QString& to)
{
    QDirIterator it(from, QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString source = it.next();
        const QString target = QDir(to).filePath(QDir(from).relativeFilePath(source));
        QDir().mkpath(QFileInfo(target).absolutePath());
        if (!QFile::copy(source, target))
            return false;
        QFile::setPermissions(target, QFileInfo(source).permissions());
    }
    return true;
}

// One installation of the product in a fresh folder, so that the language it saves stays
// with this test; it can be started more than once.
class DemoInstall
{
public:
    DemoInstall() = default;
    ~DemoInstall() { stopCompanions(); }
    DemoInstall(const DemoInstall&) = delete;
    DemoInstall& operator=(const DemoInstall&) = delete;

    bool create()
    {
        if (!m_root.isValid() || !copyTree(QStringLiteral(ZV_DEMO_DIR), folder()))
            return false;
        // A small folder for the demo to show, the same on every machine.
        const QDir sample(samples());
        for (const auto& entry : {std::pair<const char*, int>{"Photos/harbour.jpg", 390'000},
                                  {"Photos/beach.jpg", 512'000},
                                  {"Documents/notes.txt", 3'512},
                                  {"map.png", 153'600}}) {
            const QString path = sample.filePath(QString::fromLatin1(entry.first));
            QDir().mkpath(QFileInfo(path).absolutePath());
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly) || !file.resize(entry.second))
                return false;
        }
        return true;
    }
    QString folder() const { return m_root.filePath(QStringLiteral("FolderLens")); }
    QString samples() const { return m_root.filePath(QStringLiteral("Holiday")); }
    QString executable() const { return QDir(folder()).filePath(QStringLiteral("zvcore-demo")); }
    QString companionLog() const { return m_root.filePath(QStringLiteral("companions.jsonl")); }
    QString savedLanguageFile() const { return QDir(folder()).filePath(QStringLiteral("language/language")); }

    // The companions' starts so far, oldest first.
    QList<QJsonObject> companionStarts() const
    {
        QList<QJsonObject> starts;
        QFile file(companionLog());
        if (!file.open(QIODevice::ReadOnly))
            return starts;
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (!line.trimmed().isEmpty())
                starts << QJsonDocument::fromJson(line).object();
        }
        return starts;
    }

    // Companions that show a window stay until closed: the ones started from this folder
    // are ended by their PIDs (checked against the program file, in case a PID was reused).
    void stopCompanions() const
    {
        for (const QJsonObject& start : companionStarts()) {
            const qint64 pid = start.value(QStringLiteral("pid")).toVariant().toLongLong();
            const QString exe = QFileInfo(QStringLiteral("/proc/%1/exe").arg(pid)).symLinkTarget();
            if (pid > 0 && exe.startsWith(folder() + QLatin1Char('/')))
                ::kill(pid_t(pid), SIGTERM);
        }
    }

private:
    QTemporaryDir m_root;
};

struct Window
{
    unsigned long id = 0;
    QRect geometry;
};

// The demo running on the session's display.
class Demo
{
public:
    Demo(const DisplaySession& session, const DemoInstall& install) : m_session(session), m_install(install) {}
    ~Demo() { stop(); }

    bool start(const QStringList& extraArguments = {})
    {
        QProcessEnvironment env = m_session.environment();
        env.insert(QStringLiteral("FOLDERLENS_COMPANION_LOG"), m_install.companionLog());
        // The system language is English, so a saved choice is what changes it.
        env.insert(QStringLiteral("LANG"), QStringLiteral("en_US.UTF-8"));
        env.remove(QStringLiteral("LC_ALL"));
        env.remove(QStringLiteral("LC_MESSAGES"));
        env.remove(QStringLiteral("LANGUAGE"));
        // The frame's diagnostics are debug messages, which some systems turn off.
        env.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("default.debug=true;qt.*.debug=false"));
        m_process.setProcessEnvironment(env);
        m_process.setWorkingDirectory(m_install.folder());
        m_process.start(m_install.executable(),
                        QStringList{QStringLiteral("--folder"), m_install.samples()} + extraArguments);
        if (!m_process.waitForStarted(10000))
            return false;
        m_main = waitForWindow([](const Window& w) { return w.geometry.size() == QSize(kWidth, kHeight); });
        // Let the first frame and the compositor settle.
        QTest::qWait(800);
        return m_main.id != 0;
    }

    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.terminate();
        if (!m_process.waitForFinished(5000)) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    qint64 pid() const { return m_process.processId(); }
    Window mainWindow() const { return m_main; }

    // The demo's viewable windows other than its main window.
    QList<Window> otherWindows() const
    {
        QList<Window> found;
        for (unsigned long id : m_session.windowsOfProcess(pid())) {
            if (id == m_main.id || !m_session.isViewable(id))
                continue;
            found.append({id, m_session.clientGeometry(id)});
        }
        return found;
    }

    Window waitForWindow(const std::function<bool(const Window&)>& wanted, int timeoutMs = 15000) const
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < timeoutMs) {
            for (unsigned long id : m_session.windowsOfProcess(pid())) {
                if (id == m_main.id || !m_session.isViewable(id))
                    continue;
                const Window w{id, m_session.clientGeometry(id)};
                if (wanted(w))
                    return w;
            }
            QTest::qWait(150);
        }
        return {};
    }

    bool waitUntilNoOtherWindows(int timeoutMs = 8000) const
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < timeoutMs) {
            if (otherWindows().isEmpty())
                return true;
            QTest::qWait(150);
        }
        return false;
    }

    // A title-bar button, counted from the closing edge: the right edge, or the left edge
    // of a mirrored window.
    QPoint titleButton(TitleButton button, bool mirrored = false) const
    {
        const QRect g = m_main.geometry;
        const int x = mirrored ? g.left() + buttonCentreFromEdge(button) : g.right() + 1 - buttonCentreFromEdge(button);
        return QPoint(x, g.top() + kTitleCentreY);
    }

    bool click(const QPoint& at) const
    {
        return m_session.xdotool({QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y()),
                                  QStringLiteral("sleep"), QStringLiteral("0.3"), QStringLiteral("click"),
                                  QStringLiteral("1"), QStringLiteral("sleep"), QStringLiteral("0.3")});
    }

    bool keys(const QStringList& names) const
    {
        QStringList args{QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("120")};
        return m_session.xdotool(args + names);
    }

    // Opens the title menu with its button; the popup, or an empty window.
    Window openTitleMenu(bool mirrored = false) const
    {
        if (!click(titleButton(Menu, mirrored)))
            return {};
        return waitForWindow([](const Window&) { return true; }, 8000);
    }

    // Picks the title menu's \a index-th entry (from 1, separators not counted) with the
    // keyboard, as a user who does not reach for the mouse would.
    bool chooseFromTitleMenu(int index, bool mirrored = false) const
    {
        if (openTitleMenu(mirrored).id == 0)
            return false;
        QStringList names;
        for (int i = 0; i < index; ++i)
            names << QStringLiteral("Down");
        names << QStringLiteral("Return");
        return keys(names);
    }

    QString windowName(unsigned long id) const
    {
        return m_session.runTool(QStringLiteral("xdotool"), {QStringLiteral("getwindowname"), QString::number(id)})
            .trimmed();
    }

    // Everything the demo logged so far.
    QString log()
    {
        m_log += QString::fromUtf8(m_process.readAllStandardError());
        return m_log;
    }

    // Waits for a log line starting with \a prefix to appear after the first \a skip such
    // lines; returns the line's remainder.
    QString waitForLogLine(const QString& prefix, int skip = 0, int timeoutMs = 10000)
    {
        QElapsedTimer clock;
        clock.start();
        do {
            m_process.waitForReadyRead(100);
            int seen = 0;
            for (const QString& line : log().split(QLatin1Char('\n'))) {
                if (line.startsWith(prefix) && seen++ == skip)
                    return line.mid(prefix.size());
            }
        } while (clock.elapsed() < timeoutMs);
        return QString();
    }

    QString waitForTitleMenu(int skip = 0) { return waitForLogLine(QStringLiteral("Folder Lens: title menu: "), skip); }

private:
    const DisplaySession& m_session;
    const DemoInstall& m_install;
    QProcess m_process;
    Window m_main;
    QString m_log;
};

// The companion starts recorded after \a from, waiting up to \a timeoutMs for \a count.
QList<QJsonObject> waitForCompanions(const DemoInstall& install, int count, int timeoutMs = 10000)
{
    QElapsedTimer clock;
    clock.start();
    QList<QJsonObject> starts;
    do {
        starts = install.companionStarts();
        if (starts.size() >= count)
            break;
        QTest::qWait(150);
    } while (clock.elapsed() < timeoutMs);
    return starts;
}

QStringList argumentsOf(const QJsonObject& start)
{
    QStringList arguments;
    for (const QJsonValue& v : start.value(QStringLiteral("arguments")).toArray())
        arguments << v.toString();
    return arguments;
}

QString readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// How different two equally sized images are: the mean absolute difference per channel.
double meanDifference(const QImage& a, const QImage& b)
{
    if (a.size() != b.size() || a.isNull())
        return 255.0;
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            sum += qAbs(qRed(p) - qRed(q)) + qAbs(qGreen(p) - qGreen(q)) + qAbs(qBlue(p) - qBlue(q));
        }
    }
    return sum / (3.0 * a.width() * a.height());
}

const QString kEnglishMenu = QStringLiteral("Feedback | Language | Export listing\u2026 | Home page | Check for updates | About");
const QString kGermanMenu = QStringLiteral("Feedback | Sprache | Liste exportieren\u2026 | Startseite | Nach Updates suchen | \u00dcber");

} // namespace

class tst_DemoDisplay : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void startsWithTheFrame();
    void menuButtonOpensTheTitleMenu();
    void aboutOpensTheAboutDialog();
    void germanThroughTheLanguageDialog();
    void arabicMirrorsTheWindow();
    void feedbackButtonStartsTheCompanion();
    void checkNewVersionStartsTheUpdater();

private:
    std::unique_ptr<DisplaySession> m_session;
};

void tst_DemoDisplay::initTestCase()
{
    const QStringList missing = DisplaySession::missingTools();
    if (!missing.isEmpty())
        QSKIP(qPrintable(QStringLiteral("not installed: ") + missing.join(QLatin1Char(' '))));
    QVERIFY2(QFileInfo::exists(QStringLiteral(ZV_DEMO_DIR "/zvcore-demo")), "the demo is not built");
    m_session = std::make_unique<DisplaySession>();
    QVERIFY2(m_session->start(DisplaySession::WithCompositor), qPrintable(m_session->error()));
}

void tst_DemoDisplay::cleanupTestCase()
{
    if (m_session)
        m_session->stop();
}

void tst_DemoDisplay::startsWithTheFrame()
{
    DemoInstall install;
    QVERIFY(install.create());
    Demo demo(*m_session, install);
    QVERIFY2(demo.start(), qPrintable(demo.log()));

    // The host's own title, and the title menu built from English_URL.xml.
    QCOMPARE(demo.windowName(demo.mainWindow().id), QStringLiteral("Folder sizes: ") + install.samples());
    QCOMPARE(demo.waitForTitleMenu(), kEnglishMenu);

    const QImage shot = m_session->screenshot(artefact(QStringLiteral("start")));
    QVERIFY(!shot.isNull());
    // The painted shadow darkens the desktop just outside the window's content.
    const QRect g = demo.mainWindow().geometry;
    const QRgb outside = shot.pixel(g.left() - 3, g.center().y());
    const QRgb shadow = shot.pixel(g.left() + 3, g.center().y());
    QCOMPARE(qGray(outside), DisplaySession::kDesktopGrey);
    QVERIFY2(qGray(shadow) < DisplaySession::kDesktopGrey,
             qPrintable(QStringLiteral("shadow pixel %1").arg(qGray(shadow))));
}

void tst_DemoDisplay::menuButtonOpensTheTitleMenu()
{
    DemoInstall install;
    QVERIFY(install.create());
    Demo demo(*m_session, install);
    QVERIFY2(demo.start(), qPrintable(demo.log()));
    QVERIFY(demo.otherWindows().isEmpty());

    const Window menu = demo.openTitleMenu();
    QVERIFY2(menu.id != 0, "no menu opened");
    m_session->screenshot(artefact(QStringLiteral("menu")));
    // The menu opens below the menu button, over the window.
    const QPoint button = demo.titleButton(Menu);
    QVERIFY2(menu.geometry.top() >= button.y(), qPrintable(QStringLiteral("menu at y %1").arg(menu.geometry.top())));
    QVERIFY(demo.mainWindow().geometry.contains(menu.geometry.topLeft()));

    QVERIFY(demo.keys({QStringLiteral("Escape")}));
    QVERIFY(demo.waitUntilNoOtherWindows());
}

void tst_DemoDisplay::aboutOpensTheAboutDialog()
{
    DemoInstall install;
    QVERIFY(install.create());
    Demo demo(*m_session, install);
    QVERIFY2(demo.start(), qPrintable(demo.log()));

    // About is the sixth entry of the demo's menu.
    QVERIFY(demo.chooseFromTitleMenu(6));
    const Window about = demo.waitForWindow([](const Window& w) { return w.geometry.size() == QSize(560, 350); });
    QVERIFY2(about.id != 0, "no About dialog of 560 x 350");
    m_session->screenshot(artefact(QStringLiteral("about")));
    // Modal, over its main window.
    QVERIFY(demo.mainWindow().geometry.intersects(about.geometry));

    QVERIFY(demo.keys({QStringLiteral("Escape")}));
    QVERIFY(demo.waitUntilNoOtherWindows());
}

void tst_DemoDisplay::germanThroughTheLanguageDialog()
{
    DemoInstall install;
    QVERIFY(install.create());
    {
        Demo demo(*m_session, install);
        QVERIFY2(demo.start(), qPrintable(demo.log()));
        QCOMPARE(demo.waitForTitleMenu(), kEnglishMenu);
        QVERIFY(!QFileInfo::exists(install.savedLanguageFile())
                || readAll(install.savedLanguageFile()) == QLatin1String("English"));

        // Language is the second entry; the dialog is 440 wide and 176 high.
        QVERIFY(demo.chooseFromTitleMenu(2));
        const Window dialog = demo.waitForWindow([](const Window& w) { return w.geometry.size() == QSize(440, 176); });
        QVERIFY2(dialog.id != 0, "no language dialog of 440 x 176");
        m_session->screenshot(artefact(QStringLiteral("language-dialog")));

        // The combo box (the right of the first row, below a 10-pixel gap) holds the
        // languages in catalogue order, English first and German sixth (after the Chinese
        // pair, Japanese and Korean): open it and go down five entries.
        const QPoint combo = dialog.geometry.topLeft() + QPoint(5 + 430 - 22 - 60, 5 + 22 + 10 + 15);
        QVERIFY(demo.click(combo));
        QVERIFY(demo.keys({QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Down"),
                           QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Return")}));
        m_session->screenshot(artefact(QStringLiteral("language-dialog-german")));
        // OK: the right one of the two buttons at the bottom.
        const QPoint ok = dialog.geometry.topLeft() + QPoint(5 + 430 - 22 - 60, 176 - 5 - 22 - 15);
        QVERIFY(demo.click(ok));

        // The title menu is rebuilt from German_URL.xml, and the choice is saved.
        QCOMPARE(demo.waitForTitleMenu(1), kGermanMenu);
        QTRY_COMPARE_WITH_TIMEOUT(readAll(install.savedLanguageFile()), QStringLiteral("German"), 5000);

        // The demo offers a restart (event 1002); later, then.
        const Window offer = demo.waitForWindow([](const Window&) { return true; });
        QVERIFY2(offer.id != 0, "no restart offer");
        m_session->screenshot(artefact(QStringLiteral("restart-offer")));
        QVERIFY(demo.keys({QStringLiteral("Escape")}));
        QVERIFY(demo.waitUntilNoOtherWindows());

        // The demo retranslated itself at once.
        QTRY_COMPARE_WITH_TIMEOUT(demo.windowName(demo.mainWindow().id),
                                  QStringLiteral("Ordnergr\u00f6\u00dfen: ") + install.samples(), 5000);
        QVERIFY(demo.openTitleMenu().id != 0);
        m_session->screenshot(artefact(QStringLiteral("menu-german")));
        QVERIFY(demo.keys({QStringLiteral("Escape")}));
        QVERIFY(demo.waitUntilNoOtherWindows());
    }

    // A second start comes up in German.
    Demo again(*m_session, install);
    QVERIFY2(again.start(), qPrintable(again.log()));
    QCOMPARE(again.waitForTitleMenu(), kGermanMenu);
    QCOMPARE(again.windowName(again.mainWindow().id), QStringLiteral("Ordnergr\u00f6\u00dfen: ") + install.samples());
    m_session->screenshot(artefact(QStringLiteral("second-start-german")));
}

void tst_DemoDisplay::arabicMirrorsTheWindow()
{
    DemoInstall install;
    QVERIFY(install.create());

    QImage englishTitle;
    {
        Demo demo(*m_session, install);
        QVERIFY2(demo.start(), qPrintable(demo.log()));
        m_session->moveMouse(QPoint(5, 1075));
        const QImage shot = m_session->screenshot(artefact(QStringLiteral("english")));
        const QRect g = demo.mainWindow().geometry;
        englishTitle = shot.copy(QRect(g.left(), g.top() + kMargin, g.width(), 45));
    }

    Demo demo(*m_session, install);
    QVERIFY2(demo.start({QStringLiteral("--language"), QStringLiteral("Arabic")}), qPrintable(demo.log()));
    QCOMPARE(demo.windowName(demo.mainWindow().id),
             QStringLiteral("\u0623\u062d\u062c\u0627\u0645 \u0627\u0644\u0645\u062c\u0644\u062f\u0627\u062a: ")
                 + install.samples());
    m_session->moveMouse(QPoint(5, 1075));
    const QImage shot = m_session->screenshot(artefact(QStringLiteral("arabic")));
    const QRect g = demo.mainWindow().geometry;
    const QImage arabicTitle = shot.copy(QRect(g.left(), g.top() + kMargin, g.width(), 45));

    // The five buttons and the separator sit at the left edge now: the button strip of the
    // Arabic title is the English one mirrored, and unlike it unmirrored.
    const int strip = buttonCentreFromEdge(Feedback) + 20;
    const QImage englishButtons = englishTitle.copy(QRect(englishTitle.width() - strip, 0, strip, 45));
    const QImage arabicButtons = arabicTitle.copy(QRect(0, 0, strip, 45));
    const double mirrored = meanDifference(englishButtons.mirrored(true, false), arabicButtons);
    const double unmirrored = meanDifference(englishButtons, arabicButtons);
    QVERIFY2(mirrored < 4.0 && unmirrored > 3 * mirrored,
             qPrintable(QStringLiteral("mirrored %1, unmirrored %2").arg(mirrored).arg(unmirrored)));

    // The menu button works where it is drawn.
    const Window menu = demo.openTitleMenu(true);
    QVERIFY2(menu.id != 0, "the mirrored menu button opened nothing");
    m_session->screenshot(artefact(QStringLiteral("arabic-menu")));
    QVERIFY(demo.keys({QStringLiteral("Escape")}));
    QVERIFY(demo.waitUntilNoOtherWindows());
}

void tst_DemoDisplay::feedbackButtonStartsTheCompanion()
{
    DemoInstall install;
    QVERIFY(install.create());
    Demo demo(*m_session, install);
    QVERIFY2(demo.start(), qPrintable(demo.log()));
    // The silent update check (3 s after the window) is the only start before the click.
    const int before = waitForCompanions(install, 1).size();

    QVERIFY(demo.click(demo.titleButton(Feedback)));
    const QList<QJsonObject> starts = waitForCompanions(install, before + 1);
    QCOMPARE(starts.size(), before + 1);
    QCOMPARE(starts.last().value(QStringLiteral("program")).toString(), QStringLiteral("Feedback"));
    // Receiving address, the host program, the user's address, the sending account, its
    // password (none set), and "1" for user feedback.
    const QStringList expected{kSentTo, install.executable(), kUserEmail, kSendAccount, QString(), QStringLiteral("1")};
    QCOMPARE(argumentsOf(starts.last()), expected);
    QTRY_VERIFY2_WITH_TIMEOUT(demo.log().contains(QStringLiteral("ZVCore: Start FeedBack->")), qPrintable(demo.log()), 5000);

    // The companion shows what it was given.
    QTest::qWait(1500);
    m_session->screenshot(artefact(QStringLiteral("feedback")));
    install.stopCompanions();
}

void tst_DemoDisplay::checkNewVersionStartsTheUpdater()
{
    DemoInstall install;
    QVERIFY(install.create());
    Demo demo(*m_session, install);
    QVERIFY2(demo.start(), qPrintable(demo.log()));

    // The silent check, 3000 ms after the window was built: no window of its own.
    QList<QJsonObject> starts = waitForCompanions(install, 1);
    QCOMPARE(starts.size(), 1);
    QCOMPARE(starts.at(0).value(QStringLiteral("program")).toString(), QStringLiteral("appAutoUpdate"));
    QCOMPARE(argumentsOf(starts.at(0)),
             (QStringList{kProductArgument, QStringLiteral("--silent=true"), QStringLiteral("--updateURL=") + kUpdateServer}));

    // "Check for updates" is the fifth entry: the interactive check.
    QVERIFY(demo.chooseFromTitleMenu(5));
    starts = waitForCompanions(install, 2);
    QCOMPARE(starts.size(), 2);
    QCOMPARE(starts.at(1).value(QStringLiteral("program")).toString(), QStringLiteral("appAutoUpdate"));
    QCOMPARE(argumentsOf(starts.at(1)), (QStringList{kProductArgument, QStringLiteral("--updateURL=") + kUpdateServer}));

    QTest::qWait(1500);
    m_session->screenshot(artefact(QStringLiteral("updater")));
    install.stopCompanions();
}

QTEST_GUILESS_MAIN(tst_DemoDisplay)
#include "tst_demo_display.moc"
