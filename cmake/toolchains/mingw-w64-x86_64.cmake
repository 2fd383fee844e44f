# Cross-compiles for 64-bit Windows with the MinGW-w64 POSIX-thread compilers of Debian
# (g++-mingw-w64-x86-64-posix). Programs run through Wine, so that try_run, ctest and
# add_custom_command can start the .exe files they produce:
#
#   cmake -S <dir> -B <build> -DCMAKE_TOOLCHAIN_FILE=<this file>
#
# With Qt for Windows (scripts/qt-windows.sh builds one), name its prefix too:
#
#   cmake ... -DCMAKE_PREFIX_PATH=<qt prefix> [-DQT_HOST_PATH=/usr for Qt 6]
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(ZVCORE_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${ZVCORE_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZVCORE_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${ZVCORE_MINGW_TRIPLET}-windres)

# Headers and libraries come from the MinGW sysroot only; programs (the build's own
# tools) from the host.
set(CMAKE_FIND_ROOT_PATH /usr/${ZVCORE_MINGW_TRIPLET} ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Debian's 64-bit-only install has /usr/bin/wine (a wrapper that picks the loader) and
# the loader itself outside PATH in /usr/lib/wine.
find_program(ZVCORE_WINE NAMES wine wine64 PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(ZVCORE_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${ZVCORE_WINE}")
endif()

# Programs and libraries use the compiler's runtime DLLs (libgcc_s_seh-1.dll,
# libstdc++-6.dll, libwinpthread-1.dll), as Qt for Windows built with these compilers
# does; a project that wants them linked in adds -static-libgcc -static-libstdc++ itself.
