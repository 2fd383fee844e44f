#ifndef ZVCORE_PLANHIGHDPI_H
#define ZVCORE_PLANHIGHDPI_H

// The high-DPI decision as a plain computation: what the screen reports goes in, what to
// do before the application object exists comes out. No Qt here, since it runs before
// Qt is set up and the Windows build tests it on its own.

#include <ZVCore/zvcore_export.h>

#include <string>
#include <vector>

namespace ZVUIFramework {

struct ScreenMetrics
{
    int horzRes;      // physical pixels
    int vertRes;
    int widthMM;      // physical size
    int heightMM;
    double systemDpi; // the system's logical DPI (96 = 100 %)
    int workLeft;     // the work area, physical pixels
    int workTop;
    int workRight;
    int workBottom;
};

struct HighDpiOptions
{
    bool ignoreSystemFactor = false;
    int windowWidth = -1;   // design size of the main window, logical pixels
    int windowHeight = -1;
    double expectedRatio = 1.0; // share of the work area the window may take
    bool positive = false;      // the second fitting rule
    bool syncRatio = false;     // write the chosen factor to the factor file
};

struct HighDpiPlan
{
    bool enableQtScaling = false;  // Qt::AA_EnableHighDpiScaling
    bool setScaleFactor = false;   // QT_SCALE_FACTOR = scaleFactor
    std::string scaleFactor;       // fixed notation, six decimals
    bool deleteFactorFile = false;
    bool writeFactorFile = false;  // with scaleFactor as content
    std::vector<std::string> log;  // the debug lines, in order
};

// Decides how Qt scales: Qt's own high-DPI scaling when the screen has room enough at
// the system factor, else a fixed factor, reduced in steps of 0.25 until a window of the
// design size fits the work area.
ZVCORE_AUTOTEST_EXPORT HighDpiPlan PlanHighDpi(const HighDpiOptions& options, const ScreenMetrics& metrics);

// The factor as the environment variable and the factor file hold it: fixed notation,
// six decimals, '.' whatever the process locale.
ZVCORE_AUTOTEST_EXPORT std::string FormatScaleFactor(double factor);

} // namespace ZVUIFramework

#endif // ZVCORE_PLANHIGHDPI_H
