// The lane links the library's Qt-free sources statically into each test program, so
// there is nothing to export or import: the export macros of the generated header are
// empty here, and only deprecation keeps its meaning.
#ifndef ZVCORE_EXPORT_H
#define ZVCORE_EXPORT_H

#define ZVCORE_EXPORT
#define ZVCORE_NO_EXPORT
#define ZVCORE_AUTOTEST_EXPORT
#define ZVCORE_DEPRECATED __attribute__((__deprecated__))
#define ZVCORE_DEPRECATED_EXPORT ZVCORE_DEPRECATED
#define ZVCORE_DEPRECATED_NO_EXPORT ZVCORE_DEPRECATED

#endif // ZVCORE_EXPORT_H
