#include "planhighdpi.h"

#include <cmath>
#include <iomanip>
#include <locale>
#include <sstream>

namespace ZVUIFramework {

namespace {

// The debug lines read as a debug stream writes its items: separated by one blank.
std::string line(std::initializer_list<std::string> items)
{
    std::string out;
    for (const std::string& item : items) {
        if (!out.empty())
            out += ' ';
        out += item;
    }
    return out;
}

std::string number(double value)
{
    // Like a debug stream prints a double: the shortest form that reads back the same.
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << std::setprecision(6) << value;
    return out.str();
}

} // namespace

std::string FormatScaleFactor(double factor)
{
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << std::fixed << std::setprecision(6) << factor;
    return out.str();
}

HighDpiPlan PlanHighDpi(const HighDpiOptions& options, const ScreenMetrics& metrics)
{
    HighDpiPlan plan;

    const double systemDpi = metrics.systemDpi > 0 ? metrics.systemDpi : 96.0;
    double system = systemDpi / 96.0;
    if (system == 0.0)
        system = 1.0;
    double factor = system < 1.0 ? 1.0 : system;

    const double w = metrics.widthMM;
    const double h = metrics.heightMM;
    const int inches = int(std::ceil(std::sqrt(w * w + h * h) * 0.03937));
    plan.log.push_back(line({"ZVCore: Screen info->", std::to_string(metrics.horzRes), " x ", std::to_string(metrics.vertRes),
                             std::to_string(inches), "inch"}));
    plan.log.push_back(line({"ZVCore: SystemDPI->", number(systemDpi), " SystemScaleFactor:", number(factor)}));

    const int xAvailable = int(metrics.horzRes / factor);
    const int yAvailable = int(metrics.vertRes / factor);
    plan.log.push_back(line({"x_avaliable", std::to_string(xAvailable), " y_avaliable->", std::to_string(yAvailable)}));

    // A screen with room for 1280 x 960 logical pixels at the system factor lets Qt
    // scale by itself; this is decided before the host's wish to ignore the factor.
    if (xAvailable >= 1280 && yAvailable >= 960) {
        plan.log.push_back("Enable High Dpi Scaling");
        plan.enableQtScaling = true;
        return plan;
    }
    if (options.ignoreSystemFactor) {
        plan.setScaleFactor = true;
        plan.scaleFactor = "1";
        return plan;
    }

    plan.deleteFactorFile = true;
    const double base = factor;
    const int availableWidth = int((metrics.workRight - metrics.workLeft) * options.expectedRatio);
    const int availableHeight = int((metrics.workBottom - metrics.workTop) * options.expectedRatio);
    plan.log.push_back(line({"availableGeometry", std::to_string(availableWidth), std::to_string(availableHeight),
                             number(options.expectedRatio)}));

    if (availableWidth >= 1 && availableHeight >= 1 && options.windowWidth >= 1 && options.windowHeight >= 1) {
        for (;;) {
            const double width = options.windowWidth * factor;
            const double height = options.windowHeight * factor;
            const bool fits = options.positive ? (availableWidth > width || availableHeight > height)
                                               : (width <= availableWidth && height <= availableHeight);
            if (fits || factor < 1.25)
                break;
            factor -= 0.25;
        }
    }

    plan.scaleFactor = FormatScaleFactor(factor);
    plan.setScaleFactor = true;
    plan.log.push_back(line({"set QT_SCALE_FACTOR=", plan.scaleFactor}));
    plan.writeFactorFile = options.syncRatio && base - factor > 0.0001;
    return plan;
}

} // namespace ZVUIFramework
