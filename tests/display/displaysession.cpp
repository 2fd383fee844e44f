#include "displaysession.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>
#include <QtCore/QThread>

namespace {

const QStringList kTools = {QStringLiteral("Xvfb"),    QStringLiteral("openbox"), QStringLiteral("xcompmgr"),
                            QStringLiteral("xdotool"), QStringLiteral("xprop"),   QStringLiteral("xwininfo"),
                            QStringLiteral("import"),  QStringLiteral("xsetroot")};

// The manager's rules for the test desktop. No edge resistance: a drag has to end where
// the pointer ends, not snap to the screen's edge or to the layered shadow's own window.
// keepBorder off: a window without decorations gets no border either.
const char kOpenboxConfig[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <resistance><strength>0</strength><screen_edge_strength>0</screen_edge_strength></resistance>
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <placement><policy>Smart</policy></placement>
  <theme><name>Clearlooks</name><keepBorder>no</keepBorder><animateIconify>no</animateIconify></theme>
  <desktops><number>1</number></desktops>
  <resize><drawContents>yes</drawContents><popupShow>Never</popupShow></resize>
  <margins><top>0</top><bottom>%1</bottom><left>0</left><right>0</right></margins>
</openbox_config>
)";

int valueAfter(const QString& text, const QString& label, bool* ok)
{
    const QRegularExpression re(QRegularExpression::escape(label) + QStringLiteral(":\\s*(-?\\d+)"));
    const QRegularExpressionMatch m = re.match(text);
    if (!m.hasMatch()) {
        *ok = false;
        return 0;
    }
    return m.captured(1).toInt();
}

QList<int> cardinals(const QString& xpropLine)
{
    QList<int> values;
    const int eq = xpropLine.indexOf(QLatin1Char('='));
    if (eq < 0)
        return values;
    for (const QString& part : xpropLine.mid(eq + 1).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        bool ok = false;
        const int v = part.trimmed().toInt(&ok);
        if (ok)
            values.append(v);
    }
    return values;
}

} // namespace

DisplaySession::DisplaySession() = default;

DisplaySession::~DisplaySession()
{
    stop();
}

QStringList DisplaySession::missingTools()
{
    QStringList missing;
    for (const QString& tool : kTools) {
        if (QStandardPaths::findExecutable(tool).isEmpty())
            missing.append(tool);
    }
    return missing;
}

bool DisplaySession::start(Compositor compositor)
{
    return start(compositor, kScreenWidth, kScreenHeight, 96);
}

bool DisplaySession::start(Compositor compositor, int width, int height, int dpi, int xftDpi)
{
    const QStringList missing = missingTools();
    if (!missing.isEmpty()) {
        m_error = QStringLiteral("missing programs: ") + missing.join(QLatin1Char(' '));
        return false;
    }
    m_home.reset(new QTemporaryDir);
    if (!m_home->isValid()) {
        m_error = QStringLiteral("no temporary folder");
        return false;
    }
    if (!m_xvfb.start(width, height, dpi)) {
        m_error = m_xvfb.error();
        return false;
    }
    m_started = true;

    if (xftDpi > 0) {
        QProcess xrdb;
        xrdb.setProcessEnvironment(environment());
        xrdb.start(QStandardPaths::findExecutable(QStringLiteral("xrdb")), {QStringLiteral("-merge")});
        xrdb.waitForStarted(10000);
        xrdb.write(QStringLiteral("Xft.dpi: %1\n").arg(xftDpi).toLatin1());
        xrdb.closeWriteChannel();
        if (!xrdb.waitForFinished(15000) || xrdb.exitCode() != 0) {
            m_error = QStringLiteral("xrdb failed");
            return false;
        }
    }

    bool ok = false;
    runTool(QStringLiteral("xsetroot"),
            {QStringLiteral("-solid"), QStringLiteral("#%1%1%1").arg(kDesktopGrey, 2, 16, QLatin1Char('0'))}, &ok);
    if (!ok) {
        m_error = QStringLiteral("xsetroot failed");
        return false;
    }
    if (!startOpenbox())
        return false;

    return compositor == WithoutCompositor || startCompositor();
}

bool DisplaySession::startCompositor()
{
    if (m_compositor.state() != QProcess::NotRunning)
        return true;
    m_compositor.setProcessEnvironment(environment());
    m_compositor.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_compositor.setStandardOutputFile(QProcess::nullDevice());
    // Plain compositing: no shadows or fades of the compositor's own that would mix
    // with the window's.
    m_compositor.start(QStandardPaths::findExecutable(QStringLiteral("xcompmgr")), QStringList());
    if (!m_compositor.waitForStarted(10000)) {
        m_error = QStringLiteral("xcompmgr did not start");
        return false;
    }
    // The compositor names the window that holds its _NET_WM_CM_S0 selection.
    QElapsedTimer timer;
    timer.start();
    bool up = false;
    while (!up && timer.elapsed() < 10000 && m_compositor.state() == QProcess::Running) {
        up = runTool(QStringLiteral("xwininfo"), {QStringLiteral("-root"), QStringLiteral("-children")})
                 .contains(QStringLiteral("\"xcompmgr\""));
        if (!up)
            QThread::msleep(50);
    }
    if (!up) {
        m_error = QStringLiteral("xcompmgr did not take the screen");
        return false;
    }
    return true;
}

void DisplaySession::stopCompositor()
{
    stopProcess(m_compositor);
}

bool DisplaySession::writeOpenboxConfig()
{
    QFile file(m_home->filePath(QStringLiteral("rc.xml")));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const QByteArray text = QString::fromLatin1(kOpenboxConfig).arg(kBottomMargin).toUtf8();
    return file.write(text) == text.size();
}

bool DisplaySession::startOpenbox()
{
    if (!writeOpenboxConfig()) {
        m_error = QStringLiteral("cannot write the openbox configuration");
        return false;
    }
    m_openbox.setProcessEnvironment(environment());
    m_openbox.setProcessChannelMode(QProcess::MergedChannels);
    m_openbox.setStandardOutputFile(m_home->filePath(QStringLiteral("openbox.log")));
    m_openbox.start(QStandardPaths::findExecutable(QStringLiteral("openbox")),
                    {QStringLiteral("--sm-disable"), QStringLiteral("--config-file"),
                     m_home->filePath(QStringLiteral("rc.xml"))});
    if (!m_openbox.waitForStarted(10000)) {
        m_error = QStringLiteral("openbox did not start");
        return false;
    }
    if (!waitForWindowManager(20000)) {
        QFile log(m_home->filePath(QStringLiteral("openbox.log")));
        log.open(QIODevice::ReadOnly);
        m_error = QStringLiteral("openbox did not take the screen: ") + QString::fromLocal8Bit(log.readAll());
        return false;
    }
    return true;
}

bool DisplaySession::waitForWindowManager(int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < timeoutMs && m_openbox.state() == QProcess::Running) {
        // The manager sets the check window first and the work area while it manages the
        // screen; both have to be there before a test window appears.
        const QString check = runTool(QStringLiteral("xprop"), {QStringLiteral("-root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK")});
        if (check.contains(QStringLiteral("window id #")) && !workArea().isNull())
            return true;
        QThread::msleep(50);
    }
    return false;
}

void DisplaySession::stopProcess(QProcess& process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(5000)) {
        process.kill();
        process.waitForFinished(5000);
    }
}

void DisplaySession::stop()
{
    stopProcess(m_compositor);
    stopProcess(m_openbox);
    m_xvfb.stop();
    m_started = false;
}

QProcessEnvironment DisplaySession::environment() const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DISPLAY"), display());
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.remove(QStringLiteral("XAUTHORITY"));
    // Scaling from the environment would change what a "pixel" means in the assertions.
    env.remove(QStringLiteral("QT_SCALE_FACTOR"));
    env.remove(QStringLiteral("QT_SCREEN_SCALE_FACTORS"));
    env.remove(QStringLiteral("QT_AUTO_SCREEN_SCALE_FACTOR"));
    if (m_home) {
        env.insert(QStringLiteral("HOME"), m_home->path());
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home->filePath(QStringLiteral("config")));
        env.insert(QStringLiteral("XDG_CACHE_HOME"), m_home->filePath(QStringLiteral("cache")));
        env.insert(QStringLiteral("XDG_DATA_HOME"), m_home->filePath(QStringLiteral("data")));
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_home->path());
    }
    return env;
}

QString DisplaySession::runTool(const QString& program, const QStringList& arguments, bool* ok, int timeoutMs) const
{
    QProcess p;
    p.setProcessEnvironment(environment());
    p.start(QStandardPaths::findExecutable(program), arguments);
    const bool finished = p.waitForFinished(timeoutMs);
    if (!finished) {
        p.kill();
        p.waitForFinished(5000);
    }
    if (ok)
        *ok = finished && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    return QString::fromLocal8Bit(p.readAllStandardOutput());
}

bool DisplaySession::xdotool(const QStringList& arguments) const
{
    bool ok = false;
    runTool(QStringLiteral("xdotool"), arguments, &ok, 60000);
    return ok;
}

bool DisplaySession::moveMouse(const QPoint& to) const
{
    return xdotool({QStringLiteral("mousemove"), QString::number(to.x()), QString::number(to.y()),
                    QStringLiteral("sleep"), QStringLiteral("0.2")});
}

bool DisplaySession::drag(const QPoint& from, const QPoint& delta, int steps) const
{
    // One xdotool run: the pauses between the steps are then its own, not process starts.
    QStringList args{QStringLiteral("mousemove"), QString::number(from.x()), QString::number(from.y()),
                     QStringLiteral("sleep"), QStringLiteral("0.3"),
                     QStringLiteral("mousedown"), QStringLiteral("1"),
                     QStringLiteral("sleep"), QStringLiteral("0.3")};
    for (int i = 1; i <= steps; ++i) {
        const QPoint p = from + QPoint(delta.x() * i / steps, delta.y() * i / steps);
        args << QStringLiteral("mousemove") << QString::number(p.x()) << QString::number(p.y())
             << QStringLiteral("sleep") << QStringLiteral("0.04");
    }
    args << QStringLiteral("sleep") << QStringLiteral("0.3") << QStringLiteral("mouseup") << QStringLiteral("1")
         << QStringLiteral("sleep") << QStringLiteral("0.2");
    return xdotool(args);
}

bool DisplaySession::doubleClick(const QPoint& at) const
{
    // Well inside Qt's default double-click interval of 400 ms.
    return xdotool({QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y()),
                    QStringLiteral("sleep"), QStringLiteral("0.3"),
                    QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
                    QStringLiteral("--delay"), QStringLiteral("80"), QStringLiteral("1")});
}

QRect DisplaySession::clientGeometry(unsigned long window) const
{
    bool ok = false;
    const QString text = runTool(QStringLiteral("xwininfo"), {QStringLiteral("-id"), QString::number(window)}, &ok);
    if (!ok)
        return QRect();
    const int x = valueAfter(text, QStringLiteral("Absolute upper-left X"), &ok);
    const int y = valueAfter(text, QStringLiteral("Absolute upper-left Y"), &ok);
    const int w = valueAfter(text, QStringLiteral("Width"), &ok);
    const int h = valueAfter(text, QStringLiteral("Height"), &ok);
    return ok ? QRect(x, y, w, h) : QRect();
}

QList<int> DisplaySession::frameExtents(unsigned long window) const
{
    return cardinals(runTool(QStringLiteral("xprop"),
                             {QStringLiteral("-id"), QString::number(window), QStringLiteral("_NET_FRAME_EXTENTS")}));
}

QRect DisplaySession::settledGeometry(unsigned long window, int quietMs, int timeoutMs) const
{
    QElapsedTimer total;
    total.start();
    QRect last = clientGeometry(window);
    QElapsedTimer quiet;
    quiet.start();
    while (total.elapsed() < timeoutMs) {
        QThread::msleep(50);
        const QRect now = clientGeometry(window);
        if (now != last) {
            last = now;
            quiet.restart();
        } else if (quiet.elapsed() >= quietMs) {
            break;
        }
    }
    return last;
}

QRect DisplaySession::waitForGeometry(unsigned long window, const std::function<bool(const QRect&)>& predicate,
                                      int timeoutMs) const
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < timeoutMs && !predicate(clientGeometry(window)))
        QThread::msleep(50);
    return settledGeometry(window);
}

QRect DisplaySession::workArea() const
{
    const QList<int> v = cardinals(runTool(QStringLiteral("xprop"), {QStringLiteral("-root"), QStringLiteral("_NET_WORKAREA")}));
    if (v.size() < 4)
        return QRect();
    return QRect(v.at(0), v.at(1), v.at(2), v.at(3));
}

QList<unsigned long> DisplaySession::stackingTopFirst() const
{
    QList<unsigned long> windows;
    const QString text = runTool(QStringLiteral("xwininfo"), {QStringLiteral("-root"), QStringLiteral("-children")});
    const QRegularExpression child(QStringLiteral("^\\s+(0x[0-9a-fA-F]+)\\s"));
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        const QRegularExpressionMatch m = child.match(line);
        if (m.hasMatch())
            windows.append(m.captured(1).toULong(nullptr, 16));
    }
    return windows;
}

unsigned long DisplaySession::topLevelOf(unsigned long window) const
{
    const QRegularExpression rootRe(QStringLiteral("Root window id: (0x[0-9a-fA-F]+)"));
    const QRegularExpression parentRe(QStringLiteral("Parent window id: (0x[0-9a-fA-F]+)"));
    for (int depth = 0; depth < 16 && window != 0; ++depth) {
        bool ok = false;
        const QString text =
            runTool(QStringLiteral("xwininfo"), {QStringLiteral("-id"), QString::number(window), QStringLiteral("-tree")}, &ok);
        const QRegularExpressionMatch root = rootRe.match(text);
        const QRegularExpressionMatch parent = parentRe.match(text);
        if (!ok || !root.hasMatch() || !parent.hasMatch())
            return 0;
        const unsigned long parentId = parent.captured(1).toULong(nullptr, 16);
        if (parentId == root.captured(1).toULong(nullptr, 16))
            return window;
        window = parentId;
    }
    return 0;
}

QList<unsigned long> DisplaySession::windowsOfProcess(qint64 pid) const
{
    QList<unsigned long> windows;
    const QString text = runTool(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--pid"), QString::number(pid)});
    for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        bool ok = false;
        const unsigned long id = line.trimmed().toULong(&ok);
        if (ok)
            windows.append(id);
    }
    return windows;
}

bool DisplaySession::isViewable(unsigned long window) const
{
    return runTool(QStringLiteral("xwininfo"), {QStringLiteral("-id"), QString::number(window)})
        .contains(QStringLiteral("Map State: IsViewable"));
}

QImage DisplaySession::screenshot(const QString& fileName) const
{
    QDir().mkpath(QFileInfo(fileName).absolutePath());
    QFile::remove(fileName);
    bool ok = false;
    runTool(QStringLiteral("import"), {QStringLiteral("-window"), QStringLiteral("root"), fileName}, &ok, 30000);
    if (!ok)
        return QImage();
    return QImage(fileName).convertToFormat(QImage::Format_RGB32);
}

// --- DisplayProgram ------------------------------------------------------------------

DisplayProgram::DisplayProgram(const QString& executable)
    : m_source(executable)
{
}

DisplayProgram::~DisplayProgram()
{
    stop();
}

bool DisplayProgram::readReport(const QByteArray& output, unsigned long* windowId, QHash<QString, QRect>* widgets)
{
    bool ready = false;
    for (const QByteArray& raw : output.split('\n')) {
        const QStringList f = QString::fromUtf8(raw).trimmed().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (f.size() == 2 && f.at(0) == QLatin1String("winid"))
            *windowId = f.at(1).toULong();
        else if (f.size() == 6 && f.at(0) == QLatin1String("widget"))
            widgets->insert(f.at(1), QRect(f.at(2).toInt(), f.at(3).toInt(), f.at(4).toInt(), f.at(5).toInt()));
        else if (f.size() == 1 && f.at(0) == QLatin1String("ready"))
            ready = true;
    }
    return ready;
}

bool DisplayProgram::start(const DisplaySession& session, const QStringList& arguments, int timeoutMs)
{
    if (!m_folder.isValid()) {
        m_error = QStringLiteral("no temporary folder");
        return false;
    }
    const QString program = m_folder.filePath(QFileInfo(m_source).fileName());
    QFile::remove(program);
    if (!QFile::copy(m_source, program)
        || !QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
        m_error = QStringLiteral("cannot copy ") + m_source;
        return false;
    }
    m_process.setProcessEnvironment(session.environment());
    m_process.setWorkingDirectory(m_folder.path());
    // To a file: nobody reads the pipe while a test sleeps, and a full pipe would stall
    // the program's event loop.
    m_process.setStandardErrorFile(m_folder.filePath(QStringLiteral("stderr.log")));
    m_process.start(program, arguments);
    if (!m_process.waitForStarted(10000)) {
        m_error = QStringLiteral("did not start: ") + m_process.errorString();
        return false;
    }
    QElapsedTimer timer;
    timer.start();
    bool ready = false;
    while (!ready && timer.elapsed() < timeoutMs) {
        if (!m_process.waitForReadyRead(200) && m_process.state() != QProcess::Running)
            break;
        m_stdout += m_process.readAllStandardOutput();
        ready = readReport(m_stdout, &m_windowId, &m_widgets);
    }
    if (!ready || m_windowId == 0) {
        m_error = QStringLiteral("no \"ready\" within %1 ms; output:\n").arg(timeoutMs) + output();
        return false;
    }
    return true;
}

void DisplayProgram::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}

void DisplayProgram::readOutput()
{
    // Nothing runs an event loop here: pull what the pipe holds.
    while (m_process.state() == QProcess::Running && m_process.waitForReadyRead(20))
        m_stdout += m_process.readAllStandardOutput();
    m_stdout += m_process.readAllStandardOutput();
}

QRect DisplayProgram::qtGeometry()
{
    readOutput();
    const QList<QByteArray> lines = m_stdout.split('\n');
    for (auto it = lines.crbegin(); it != lines.crend(); ++it) {
        const QStringList f = QString::fromUtf8(*it).trimmed().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (f.size() == 5 && f.at(0) == QLatin1String("qtgeometry"))
            return QRect(f.at(1).toInt(), f.at(2).toInt(), f.at(3).toInt(), f.at(4).toInt());
    }
    return QRect();
}

QString DisplayProgram::output()
{
    readOutput();
    QFile err(m_folder.filePath(QStringLiteral("stderr.log")));
    err.open(QIODevice::ReadOnly);
    return QString::fromUtf8(m_stdout) + QString::fromUtf8(err.readAll());
}
