// The high-DPI decision as a table, from screen metrics and options to what is done.
#include <ZVCore/private/PlanHighDpi>

#include <QtTest/QtTest>

#include <clocale>
#include <locale>

using namespace ZVUIFramework;

Q_DECLARE_METATYPE(ScreenMetrics)
Q_DECLARE_METATYPE(HighDpiOptions)

namespace {

ScreenMetrics screen(int w, int h, double dpi, int workW, int workH)
{
    // 527 x 296 mm is a 24-inch panel.
    return ScreenMetrics{w, h, 527, 296, dpi, 0, 0, workW, workH};
}

HighDpiOptions window(int w, int h, bool sync = false)
{
    HighDpiOptions o;
    o.windowWidth = w;
    o.windowHeight = h;
    o.syncRatio = sync;
    return o;
}

// A decimal comma, as some process locales have.
struct CommaPunct : std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
};

} // namespace

class tst_PlanHighDpi : public QObject
{
    Q_OBJECT

private slots:
    void plan_data()
    {
        QTest::addColumn<ScreenMetrics>("metrics");
        QTest::addColumn<HighDpiOptions>("options");
        QTest::addColumn<bool>("qtScaling");
        QTest::addColumn<QString>("factor"); // empty: the variable is not set
        QTest::addColumn<bool>("deleteFile");
        QTest::addColumn<bool>("writeFile");

        QTest::newRow("worked example") << screen(1920, 1080, 144, 1920, 1040) << window(1100, 760, true)
                                        << false << "1.250000" << true << true;
        QTest::newRow("worked example without sync") << screen(1920, 1080, 144, 1920, 1040) << window(1100, 760)
                                                     << false << "1.250000" << true << false;
        QTest::newRow("1.1 stays 1.1") << screen(1366, 768, 105.6, 1366, 728) << window(3000, 2000, true)
                                       << false << "1.100000" << true << false;
        QTest::newRow("0.9 starts at 1.0") << screen(1280, 800, 86.4, 1280, 760) << window(3000, 2000, true)
                                           << false << "1.000000" << true << false;
        QTest::newRow("no window width: clamped system factor") << screen(1920, 1080, 144, 1920, 1040) << HighDpiOptions()
                                                                << false << "1.500000" << true << false;
        HighDpiOptions ignore;
        ignore.ignoreSystemFactor = true;
        QTest::newRow("ignore on 3840x2160 at 150%: Qt scaling first") << screen(3840, 2160, 144, 3840, 2120) << ignore
                                                                       << true << "" << false << false;
        QTest::newRow("ignore on a small screen") << screen(1920, 1080, 144, 1920, 1040) << ignore
                                                  << false << "1" << false << false;
        QTest::newRow("room at 100%: Qt scaling") << screen(1920, 1080, 96, 1920, 1040) << window(1100, 760, true)
                                                  << true << "" << false << false;
        QTest::newRow("steps down to 1.0 and stops") << screen(1920, 1080, 168, 1920, 1040) << window(3000, 2000, true)
                                                     << false << "1.000000" << true << true;
        HighDpiOptions positive = window(1100, 760, true);
        positive.positive = true;
        QTest::newRow("positive rule stops when one side is smaller") << screen(1920, 1080, 144, 1920, 1040) << positive
                                                                      << false << "1.500000" << true << false;
        HighDpiOptions positiveTight = window(1300, 800, true);
        positiveTight.positive = true;
        // 1.5: 1950 > 1920 and 1200 > 1040 → step; 1.25: 1625 < 1920 → stop.
        QTest::newRow("positive rule steps once") << screen(1920, 1080, 144, 1920, 1040) << positiveTight
                                                  << false << "1.250000" << true << true;
        HighDpiOptions half = window(700, 500, true);
        half.expectedRatio = 0.5;
        // 960 x 520 available: 1.5 → 1050 x 750 too big, 1.25 → 875 x 625 too high, 1.0 → fits.
        QTest::newRow("expected ratio") << screen(1920, 1080, 144, 1920, 1040) << half
                                        << false << "1.000000" << true << true;
        HighDpiOptions none = window(1100, 760, true);
        none.expectedRatio = 0.0;
        QTest::newRow("no available area: no fitting") << screen(1920, 1080, 144, 1920, 1040) << none
                                                       << false << "1.500000" << true << false;
        QTest::newRow("zero DPI reads as 96") << screen(1280, 720, 0, 1280, 680) << HighDpiOptions()
                                              << false << "1.000000" << true << false;
    }

    void plan()
    {
        QFETCH(ScreenMetrics, metrics);
        QFETCH(HighDpiOptions, options);
        QFETCH(bool, qtScaling);
        QFETCH(QString, factor);
        QFETCH(bool, deleteFile);
        QFETCH(bool, writeFile);
        const HighDpiPlan p = PlanHighDpi(options, metrics);
        QCOMPARE(p.enableQtScaling, qtScaling);
        QCOMPARE(p.setScaleFactor, !factor.isEmpty());
        QCOMPARE(QString::fromStdString(p.scaleFactor), factor);
        QCOMPARE(p.deleteFactorFile, deleteFile);
        QCOMPARE(p.writeFactorFile, writeFile);
    }

    void workedExampleLog()
    {
        const HighDpiPlan p = PlanHighDpi(window(1100, 760, true), screen(1920, 1080, 144, 1920, 1040));
        QStringList log;
        for (const std::string& line : p.log)
            log.append(QString::fromStdString(line));
        // 527 x 296 mm: ceil(604.4 x 0.03937) = 24 inches.
        QCOMPARE(log, (QStringList{QStringLiteral("ZVCore: Screen info-> 1920  x  1080 24 inch"),
                                   QStringLiteral("ZVCore: SystemDPI-> 144  SystemScaleFactor: 1.5"),
                                   QStringLiteral("x_avaliable 1280  y_avaliable-> 720"),
                                   QStringLiteral("availableGeometry 1920 1040 1"),
                                   QStringLiteral("set QT_SCALE_FACTOR= 1.250000")}));
    }

    void qtScalingLog()
    {
        const HighDpiPlan p = PlanHighDpi(HighDpiOptions(), screen(3840, 2160, 144, 3840, 2120));
        QCOMPARE(QString::fromStdString(p.log.back()), QStringLiteral("Enable High Dpi Scaling"));
        QCOMPARE(QString::fromStdString(p.log.at(2)), QStringLiteral("x_avaliable 2560  y_avaliable-> 1440"));
    }

    void factorTextIgnoresTheProcessLocale()
    {
        const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new CommaPunct));
        const char* cLocale = std::setlocale(LC_NUMERIC, nullptr);
        const std::string savedC = cLocale ? cLocale : "C";
        // A generated locale with a decimal comma, where the system has one.
        const bool haveComma = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") || std::setlocale(LC_NUMERIC, "fr_FR.UTF-8");
        const std::string text = FormatScaleFactor(1.25);
        const HighDpiPlan p = PlanHighDpi(window(1100, 760, true), screen(1920, 1080, 144, 1920, 1040));
        std::setlocale(LC_NUMERIC, savedC.c_str());
        std::locale::global(previous);
        QCOMPARE(QString::fromStdString(text), QStringLiteral("1.250000"));
        QCOMPARE(QString::fromStdString(p.scaleFactor), QStringLiteral("1.250000"));
        if (!haveComma)
            qInfo("no C locale with a decimal comma is generated here; the C++ global locale was tested");
    }

    void formatting_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("1") << 1.0 << "1.000000";
        QTest::newRow("1.1") << 1.1 << "1.100000";
        QTest::newRow("1.75") << 1.75 << "1.750000";
        QTest::newRow("2.5") << 2.5 << "2.500000";
    }

    void formatting()
    {
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(QString::fromStdString(FormatScaleFactor(value)), text);
    }
};

QTEST_GUILESS_MAIN(tst_PlanHighDpi)
#include "tst_planhighdpi.moc"
