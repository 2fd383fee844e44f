#ifndef ZVCORE_EXECUTABLEDIRECTORY_P_H
#define ZVCORE_EXECUTABLEDIRECTORY_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <ZVCore/zvcore_export.h>

#include <QtCore/QString>

namespace ZVUIFramework {
namespace Platform {

// The directory of the running executable in native separators, with a trailing
// separator. It is the folder a product ships its files in, and it is read from the
// operating system, not from Qt, so that it is known before any application object
// exists. One definition per platform: executabledirectory_win.cpp,
// executabledirectory_linux.cpp, executabledirectory_qt.cpp.
ZVCORE_AUTOTEST_EXPORT QString ExecutableDirectory();

} // namespace Platform
} // namespace ZVUIFramework

#endif // ZVCORE_EXECUTABLEDIRECTORY_P_H
