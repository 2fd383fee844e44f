#include <ZVCore/private/ZVDesktopServices>

#include <QtCore/QMetaMethod>
#include <QtTest/QtTest>

class tst_ZVDesktopServices : public QObject
{
    Q_OBJECT

private slots:
    // First: once set, the custom value can never be emptied again in this process.
    void taggingWithoutCustom()
    {
        ZVDesktopServices* s = ZVDesktopServices::Instance();
        QCOMPARE(s->GetCustom(), QString());
        s->SetLanguage(QString());
        s->SetPid(QString());
        QCOMPARE(s->TaggedUrl(QUrl(QStringLiteral("https://a.example/?key=a"))).toString(),
                 QStringLiteral("https://a.example/?key=a&lang=&pid="));
        s->SetLanguage(QStringLiteral("English"));
        s->SetPid(QStringLiteral("p9"));
        QCOMPARE(s->TaggedUrl(QUrl(QStringLiteral("https://a.example/p?key=buy"))).toString(),
                 QStringLiteral("https://a.example/p?key=buy&lang=english&pid=9"));
    }

    void isOneObjectWithOnlyTheSlot()
    {
        ZVDesktopServices* s = ZVDesktopServices::Instance();
        QCOMPARE(ZVDesktopServices::Instance(), s);
        QVERIFY(!s->parent());
        const QMetaObject* meta = s->metaObject();
        QCOMPARE(meta->methodCount() - meta->methodOffset(), 1);
        QCOMPARE(meta->method(meta->methodOffset()).methodSignature(), QByteArray("openUrl(QUrl)"));
    }

    void setters_data()
    {
        QTest::addColumn<QString>("pid");
        QTest::addColumn<QString>("storedPid");
        QTest::newRow("P1234") << "P1234" << "1234";
        QTest::newRow("p1234") << "p1234" << "1234";
        QTest::newRow("PpX1") << "PpX1" << "X1";
        QTest::newRow("inner p") << "a1p2P3" << "a123";
        QTest::newRow("empty") << "" << "";
    }

    void setters()
    {
        QFETCH(QString, pid);
        QFETCH(QString, storedPid);
        ZVDesktopServices* s = ZVDesktopServices::Instance();
        s->SetPid(pid);
        QCOMPARE(s->GetPid(), storedPid);
    }

    void languageIsLowerCased()
    {
        ZVDesktopServices* s = ZVDesktopServices::Instance();
        s->SetLanguage(QStringLiteral("ChineseTraditional"));
        QCOMPARE(s->GetLanguage(), QStringLiteral("chinesetraditional"));
    }

    void emptyCustomKeepsTheOldValue()
    {
        ZVDesktopServices* s = ZVDesktopServices::Instance();
        s->SetCustom(QStringLiteral("abc"));
        s->SetCustom(QString());
        QCOMPARE(s->GetCustom(), QStringLiteral("abc"));
        s->SetCustom(QStringLiteral("def"));
        QCOMPARE(s->GetCustom(), QStringLiteral("def"));
    }

    void tagging_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("pid");
        QTest::addColumn<QString>("custom");
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("opened");

        QTest::newRow("example") << "English" << "P1234" << "abc" << "https://a.example/p?key=buy"
                                 << "https://a.example/p?key=buy&lang=english&pid=1234&custom=abc";
        QTest::newRow("monkey=1") << "English" << "P1234" << "abc" << "https://a.example/?monkey=1"
                                  << "https://a.example/?monkey=1&lang=english&pid=1234&custom=abc";
        QTest::newRow("key= only in the path") << "English" << "P1234" << "abc" << "https://a.example/key=1/x"
                                               << "https://a.example/key=1/x";
        QTest::newRow("no key=") << "English" << "P1234" << "abc" << "https://a.example/p?id=1"
                                 << "https://a.example/p?id=1";
        QTest::newRow("key= in the path, other query") << "English" << "P1" << "c" << "https://a.example/key=1?a=b"
                                                       << "https://a.example/key=1?a=b&lang=english&pid=1&custom=c";
        QTest::newRow("items already there") << "German" << "7" << "x" << "http://a.example/?key=a&lang=fr&pid=1"
                                             << "http://a.example/?key=a&lang=fr&pid=1&lang=german&pid=7&custom=x";
        QTest::newRow("case-sensitive") << "English" << "1" << "c" << "https://a.example/?KEY=a"
                                        << "https://a.example/?KEY=a";
        QTest::newRow("fragment kept") << "English" << "1" << "c" << "https://a.example/?key=a#top"
                                       << "https://a.example/?key=a&lang=english&pid=1&custom=c#top";
    }

    void tagging()
    {
        QFETCH(QString, language);
        QFETCH(QString, pid);
        QFETCH(QString, custom);
        QFETCH(QString, url);
        QFETCH(QString, opened);
        ZVDesktopServices* s = ZVDesktopServices::Instance();
        s->SetLanguage(language);
        s->SetPid(pid);
        s->SetCustom(custom);
        QCOMPARE(s->TaggedUrl(QUrl(url)).toString(), opened);
    }
};

QTEST_GUILESS_MAIN(tst_ZVDesktopServices)
#include "tst_zvdesktopservices.moc"
