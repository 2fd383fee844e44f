// The scenario harness: a fresh folder holding a copy of zvprobe and its fixture files;
// each run is a process of its own.
#ifndef ZVCORE_TESTS_PROBE_H
#define ZVCORE_TESTS_PROBE_H

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>

class ProbeRun
{
public:
    int exitCode = -1;
    bool finished = false;
    QList<QJsonObject> reports;
    QStringList log; // one Qt message per entry, as the frame wrote it

    QJsonObject report(const QString& cmd) const
    {
        for (const QJsonObject& r : reports) {
            if (r.value(QStringLiteral("cmd")).toString() == cmd)
                return r;
        }
        return QJsonObject();
    }
    bool logged(const QString& line) const { return log.contains(line); }
};

class ProbeFolder
{
public:
    // \a sub names a folder inside the temporary one, so paths with blanks and
    // non-ASCII letters can be tried.
    explicit ProbeFolder(const QString& sub = QStringLiteral("product"))
    {
        m_path = m_tmp.path() + QLatin1Char('/') + sub;
        QDir().mkpath(m_path);
        m_program = m_path + QStringLiteral("/zvprobe");
        QFile::copy(QStringLiteral(ZV_PROBE_PATH), m_program);
        QFile::setPermissions(m_program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    // Runs the probe without the capabilities that let root read any file, so that
    // permission tests mean the same for root as for a user. Needs util-linux setpriv.
    void setHonourFilePermissions(bool on) { m_honourPermissions = on; }
    static bool canHonourFilePermissions()
    {
        return !QStandardPaths::findExecutable(QStringLiteral("setpriv")).isEmpty();
    }

    bool isValid() const { return m_tmp.isValid() && QFileInfo(m_program).isExecutable(); }
    QString path() const { return m_path; }
    QString file(const QString& relative) const { return m_path + QLatin1Char('/') + relative; }

    bool write(const QString& relative, const QByteArray& bytes) const
    {
        const QString target = file(relative);
        QDir().mkpath(QFileInfo(target).path());
        QFile f(target);
        return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
    }

    ProbeRun run(const QStringList& commands, const QString& workingDirectory = QDir::rootPath(),
                 const QProcessEnvironment& extra = QProcessEnvironment()) const
    {
        QProcess p;
        p.setWorkingDirectory(workingDirectory);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("QT_MESSAGE_PATTERN"), QStringLiteral("%{message}"));
        env.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("qt.qpa.*=false"));
        for (const QString& key : extra.keys())
            env.insert(key, extra.value(key));
        p.setProcessEnvironment(env);
        if (m_honourPermissions) {
            p.start(QStringLiteral("setpriv"),
                    QStringList{QStringLiteral("--bounding-set"), QStringLiteral("-dac_override,-dac_read_search"),
                                m_program}
                        + commands);
        } else {
            p.start(m_program, commands);
        }
        ProbeRun result;
        result.finished = p.waitForFinished(60000);
        if (!result.finished)
            p.kill();
        p.waitForFinished();
        result.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
        for (const QByteArray& line : p.readAllStandardOutput().split('\n')) {
            if (!line.trimmed().isEmpty())
                result.reports.append(QJsonDocument::fromJson(line).object());
        }
        const QString err = QString::fromUtf8(p.readAllStandardError());
        for (const QString& line : err.split(QLatin1Char('\n'))) {
            if (!line.isEmpty())
                result.log.append(line);
        }
        return result;
    }

private:
    QTemporaryDir m_tmp;
    QString m_path;
    QString m_program;
    bool m_honourPermissions = false;
};

#endif // ZVCORE_TESTS_PROBE_H
