// The sample editor, an ordinary Qt main window ported to the frame, on a real X server
// with openbox, with and without a compositing manager: its menu bar lies under the title
// bar and opens with Alt+F, a dock floats and docks again, a file named relative to the
// folder it was started in opens, the title still drags the window and the border still
// resizes it, and without a compositor nothing black shows around the window.
#include "displaysession.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QtTest>

#include <functional>

namespace {

constexpr int kMargin = 5;

QString describe(const QRect& r)
{
    return QStringLiteral("%1,%2 %3x%4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
}

QString describe(QRgb c)
{
    return QStringLiteral("(%1,%2,%3)").arg(qRed(c)).arg(qGreen(c)).arg(qBlue(c));
}

bool greyish(QRgb c, int value, int tolerance)
{
    return qAbs(qRed(c) - value) <= tolerance && qAbs(qGreen(c) - value) <= tolerance
           && qAbs(qBlue(c) - value) <= tolerance;
}

// The editor started from a copy of its product folder, in a documents folder of its own,
// reporting where its parts lie.
class Editor
{
public:
    explicit Editor(const DisplaySession& session) : m_session(session) {}
    ~Editor() { stop(); }

    bool start(const QStringList& arguments, QString* error)
    {
        if (!m_folder.isValid()) {
            *error = QStringLiteral("no temporary folder");
            return false;
        }
        const QString product = m_folder.filePath(QStringLiteral("product"));
        QProcess copy;
        copy.start(QStringLiteral("cp"), {QStringLiteral("-a"), QStringLiteral(ZV_EDITOR_DIR), product});
        if (!copy.waitForFinished(30000) || copy.exitCode() != 0) {
            *error = QStringLiteral("cannot copy the editor's folder");
            return false;
        }
        QDir(m_folder.path()).mkpath(QStringLiteral("documents"));
        QProcessEnvironment env = m_session.environment();
        env.insert(QStringLiteral("LANG"), QStringLiteral("en_US.UTF-8"));
        env.remove(QStringLiteral("LC_ALL"));
        env.remove(QStringLiteral("LANGUAGE"));
        m_process.setProcessEnvironment(env);
        m_process.setWorkingDirectory(documents());
        m_process.setStandardErrorFile(m_folder.filePath(QStringLiteral("stderr.log")));
        m_process.start(product + QStringLiteral("/zvcore-editor"), QStringList{QStringLiteral("--report")} + arguments);
        if (!m_process.waitForStarted(10000)) {
            *error = QStringLiteral("did not start");
            return false;
        }
        QByteArray out;
        QElapsedTimer timer;
        timer.start();
        bool ready = false;
        while (!ready && timer.elapsed() < 30000) {
            if (!m_process.waitForReadyRead(200) && m_process.state() != QProcess::Running)
                break;
            out += m_process.readAllStandardOutput();
            ready = DisplayProgram::readReport(out, &m_window, &m_widgets);
        }
        if (!ready || !m_window) {
            *error = QStringLiteral("no report; output: ") + QString::fromUtf8(out);
            return false;
        }
        return true;
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

    QString documents() const { return m_folder.filePath(QStringLiteral("documents")); }
    unsigned long window() const { return m_window; }
    QRect widget(const QString& name) const { return m_widgets.value(name); }

    // A viewable window of the editor other than its main window, within \a timeoutMs.
    QRect waitForOtherWindow(const std::function<bool(const QRect&)>& wanted, int timeoutMs = 8000) const
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < timeoutMs) {
            for (unsigned long id : m_session.windowsOfProcess(m_process.processId())) {
                if (id == m_window || !m_session.isViewable(id))
                    continue;
                const QRect g = m_session.clientGeometry(id);
                if (wanted(g))
                    return g;
            }
            QTest::qWait(100);
        }
        return QRect();
    }

    int otherWindowCount() const
    {
        int count = 0;
        for (unsigned long id : m_session.windowsOfProcess(m_process.processId()))
            count += (id != m_window && m_session.isViewable(id)) ? 1 : 0;
        return count;
    }

private:
    const DisplaySession& m_session;
    QTemporaryDir m_folder;
    QProcess m_process;
    unsigned long m_window = 0;
    QHash<QString, QRect> m_widgets;
};

} // namespace

class tst_EditorDisplay : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QStringList missing = DisplaySession::missingTools();
        if (!missing.isEmpty())
            QSKIP(qPrintable(QStringLiteral("missing: ") + missing.join(QLatin1Char(' '))));
    }

    void editorOnTheFrame_data()
    {
        QTest::addColumn<bool>("compositor");
        QTest::newRow("with a compositor") << true;
        QTest::newRow("without a compositor") << false;
    }

    void editorOnTheFrame()
    {
        QFETCH(bool, compositor);
        DisplaySession session;
        QVERIFY2(session.start(compositor ? DisplaySession::WithCompositor : DisplaySession::WithoutCompositor),
                 qPrintable(session.error()));
        Editor editor(session);
        QString error;
        // A document named relative to the folder the editor is started in.
        const QByteArray text = "# Shopping\nBread\n# Garden\nSeeds\n";
        QVERIFY(QDir().mkpath(editor.documents()));
        QFile document(editor.documents() + QStringLiteral("/notes.md"));
        QVERIFY(document.open(QIODevice::WriteOnly));
        QVERIFY(document.write(text) == text.size());
        document.close();
        QVERIFY2(editor.start({QStringLiteral("notes.md")}, &error), qPrintable(error));
        const unsigned long window = editor.window();

        // The relative path opened: the window is named after the document.
        const QString name =
            session.runTool(QStringLiteral("xdotool"), {QStringLiteral("getwindowname"), QString::number(window)}).trimmed();
        QVERIFY2(name.contains(QStringLiteral("notes.md")), qPrintable(name));

        // Title bar, menu bar, tool bar, one below the other, inside the margin (none
        // without a compositor).
        const int margin = compositor ? kMargin : 0;
        const QRect title = editor.widget(QStringLiteral("title"));
        const QRect menuBar = editor.widget(QStringLiteral("menubar"));
        const QRect toolBar = editor.widget(QStringLiteral("fileToolBar"));
        QCOMPARE(title.topLeft(), QPoint(margin, margin));
        QVERIFY2(menuBar.height() > 10, qPrintable(describe(menuBar)));
        QCOMPARE(menuBar.top(), title.bottom() + 1);
        QCOMPARE(menuBar.left(), title.left());
        QCOMPARE(menuBar.width(), title.width());
        QCOMPARE(toolBar.top(), menuBar.bottom() + 1);
        const QRect editorArea = editor.widget(QStringLiteral("editor"));
        QVERIFY(editorArea.top() > toolBar.bottom());

        QRect g = session.settledGeometry(window);
        QVERIFY(!g.isNull());
        QDir().mkpath(QStringLiteral(ZV_DISPLAY_ARTEFACTS));
        const QImage shot = session.screenshot(QStringLiteral(ZV_DISPLAY_ARTEFACTS "/editor-%1.png")
                                                   .arg(compositor ? QStringLiteral("compositor") : QStringLiteral("no-compositor")));
        QVERIFY(!shot.isNull());
        // What lies 2 pixels outside the content: the desktop without a compositor (not
        // black), the shadow with one.
        const QRect content = g.adjusted(margin, margin, -margin, -margin);
        const int y = content.top() + content.height() / 2;
        const QRgb outside = shot.pixel(content.left() - 2, y);
        if (compositor)
            QVERIFY2(qRed(outside) < DisplaySession::kDesktopGrey - 5, qPrintable(describe(outside)));
        else
            QVERIFY2(greyish(outside, DisplaySession::kDesktopGrey, 2), qPrintable(describe(outside)));
        for (int x = content.left(); x < content.right(); x += 50) {
            const QRgb above = shot.pixel(x, content.top() - 2);
            QVERIFY2(compositor || greyish(above, DisplaySession::kDesktopGrey, 2), qPrintable(describe(above)));
        }

        // Alt+F opens the File menu, right under its title in the menu bar.
        QVERIFY(session.xdotool({QStringLiteral("key"), QStringLiteral("alt+f")}));
        const QRect popup = editor.waitForOtherWindow([](const QRect& r) { return r.height() > 40; });
        QVERIFY2(!popup.isNull(), "no File menu after Alt+F");
        QVERIFY2(qAbs(popup.top() - (g.top() + menuBar.bottom() + 1)) <= 3,
                 qPrintable(describe(popup) + QStringLiteral(" under ") + describe(menuBar.translated(g.topLeft()))));
        // Under File, the bar's first item, a padding to the right of the bar's left end.
        QVERIFY2(popup.left() >= g.left() + menuBar.left() && popup.left() <= g.left() + menuBar.left() + 30,
                 qPrintable(describe(popup)));
        QVERIFY(session.xdotool({QStringLiteral("key"), QStringLiteral("Escape")}));
        QTRY_COMPARE_WITH_TIMEOUT(editor.otherWindowCount(), 0, 5000);

        // The Outline dock floats on a double click on its title, and docks again on one
        // on the floating window's title.
        const QRect dock = editor.widget(QStringLiteral("outlineDock"));
        QVERIFY(!dock.isNull());
        QVERIFY(session.doubleClick(g.topLeft() + dock.topLeft() + QPoint(30, 8)));
        const QRect floating = editor.waitForOtherWindow([](const QRect& r) { return r.width() > 60 && r.height() > 60; });
        QVERIFY2(!floating.isNull(), "the dock did not float");
        QTest::qWait(500);
        QVERIFY(session.doubleClick(floating.topLeft() + QPoint(30, 8)));
        QTRY_COMPARE_WITH_TIMEOUT(editor.otherWindowCount(), 0, 5000);

        // The empty title still drags the window, menu bar or not.
        g = session.settledGeometry(window);
        const QPoint grip = g.topLeft() + QPoint(title.left() + title.width() / 2, title.top() + 6);
        QVERIFY(session.drag(grip, QPoint(150, 80)));
        const QRect moved = session.settledGeometry(window, 700);
        QVERIFY2(qAbs(moved.left() - g.left() - 150) <= 2 && qAbs(moved.top() - g.top() - 80) <= 2,
                 qPrintable(describe(g) + QStringLiteral(" -> ") + describe(moved)));
        QCOMPARE(moved.size(), g.size());

        // And the left border still resizes it.
        const QPoint border(moved.left() + 2, moved.top() + moved.height() / 2);
        QVERIFY(session.drag(border, QPoint(-60, 0)));
        const QRect widened = session.settledGeometry(window, 700);
        QVERIFY2(qAbs(widened.width() - moved.width() - 60) <= 2 && qAbs(widened.left() - moved.left() + 60) <= 2,
                 qPrintable(describe(moved) + QStringLiteral(" -> ") + describe(widened)));
        QCOMPARE(widened.height(), moved.height());
    }
};

QTEST_GUILESS_MAIN(tst_EditorDisplay)
#include "tst_editor_display.moc"
