// What really leaves the process when a link is opened: on X11 Qt hands web addresses to
// the first xdg-open on PATH, so a recorder of that name stands in for the browser.
#include "probe.h"
#include "xvfb.h"

#include <ZVCore/private/zvcoreconfig_p.h>
#include <ZVFoundation/CSimpleCrypt>

#include <QtTest/QtTest>

class tst_LinkOpeningDisplay : public QObject
{
    Q_OBJECT

private:
    XvfbServer m_server;
    QTemporaryDir m_bin;

    // Runs the probe on the X server with the recorder first on PATH and returns the
    // addresses the recorder received, one per call, after waiting for \a expected.
    QStringList opened(const ProbeFolder& product, const QStringList& commands, int expected)
    {
        const QString record = product.file(QStringLiteral("opened.txt"));
        QProcessEnvironment env;
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        env.insert(QStringLiteral("DISPLAY"), m_server.display());
        env.insert(QStringLiteral("PATH"), m_bin.path() + QLatin1Char(':') + qEnvironmentVariable("PATH"));
        env.insert(QStringLiteral("ZV_RECORDER_OUT"), record);
        const ProbeRun run = product.run(commands, QDir::rootPath(), env);
        if (run.exitCode != 0)
            return {QStringLiteral("<probe failed: %1>").arg(run.log.join(QLatin1Char('\n')))};
        QElapsedTimer timer;
        timer.start();
        QStringList lines;
        do {
            QFile f(record);
            if (f.open(QIODevice::ReadOnly))
                lines = QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            if (lines.size() >= expected && expected > 0)
                break;
            QTest::qWait(50);
        } while (timer.elapsed() < (expected > 0 ? 10000 : 1500));
        return lines;
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(m_server.start(1280, 800), qPrintable(m_server.error()));
        QVERIFY(m_bin.isValid());
        QFile recorder(m_bin.path() + QStringLiteral("/xdg-open"));
        QVERIFY(recorder.open(QIODevice::WriteOnly));
        recorder.write("#!/bin/sh\nprintf '%s\\n' \"$1\" >> \"$ZV_RECORDER_OUT\"\n");
        recorder.close();
        QVERIFY(recorder.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    void webLinkCarriesLanguageProductAndChannel()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("productInfo.xml"), "<p><ZV_PID>P1234</ZV_PID></p>"));
        QVERIFY(product.write(QStringLiteral("custom"), "abc\r\n"));
        const QStringList urls = opened(product, {QStringLiteral("prop:ForceLanguage=string:English"), QStringLiteral("language"),
                                                  QStringLiteral("openurl:https://a.example/p?key=buy")}, 1);
        QCOMPARE(urls, QStringList{QStringLiteral("https://a.example/p?key=buy&lang=english&pid=1234&custom=abc")});
    }

    void linkWithoutQueryIsOpenedUnchanged()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("productInfo.xml"), "<p><ZV_PID>P1234</ZV_PID></p>"));
        const QStringList urls = opened(product, {QStringLiteral("openurl:https://a.example/key=buy")}, 1);
        QCOMPARE(urls, QStringList{QStringLiteral("https://a.example/key=buy")});
    }

    void fileLinksDoNotPassThroughTheService()
    {
        ProbeFolder product;
        QVERIFY(product.write(QStringLiteral("productInfo.xml"), "<p><ZV_PID>P1234</ZV_PID></p>"));
        const QStringList urls = opened(product, {QStringLiteral("openurl:file:///tmp/a?key=1")}, 1);
        QCOMPARE(urls, QStringList{QStringLiteral("file:///tmp/a?key=1")});
    }

    void openLinkFromTheLinkFile()
    {
        ProbeFolder product;
        CSimpleCrypt crypt(ZVCORE_LINK_CIPHER_KEY);
        const QByteArray xml = "<root><menu>"
                               "<childMenu><menuName>Buy</menuName><url>"
            + crypt.encryptToString(QStringLiteral("https://a.example/buy?key=buy")).toLatin1()
            + "</url><isShow>1</isShow></childMenu>"
              "<childMenu><menuName>Hidden</menuName><url>"
            + crypt.encryptToString(QStringLiteral("https://a.example/hidden")).toLatin1()
            + "</url><isShow>2</isShow></childMenu>"
              "</menu></root>";
        QVERIFY(product.write(QStringLiteral("language/main/English_URL.xml"), xml));
        QVERIFY(product.write(QStringLiteral("productInfo.xml"), "<p><ZV_PID>77</ZV_PID></p>"));
        const QStringList urls = opened(product, {QStringLiteral("context"), QStringLiteral("setlang:English"),
                                                  QStringLiteral("openlink:Hidden"), QStringLiteral("openlink:Buy")}, 1);
        QCOMPARE(urls, QStringList{QStringLiteral("https://a.example/buy?key=buy&lang=english&pid=77")});
    }

    void hiddenLinkIsNeverOpened()
    {
        ProbeFolder product;
        CSimpleCrypt crypt(ZVCORE_LINK_CIPHER_KEY);
        const QByteArray xml = "<root><menu><childMenu><menuName>Hidden</menuName><url>"
            + crypt.encryptToString(QStringLiteral("https://a.example/hidden")).toLatin1()
            + "</url><isShow>0</isShow></childMenu></menu></root>";
        QVERIFY(product.write(QStringLiteral("language/main/English_URL.xml"), xml));
        const QStringList urls = opened(product, {QStringLiteral("context"), QStringLiteral("setlang:English"),
                                                  QStringLiteral("openlink:Hidden")}, 0);
        QVERIFY2(urls.isEmpty(), qPrintable(urls.join(QLatin1Char(' '))));
    }
};

QTEST_GUILESS_MAIN(tst_LinkOpeningDisplay)
#include "tst_linkopening_display.moc"
