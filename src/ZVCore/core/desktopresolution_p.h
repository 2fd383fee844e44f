#ifndef ZVCORE_DESKTOPRESOLUTION_P_H
#define ZVCORE_DESKTOPRESOLUTION_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <ZVCore/zvcore_export.h>

namespace ZVUIFramework {
namespace Platform {

// The desktop's horizontal resolution in physical pixels, or 0 when it cannot be read.
// The skin chooses its 4K pictures from it. One definition per platform:
// desktopresolution_win.cpp, desktopresolution_qt.cpp.
ZVCORE_AUTOTEST_EXPORT int DesktopHorizontalResolution();

} // namespace Platform
} // namespace ZVUIFramework

#endif // ZVCORE_DESKTOPRESOLUTION_P_H
