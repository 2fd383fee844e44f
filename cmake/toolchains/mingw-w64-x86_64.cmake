# Cross-compiles for 64-bit Windows with the MinGW-w64 POSIX-thread compilers of Debian
# (g++-mingw-w64-x86-64-posix). Programs run through Wine, so that try_run, ctest and
# add_custom_command can start the .exe files they produce:
#
#   cmake -S <dir> -B <build> -DCMAKE_TOOLCHAIN_FILE=<this file>
#
# Qt is not available for this target here; the file suits Qt-free code only.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(ZVCORE_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${ZVCORE_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZVCORE_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${ZVCORE_MINGW_TRIPLET}-windres)

# Headers and libraries come from the MinGW sysroot only; programs (the build's own
# tools) from the host.
set(CMAKE_FIND_ROOT_PATH /usr/${ZVCORE_MINGW_TRIPLET})
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

# The runtime of the compiler goes into each program, so that nothing needs
# libgcc_s_seh-1.dll, libstdc++-6.dll or libwinpthread-1.dll beside it under Wine.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static-libgcc -static-libstdc++ -static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static-libgcc -static-libstdc++")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static-libgcc -static-libstdc++")
