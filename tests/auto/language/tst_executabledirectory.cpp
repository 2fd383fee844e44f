#include "executabledirectory_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <cstdio>

using ZVUIFramework::Platform::ExecutableDirectory;

class tst_ExecutableDirectory : public QObject
{
    Q_OBJECT

private:
    // Runs a copy of this test program (or a link to it) in its "print" mode.
    static QString directoryReportedBy(const QString& program, const QString& workingDirectory)
    {
        QProcess p;
        p.setWorkingDirectory(workingDirectory);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("ZV_PRINT_EXECUTABLE_DIRECTORY"), QStringLiteral("1"));
        p.setProcessEnvironment(env);
        p.start(program, QStringList());
        if (!p.waitForFinished(30000) || p.exitCode() != 0)
            return QStringLiteral("<failed: %1>").arg(QString::fromLocal8Bit(p.readAllStandardError()));
        return QString::fromUtf8(p.readAllStandardOutput());
    }

private slots:
    void isTheDirectoryOfThisProgramWithTrailingSeparator()
    {
        const QString dir = ExecutableDirectory();
        QVERIFY(dir.endsWith(QDir::separator()));
        QCOMPARE(dir, QDir::toNativeSeparators(QCoreApplication::applicationDirPath()) + QDir::separator());
        QVERIFY(QFile::exists(dir + QFileInfo(QCoreApplication::applicationFilePath()).fileName()));
    }

    void doesNotDependOnTheCurrentDirectory()
    {
        const QString before = ExecutableDirectory();
        const QString cwd = QDir::currentPath();
        QVERIFY(QDir::setCurrent(QDir::tempPath()));
        const QString after = ExecutableDirectory();
        QDir::setCurrent(cwd);
        QCOMPARE(after, before);
    }

    void copyInFolderWithSpacesAndNonAsciiName()
    {
        QTemporaryDir tmp;
        QVERIFY(tmp.isValid());
        const QString folder = tmp.path() + QStringLiteral("/a folder \u00e9\u4e2d");
        QVERIFY(QDir().mkpath(folder));
        const QString copy = folder + QStringLiteral("/probe");
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), copy));
        QVERIFY(QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));

        QCOMPARE(directoryReportedBy(copy, QDir::rootPath()),
                 QDir::toNativeSeparators(folder) + QDir::separator());
    }

    void linkToTheProgramReportsTheRealFolder()
    {
#ifdef Q_OS_WIN
        QSKIP("symbolic links need privileges on Windows");
#endif
        QTemporaryDir tmp;
        QVERIFY(tmp.isValid());
        const QString link = tmp.path() + QStringLiteral("/link-to-probe");
        QVERIFY(QFile::link(QCoreApplication::applicationFilePath(), link));
        QCOMPARE(directoryReportedBy(link, tmp.path()),
                 QDir::toNativeSeparators(QCoreApplication::applicationDirPath()) + QDir::separator());
    }
};

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsSet("ZV_PRINT_EXECUTABLE_DIRECTORY")) {
        // Probe mode: no application object, as before a host creates one.
        const QByteArray dir = ExecutableDirectory().toUtf8();
        std::fwrite(dir.constData(), 1, size_t(dir.size()), stdout);
        return 0;
    }
    QCoreApplication app(argc, argv);
    tst_ExecutableDirectory test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_executabledirectory.moc"
