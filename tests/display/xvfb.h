// A private X server for tests that need a real display. Each test starts its own on a
// free display number (Xvfb picks it and reports it on -displayfd) and stops it by PID.
#ifndef ZVCORE_TESTS_XVFB_H
#define ZVCORE_TESTS_XVFB_H

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QString>

class XvfbServer
{
public:
    ~XvfbServer() { stop(); }

    // Starts Xvfb with one screen of width x height x 24 at the given DPI. Returns false
    // with a reason in error() when it cannot.
    bool start(int width, int height, int dpi = 96)
    {
        const QString program = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
        if (program.isEmpty()) {
            m_error = QStringLiteral("Xvfb is not installed (Debian package xvfb)");
            return false;
        }
        m_process.setProgram(program);
        m_process.setArguments({QStringLiteral("-displayfd"), QStringLiteral("1"),
                                QStringLiteral("-screen"), QStringLiteral("0"),
                                QStringLiteral("%1x%2x24").arg(width).arg(height),
                                QStringLiteral("-dpi"), QString::number(dpi),
                                QStringLiteral("-nolisten"), QStringLiteral("tcp"),
                                QStringLiteral("-noreset")});
        m_process.setProcessChannelMode(QProcess::SeparateChannels);
        m_process.start();
        if (!m_process.waitForStarted(10000)) {
            m_error = QStringLiteral("Xvfb did not start: ") + m_process.errorString();
            return false;
        }
        QByteArray out;
        QElapsedTimer timer;
        timer.start();
        while (!out.contains('\n') && timer.elapsed() < 20000) {
            if (!m_process.waitForReadyRead(1000) && m_process.state() != QProcess::Running)
                break;
            out += m_process.readAllStandardOutput();
        }
        bool ok = false;
        const int number = out.trimmed().toInt(&ok);
        if (!ok) {
            m_error = QStringLiteral("Xvfb reported no display: ") + QString::fromLocal8Bit(m_process.readAllStandardError());
            stop();
            return false;
        }
        m_display = QStringLiteral(":%1").arg(number);
        return true;
    }

    void stop()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.terminate();
            if (!m_process.waitForFinished(5000)) {
                m_process.kill();
                m_process.waitForFinished(5000);
            }
        }
    }

    QString display() const { return m_display; }
    QString error() const { return m_error; }

private:
    QProcess m_process;
    QString m_display;
    QString m_error;
};

#endif // ZVCORE_TESTS_XVFB_H
