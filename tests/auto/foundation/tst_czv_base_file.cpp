#include <ZVFoundation/CZV_Base_File>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

class tst_CZV_Base_File : public QObject
{
    Q_OBJECT

public:
    tst_CZV_Base_File(const QString& argv0, const QString& versionWithoutApplication)
        : m_argv0(argv0)
        , m_versionWithoutApplication(versionWithoutApplication)
    {
    }

private slots:
    void initTestCase();
    void cleanup();

    void withoutApplicationObject();
    void fileVersion_data();
    void fileVersion();

private:
    QString pathFor(const QString& kind);

    QString m_argv0;
    QString m_versionWithoutApplication;
    QTemporaryDir m_dir;
    QString m_executable;
    QString m_initialCurrentPath;
};

void tst_CZV_Base_File::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_executable = QCoreApplication::applicationFilePath();
    QVERIFY(QFileInfo(m_executable).isFile());
    m_initialCurrentPath = QDir::currentPath();
}

void tst_CZV_Base_File::cleanup()
{
    QDir::setCurrent(m_initialCurrentPath);
    QCoreApplication::setApplicationVersion(QString());
}

void tst_CZV_Base_File::withoutApplicationObject()
{
    // main() asked with version "1.2.3.4" set but before the application object
    // existed; the same question now has an answer. Windows reads the file's version
    // resource, which needs no application object.
#ifdef Q_OS_WIN
    QCOMPARE(m_versionWithoutApplication, QStringLiteral("1.2.3.4"));
#else
    QCOMPARE(m_versionWithoutApplication, QString());
#endif
#ifndef Q_OS_WIN
    QCoreApplication::setApplicationVersion(QStringLiteral("1.2.3.4"));
    QCOMPARE(CZV_Base_File::GetFileVersion(m_argv0), QStringLiteral("1.2.3.4"));
#endif
}

QString tst_CZV_Base_File::pathFor(const QString& kind)
{
    const QFileInfo exe(m_executable);
    if (kind == QLatin1String("executable"))
        return m_executable;
    if (kind == QLatin1String("native separators"))
        return QDir::toNativeSeparators(m_executable);
    if (kind == QLatin1String("symlink")) {
        const QString link = m_dir.filePath(QStringLiteral("link-to-executable"));
        if (!QFileInfo(link).isSymLink() && !QFile::link(m_executable, link))
            return QString();
        return link;
    }
    if (kind == QLatin1String("relative")) {
        // From a folder elsewhere, so that the path has to climb out of it.
        QDir::setCurrent(m_dir.path());
        const QString relative = QDir::current().relativeFilePath(m_executable);
        if (!QDir::isRelativePath(relative)) {
            // The temporary folder is on another drive (Windows): from the folder above
            // the program's instead.
            QDir::setCurrent(exe.absoluteDir().filePath(QStringLiteral("..")));
            return QDir::current().relativeFilePath(m_executable);
        }
        return relative;
    }
    if (kind == QLatin1String("dot segments"))
        return exe.absolutePath() + QStringLiteral("/./../") + exe.absoluteDir().dirName()
            + QLatin1Char('/') + exe.fileName();
    if (kind == QLatin1String("copy")) {
        const QString copy = m_dir.filePath(QStringLiteral("copy-of-executable"));
        if (!QFileInfo::exists(copy) && !QFile::copy(m_executable, copy))
            return QString();
        return copy;
    }
    if (kind == QLatin1String("folder"))
        return exe.absolutePath();
    if (kind == QLatin1String("missing"))
        return m_dir.filePath(QStringLiteral("no-such-file"));
    return QString();
}

void tst_CZV_Base_File::fileVersion_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("applicationVersion");
    QTest::addColumn<QString>("expected");

    const QString v = QStringLiteral("1.2.3.4");
    QTest::newRow("running executable") << "executable" << v << v;
    QTest::newRow("another version") << "executable" << "10.0 beta" << "10.0 beta";
    QTest::newRow("native separators") << "native separators" << v << v;
    QTest::newRow("symbolic link") << "symlink" << v << v;
    QTest::newRow("relative path") << "relative" << v << v;
    QTest::newRow("dot segments") << "dot segments" << v << v;
    QTest::newRow("no version set") << "executable" << QString() << QString();
    QTest::newRow("copy of the executable") << "copy" << v << QString();
    QTest::newRow("folder of the executable") << "folder" << v << QString();
    QTest::newRow("missing file") << "missing" << v << QString();
    QTest::newRow("empty path") << "empty" << v << QString();
}

void tst_CZV_Base_File::fileVersion()
{
    QFETCH(QString, kind);
    QFETCH(QString, applicationVersion);
    QFETCH(QString, expected);

#ifdef Q_OS_WIN
    if (kind == QLatin1String("symlink"))
        QSKIP("QFile::link makes shortcuts, not links, on Windows");
    // Windows reads the version resource of the file, whatever applicationVersion says:
    // this program's is 1.2.3.4 (tst_czv_base_file.rc), and a copy of it carries it too.
    const QStringList programFile{QStringLiteral("executable"), QStringLiteral("native separators"),
                                  QStringLiteral("relative"), QStringLiteral("dot segments"), QStringLiteral("copy")};
    expected = programFile.contains(kind) ? QStringLiteral("1.2.3.4") : QString();
#endif

    QCoreApplication::setApplicationVersion(applicationVersion);
    const QString path = pathFor(kind);
    if (kind != QLatin1String("empty"))
        QVERIFY2(!path.isEmpty(), qPrintable(kind));
    if (kind == QLatin1String("relative"))
        QVERIFY(QDir::isRelativePath(path));
    QCOMPARE(CZV_Base_File::GetFileVersion(path), expected);
}

int main(int argc, char* argv[])
{
    const QString argv0 = QString::fromLocal8Bit(argv[0]);
    QCoreApplication::setApplicationVersion(QStringLiteral("1.2.3.4"));
    const QString versionWithoutApplication = CZV_Base_File::GetFileVersion(argv0);
    QCoreApplication::setApplicationVersion(QString());

    QCoreApplication app(argc, argv);
    tst_CZV_Base_File test(argv0, versionWithoutApplication);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_czv_base_file.moc"
