#ifndef ZVCORE_SCREENMETRICS_P_H
#define ZVCORE_SCREENMETRICS_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <ZVCore/zvcore_export.h>
#include <ZVCore/private/PlanHighDpi>

namespace ZVUIFramework {
namespace Platform {

// Makes the process DPI-aware where the system asks for it. One definition per
// platform: screenmetrics_win.cpp, screenmetrics_xcb.cpp, screenmetrics_qt.cpp.
void SetDpiAwareness();

// The primary screen as the high-DPI decision needs it, read without Qt's GUI classes
// (no application object exists yet). False when there is no screen to read; then Qt's
// own scaling is all that can be asked for.
ZVCORE_AUTOTEST_EXPORT bool ReadScreenMetrics(ScreenMetrics& metrics);

} // namespace Platform
} // namespace ZVUIFramework

#endif // ZVCORE_SCREENMETRICS_P_H
