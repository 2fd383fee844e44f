#include <ZVCore/private/LaunchArguments>

#include <QtTest/QtTest>

using namespace ZVUIFramework;

namespace {

QStringList q(const std::vector<std::u16string>& v)
{
    QStringList out;
    for (const std::u16string& s : v)
        out.append(QString::fromUtf16(s.data(), int(s.size())));
    return out;
}

std::u16string u(const QString& s)
{
    return std::u16string(reinterpret_cast<const char16_t*>(s.utf16()), size_t(s.size()));
}

} // namespace

class tst_LaunchArguments : public QObject
{
    Q_OBJECT

private slots:
    void feedback_data()
    {
        QTest::addColumn<bool>("crashed");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("crash") << true
                               << QStringList{"crash@x", "C:/app/host.exe", "user@x", "send@x", "pwd", "0"};
        QTest::newRow("feedback") << false
                                  << QStringList{"fb@x", "C:/app/host.exe", "user@x", "send@x", "pwd", "1"};
    }

    void feedback()
    {
        QFETCH(bool, crashed);
        QFETCH(QStringList, expected);
        FeedbackFields f;
        f.receiveEmailOnCrash = u"crash@x";
        f.fbReceiveEmailAccount = u"fb@x";
        f.applicationFilePath = u"C:/app/host.exe";
        f.userEmailInfo = u"user@x";
        f.sendEmailAccount = u"send@x";
        f.sendEmailPwd = u"pwd";
        QCOMPARE(q(FeedbackArguments(f, crashed)), expected);
    }

    void emptyFieldsStayAsEmptyArguments()
    {
        FeedbackFields f;
        f.applicationFilePath = u"/opt/host";
        QCOMPARE(q(FeedbackArguments(f, true)), (QStringList{QString(), "/opt/host", QString(), QString(), QString(), "0"}));
        QCOMPARE(q(FeedbackArguments(f, false)), (QStringList{QString(), "/opt/host", QString(), QString(), QString(), "1"}));
    }

    void updater_data()
    {
        QTest::addColumn<QStringList>("host");
        QTest::addColumn<bool>("silent");
        QTest::addColumn<QString>("server");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("silent, no server") << QStringList{"--a", ""} << true << "" << QStringList{"--a", "", "--silent=true"};
        QTest::newRow("silent, server") << QStringList{"--a"} << true << "srv"
                                        << QStringList{"--a", "--silent=true", "--updateURL=srv"};
        QTest::newRow("dialog, server") << QStringList{"--a"} << false << "srv" << QStringList{"--a", "--updateURL=srv"};
        QTest::newRow("dialog, nothing") << QStringList{} << false << "" << QStringList{};
        QTest::newRow("non-ASCII server") << QStringList{} << false << QString::fromUtf8("https://ü.example/")
                                          << QStringList{QString::fromUtf8("--updateURL=https://ü.example/")};
    }

    void updater()
    {
        QFETCH(QStringList, host);
        QFETCH(bool, silent);
        QFETCH(QString, server);
        QFETCH(QStringList, expected);
        std::vector<std::u16string> hostArguments;
        for (const QString& h : host)
            hostArguments.push_back(u(h));
        QCOMPARE(q(UpdaterArguments(hostArguments, silent, u(server))), expected);
    }

    void programNames()
    {
#if defined(Q_OS_WIN)
        QCOMPARE(QString::fromUtf16(kFeedbackProgram), QStringLiteral("Feedback.exe"));
        QCOMPARE(QString::fromUtf16(kUpdaterProgram), QStringLiteral("appAutoUpdate.exe"));
#else
        QCOMPARE(QString::fromUtf16(kFeedbackProgram), QStringLiteral("Feedback"));
        QCOMPARE(QString::fromUtf16(kUpdaterProgram), QStringLiteral("appAutoUpdate"));
#endif
    }
};

QTEST_GUILESS_MAIN(tst_LaunchArguments)
#include "tst_launcharguments.moc"
