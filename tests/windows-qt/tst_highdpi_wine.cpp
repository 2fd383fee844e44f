// The high-DPI decision of the Windows build under Wine: the system DPI from the device
// context (Wine's "LogPixels"), the screen from the lane's 1920 x 1080 Xvfb, and the
// core window's device pixel ratio with Qt's own "windows" platform plugin.
#include "probe.h"

#include <QtTest/QtTest>

#include <windows.h>

namespace {

const QStringList kWorkedExampleWindow{QStringLiteral("highdpi:windowWidth=1100,windowHeight=760,syncRatio=true"),
                                       QStringLiteral("highdpi-report"), QStringLiteral("corewindow:build"),
                                       QStringLiteral("corewindow:show:100,100,400,300"),
                                       QStringLiteral("corewindow:report")};

// Where Wine looks for the system DPI: the machine's font settings first, then the
// user's desktop settings.
struct DpiKey
{
    HKEY root;
    const wchar_t* path;
};
const DpiKey kDpiKeys[] = {
    {HKEY_LOCAL_MACHINE, L"System\\CurrentControlSet\\Hardware Profiles\\Current\\Software\\Fonts"},
    {HKEY_CURRENT_USER, L"Control Panel\\Desktop"},
};

// Sets "LogPixels" for the programs started from now on, and puts the old values back
// when it goes.
class LogPixels
{
public:
    explicit LogPixels(DWORD dpi)
    {
        for (const DpiKey& key : kDpiKeys) {
            Saved saved;
            saved.key = key;
            HKEY handle = nullptr;
            if (RegCreateKeyExW(key.root, key.path, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &handle, nullptr)
                != ERROR_SUCCESS)
                continue;
            DWORD size = sizeof saved.value;
            saved.existed = RegQueryValueExW(handle, L"LogPixels", nullptr, nullptr,
                                             reinterpret_cast<BYTE*>(&saved.value), &size)
                            == ERROR_SUCCESS;
            m_ok = RegSetValueExW(handle, L"LogPixels", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&dpi), sizeof dpi)
                       == ERROR_SUCCESS
                   && m_ok;
            RegCloseKey(handle);
            m_saved.append(saved);
        }
    }
    ~LogPixels()
    {
        for (const Saved& saved : m_saved) {
            HKEY handle = nullptr;
            if (RegOpenKeyExW(saved.key.root, saved.key.path, 0, KEY_WRITE, &handle) != ERROR_SUCCESS)
                continue;
            if (saved.existed)
                RegSetValueExW(handle, L"LogPixels", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&saved.value),
                               sizeof saved.value);
            else
                RegDeleteValueW(handle, L"LogPixels");
            RegCloseKey(handle);
        }
    }
    bool ok() const { return m_ok && m_saved.size() == 2; }

private:
    struct Saved
    {
        DpiKey key;
        bool existed = false;
        DWORD value = 0;
    };
    QList<Saved> m_saved;
    bool m_ok = true;
};

ProbeRun runOnWindows(const ProbeFolder& product, const QStringList& commands)
{
    QProcessEnvironment env;
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("windows"));
    return product.run(commands, QDir::rootPath(), env);
}

} // namespace

class tst_HighDpiWine : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QRect screen(0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
        if (screen.size() != QSize(1920, 1080))
            QSKIP(qPrintable(QStringLiteral("the worked example needs a 1920 x 1080 screen; this one is %1 x %2 "
                                            "(scripts/windows.sh test starts one)")
                                 .arg(screen.width())
                                 .arg(screen.height())));
    }

    void workedExample()
    {
        LogPixels dpi(144);
        QVERIFY(dpi.ok());
        ProbeFolder product;
        QVERIFY(product.isValid());
        QVERIFY(product.write(QStringLiteral("factor.tmp"), "9.000000"));
        const ProbeRun run = runOnWindows(product, kWorkedExampleWindow);
        QVERIFY2(run.exitCode == 0, qPrintable(run.log.join(QLatin1Char('\n'))));
        QVERIFY2(run.logged(QStringLiteral("ZVCore: SystemDPI-> 144  SystemScaleFactor: 1.5")),
                 qPrintable(run.log.join(QLatin1Char('\n'))));
        QVERIFY(run.logged(QStringLiteral("set QT_SCALE_FACTOR= 1.250000")));
        const QJsonObject r = run.report(QStringLiteral("highdpi-report"));
        QCOMPARE(r.value(QStringLiteral("scaleFactor")).toString(), QStringLiteral("1.250000"));
        QCOMPARE(r.value(QStringLiteral("qtScaling")).toBool(), false);
        QFile factor(product.file(QStringLiteral("factor.tmp")));
        QVERIFY(factor.open(QIODevice::ReadOnly));
        QCOMPARE(factor.readAll(), QByteArray("1.250000"));
        // Scaled by the factor alone: Qt 6, which follows the system DPI by itself, must
        // not scale by 1.5 as well.
        QCOMPARE(run.report(QStringLiteral("corewindow:report")).value(QStringLiteral("dpr")).toDouble(), 1.25);
    }

    void normalDpiLeavesQtAlone()
    {
        LogPixels dpi(96);
        QVERIFY(dpi.ok());
        ProbeFolder product;
        const ProbeRun run = runOnWindows(product, kWorkedExampleWindow);
        QVERIFY2(run.exitCode == 0, qPrintable(run.log.join(QLatin1Char('\n'))));
        QVERIFY(run.logged(QStringLiteral("ZVCore: SystemDPI-> 96  SystemScaleFactor: 1")));
        QCOMPARE(run.report(QStringLiteral("corewindow:report")).value(QStringLiteral("dpr")).toDouble(), 1.0);
    }
};

QTEST_GUILESS_MAIN(tst_HighDpiWine)
#include "tst_highdpi_wine.moc"
