#include <ZVCore/CSkin>
#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/private/CStyleSheetManager>

#include <QtCore/QTemporaryDir>
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QtCore/QTextCodec>
#endif
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

#include <sys/stat.h>

using ZVUIFramework::CStyleSheetManager;
using ZVUIFramework::ZVApplicationInfo;

namespace {
const QString kRule = QStringLiteral("QLabel#separator_line{background-color: #e1e1e1;}");
}

class tst_CStyleSheetManager : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString qssDir() const { return m_dir.path() + QLatin1Char('/'); }
    void write(const QString& name, const QByteArray& text)
    {
        QFile f(qssDir() + name);
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(text);
    }

private slots:
    void init()
    {
        QDir dir(m_dir.path());
        for (const QString& entry : dir.entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System)) {
            QFileInfo info(dir.filePath(entry));
            if (info.isDir() && !info.isSymLink())
                QDir(info.filePath()).removeRecursively();
            else
                QFile::remove(info.filePath());
        }
    }

    void separatorRuleText()
    {
        QCOMPARE(CStyleSheetManager::SeparatorRule(), kRule);
    }

    void noReadableFileGivesTheRuleOnly()
    {
        QCOMPARE(CStyleSheetManager::Assemble({{QStringLiteral("ZVUIFramework.qss"), true}}, qssDir(), QStringLiteral("img/")),
                 kRule);
        QCOMPARE(CStyleSheetManager::Assemble({}, qssDir(), QStringLiteral("img/")), kRule);
    }

    void separatorMentionedAnywhereSuppressesTheRule_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("rule") << QByteArray("QLabel#separator_line{background:red;}");
        QTest::newRow("comment") << QByteArray("/* separator_line is styled elsewhere */");
        QTest::newRow("inside a word") << QByteArray("QWidget#my_separator_line_x{}");
    }

    void separatorMentionedAnywhereSuppressesTheRule()
    {
        QFETCH(QByteArray, text);
        write(QStringLiteral("ZVUIFramework.qss"), text);
        QCOMPARE(CStyleSheetManager::Assemble({{QStringLiteral("ZVUIFramework.qss"), true}}, qssDir(), QStringLiteral("img/")),
                 QString::fromUtf8(text));
    }

    void separatorMatchIsCaseSensitive()
    {
        write(QStringLiteral("ZVUIFramework.qss"), "QLabel#Separator_Line{}");
        QCOMPARE(CStyleSheetManager::Assemble({{QStringLiteral("ZVUIFramework.qss"), true}}, qssDir(), QStringLiteral("img/")),
                 QStringLiteral("QLabel#Separator_Line{}") + kRule);
    }

    void rewriteFlagPerFile()
    {
        write(QStringLiteral("A.qss"), "a{image:url(:/a.png);}");
        write(QStringLiteral("B.qss"), "b{image:url(:/b.png);}");
        const QMap<QString, bool> files{{QStringLiteral("A.qss"), true}, {QStringLiteral("B.qss"), false}};
        QCOMPARE(CStyleSheetManager::Assemble(files, qssDir(), QStringLiteral("skin/PictureNormal/")),
                 QStringLiteral("a{image:url(skin/PictureNormal/a.png);}b{image:url(:/b.png);}") + kRule);
    }

    void onlyTheExactResourcePrefixIsRewritten()
    {
        write(QStringLiteral("A.qss"), "a{image:url(:/x.png); b:URL(:/y.png); c:url(\":/z.png\"); d:url(:x.png);}");
        QCOMPARE(CStyleSheetManager::Assemble({{QStringLiteral("A.qss"), true}}, qssDir(), QStringLiteral("P/")),
                 QStringLiteral("a{image:url(P/x.png); b:URL(:/y.png); c:url(\":/z.png\"); d:url(:x.png);}") + kRule);
    }

    void noSeparatorBetweenFiles()
    {
        write(QStringLiteral("A.qss"), "a{}");
        write(QStringLiteral("B.qss"), "b{}");
        QCOMPARE(CStyleSheetManager::Assemble({{QStringLiteral("B.qss"), true}, {QStringLiteral("A.qss"), true}},
                                              qssDir(), QStringLiteral("P/")),
                 QStringLiteral("a{}b{}") + kRule);
    }

    void unreadableEntriesAreSkipped()
    {
        write(QStringLiteral("Good.qss"), "good{}");
        QVERIFY(QDir(m_dir.path()).mkdir(QStringLiteral("Dir.qss")));
#ifndef Q_OS_WIN
        // Windows has no FIFOs in the file system; there the entry is simply missing.
        QCOMPARE(::mkfifo(QFile::encodeName(qssDir() + QStringLiteral("Fifo.qss")).constData(), 0600), 0);
#endif
        const QMap<QString, bool> files{{QStringLiteral("Dir.qss"), true},
                                        {QStringLiteral("Fifo.qss"), true},
                                        {QStringLiteral("Good.qss"), true},
                                        {QStringLiteral("Missing.qss"), true}};
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(CStyleSheetManager::Assemble(files, qssDir(), QStringLiteral("P/")), QStringLiteral("good{}") + kRule);
        QVERIFY2(timer.elapsed() < 5000, "a FIFO must not block the assembly");
    }

    void windowsLineEndsAreReadAsText()
    {
        write(QStringLiteral("A.qss"), "a{}\r\nb{}\r\n");
        QCOMPARE(CStyleSheetManager::Assemble({{QStringLiteral("A.qss"), true}}, qssDir(), QStringLiteral("P/")),
                 QStringLiteral("a{}\nb{}\n") + kRule);
    }

    // Two files, each read as a text stream reads it, rewritten on its own, joined.
    void assemblyOfTwoFiles_data()
    {
        QTest::addColumn<QByteArray>("first");
        QTest::addColumn<QByteArray>("second");
        QTest::addColumn<QString>("expected");
        QTest::newRow("separator name across the seam")
            << QByteArray("a{}/* separ") << QByteArray("ator_line */") << QStringLiteral("a{}/* separator_line */");
        QTest::newRow("reference across the seam stays")
            << QByteArray("a{image:url(:") << QByteArray("/a.png);}") << QStringLiteral("a{image:url(:/a.png);}") + kRule;
        QTest::newRow("adjacent references")
            << QByteArray("url(:/url(:/") << QByteArray("url(:/") << QStringLiteral("url(P/url(P/url(P/") + kRule;
        QTest::newRow("references at both ends")
            << QByteArray("url(:/a") << QByteArray("b url(:/") << QStringLiteral("url(P/ab url(P/") + kRule;
        QTest::newRow("byte-order mark")
            << QByteArray("\xEF\xBB\xBF" "a{image:url(:/a.png);}") << QByteArray("b{}")
            << QStringLiteral("a{image:url(P/a.png);}b{}") + kRule;
        QTest::newRow("carriage returns anywhere")
            << QByteArray("a{\rimage:url(:/a.png);}\r\n") << QByteArray("\rb{}")
            << QStringLiteral("a{image:url(P/a.png);}\nb{}") + kRule;
        QTest::newRow("non-ASCII around a reference")
            << QByteArray("\xC3\xA9{image:url(:/\xC3\xBC.png);}") << QByteArray("\xE2\x82\xAC")
            << QString::fromUtf8("\xC3\xA9{image:url(P/\xC3\xBC.png);}\xE2\x82\xAC") + kRule;
        QTest::newRow("empty files") << QByteArray() << QByteArray() << kRule;
    }

    void assemblyOfTwoFiles()
    {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        // Qt 5's text streams decode with the locale's codec; Qt 6's always with UTF-8.
        if (QTextCodec::codecForLocale()->mibEnum() != 106)
            QSKIP("the rows are written for a UTF-8 locale");
#endif
        QFETCH(QByteArray, first);
        QFETCH(QByteArray, second);
        QFETCH(QString, expected);
        write(QStringLiteral("A.qss"), first);
        write(QStringLiteral("B.qss"), second);
        const QMap<QString, bool> files{{QStringLiteral("A.qss"), true}, {QStringLiteral("B.qss"), true}};
        QCOMPARE(CStyleSheetManager::Assemble(files, qssDir(), QStringLiteral("P/")), expected);
    }

    void pictureFolderOutsideTheLocaleCodec()
    {
        // A folder name the locale's codec cannot carry is still substituted as given.
        write(QStringLiteral("A.qss"), "a{image:url(:/a.png);}");
        const QString folder = QString(QChar(0xD800)) + QStringLiteral("/");
        QCOMPARE(CStyleSheetManager::Assemble({{QStringLiteral("A.qss"), true}}, qssDir(), folder),
                 QStringLiteral("a{image:url(") + folder + QStringLiteral("a.png);}") + kRule);
    }

    void relativeImagePathProperty()
    {
        qApp->setProperty("QtRelativeImagePath", QVariant());
        QVERIFY(CStyleSheetManager::RelativeImagePath());
        qApp->setProperty("QtRelativeImagePath", false);
        QVERIFY(!CStyleSheetManager::RelativeImagePath());
        qApp->setProperty("QtRelativeImagePath", QStringLiteral("true"));
        QVERIFY(CStyleSheetManager::RelativeImagePath());
        qApp->setProperty("QtRelativeImagePath", 0);
        QVERIFY(!CStyleSheetManager::RelativeImagePath());
        qApp->setProperty("QtRelativeImagePath", QVariant());
    }

    void applyReplacesTheApplicationSheet()
    {
        ZVApplicationInfo::GetInstance()->GetSkinObject().SetQssPath(qssDir());
        write(QStringLiteral("ZVUIFramework.qss"), "x{image:url(:/p.png);}");
        qApp->setStyleSheet(QStringLiteral("old{}"));
        CStyleSheetManager::Apply({{QStringLiteral("ZVUIFramework.qss"), true}}, QStringLiteral("dir/"));
        QCOMPARE(qApp->styleSheet(), QStringLiteral("x{image:url(dir/p.png);}") + kRule);
    }

    void addQssKeepsOneEntryWithTheLatestFlag()
    {
        // InitSkin reads the sheets from <executable folder>skin/qss/, which is this
        // test's own folder: write them there for the duration of the test.
        ZVApplicationInfo* context = ZVApplicationInfo::GetInstance();
        const QString dir = QCoreApplication::applicationDirPath() + QStringLiteral("/skin/qss/");
        QVERIFY(QDir().mkpath(dir));
        struct Cleanup
        {
            QString path;
            ~Cleanup() { QDir(path).removeRecursively(); }
        } cleanup{QCoreApplication::applicationDirPath() + QStringLiteral("/skin")};
        QFile twice(dir + QStringLiteral("Twice.qss"));
        QVERIFY(twice.open(QIODevice::WriteOnly));
        twice.write("t{image:url(:/t.png);}");
        twice.close();

        context->addQss(QStringLiteral("Twice.qss"), true);
        context->addQss(QStringLiteral("Twice.qss"), false);
        context->InitSkin(true, QString());
        QCOMPARE(qApp->styleSheet(), QStringLiteral("t{image:url(:/t.png);}") + kRule);

        context->addQss(QStringLiteral("Twice.qss"), true);
        context->InitSkin(true, QString());
        QCOMPARE(qApp->styleSheet(), QStringLiteral("t{image:url(skin/PictureNormal/t.png);}") + kRule);
    }
};

QTEST_MAIN(tst_CStyleSheetManager)
#include "tst_cstylesheetmanager.moc"
