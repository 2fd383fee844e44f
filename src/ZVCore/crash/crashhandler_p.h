#ifndef ZVCORE_CRASHHANDLER_P_H
#define ZVCORE_CRASHHANDLER_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

#include <ZVCore/ZVApplicationInfo>

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace ZVUIFramework {
namespace Crash {

// Installs the platform's crash handler. One definition per platform:
// crashhandler_win.cpp, crashhandler_posix.cpp.
void Install();

// The feedback program and its crash-mode arguments. A signal handler cannot build a
// command line, so it starts what was prepared here, whenever a field changed.
void PrepareFeedback(const QString& program, const QStringList& arguments);

// The context if it has been built; a crash never builds it.
ZVApplicationInfo* ExistingContext();

// The steps of a crash report that need Qt, after the dump and the feedback launch:
// the "AppCrashed" property, the analytics event, the log line, the host callback.
void RunHostSteps(EXCEPTION_POINTERS* info);

} // namespace Crash
} // namespace ZVUIFramework

#endif // ZVCORE_CRASHHANDLER_P_H
