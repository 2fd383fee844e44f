# Sourced by run.sh and test.sh: makes sure the Debian packages a build needs are there.
#   zv_require <package>...
# As root the missing ones are installed with apt-get; otherwise the script stops and
# names them.

zv_missing() {
    local pkg missing=()
    for pkg in "$@"; do
        if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
            missing+=("$pkg")
        fi
    done
    echo "${missing[@]}"
}

zv_require() {
    if ! command -v dpkg-query >/dev/null 2>&1; then
        echo "zvcore: this script installs Debian packages and needs dpkg; install these by other means: $*" >&2
        return 0
    fi
    local missing
    missing=$(zv_missing "$@")
    [ -z "$missing" ] && return 0
    if [ "$(id -u)" -ne 0 ]; then
        echo "zvcore: these Debian packages are missing: $missing" >&2
        echo "zvcore: install them as root, then run this command again:" >&2
        echo "    apt-get install -y $missing" >&2
        exit 2
    fi
    echo "==> Installing $missing"
    export DEBIAN_FRONTEND=noninteractive
    # A fresh machine has no package lists yet; an older machine may have stale ones.
    apt-get update -q || { echo "zvcore: apt-get update failed" >&2; exit 2; }
    # shellcheck disable=SC2086
    apt-get install -y -q --no-install-recommends $missing \
        || { echo "zvcore: apt-get install failed for: $missing" >&2; exit 2; }
}

# What every build needs, besides one of the two Qt versions below.
ZV_BUILD_PACKAGES=(
    g++ make cmake ninja-build ccache pkg-config
    rapidjson-dev libxcb1-dev
    # Glyphs for the demo's pictures (Latin and Arabic) on a machine without a desktop.
    fonts-dejavu-core
)

# Qt 5.15: Core, Gui, Widgets, Xml, Test, and lrelease.
ZV_QT5_PACKAGES=(qtbase5-dev qttools5-dev qttools5-dev-tools)
# Qt 6: the same modules; Qt 6's CMake files for Gui look for the OpenGL headers.
ZV_QT6_PACKAGES=(qt6-base-dev qt6-tools-dev qt6-l10n-tools qt6-tools-dev-tools libgl-dev)

# zv_qt_packages <5|6>: the package list of that Qt, by name.
zv_qt_packages() {
    if [ "$1" = 5 ]; then echo "${ZV_QT5_PACKAGES[@]}"; else echo "${ZV_QT6_PACKAGES[@]}"; fi
}

# zv_pick_qt: the Qt major version a build uses when the caller names none, from
# ZVCORE_QT_MAJOR (5 or 6) when set: Qt 6 when it is installed or can be (as root), else
# Qt 5.
zv_pick_qt() {
    local major=${ZVCORE_QT_MAJOR:-}
    if [ -n "$major" ]; then
        if [ "$major" != 5 ] && [ "$major" != 6 ]; then
            echo "zvcore: ZVCORE_QT_MAJOR is '$major': it must be 5 or 6" >&2
            exit 2
        fi
        echo "$major"
    elif [ -z "$(zv_missing "${ZV_QT6_PACKAGES[@]}")" ] || [ "$(id -u)" -eq 0 ]; then
        echo 6
    elif [ -z "$(zv_missing "${ZV_QT5_PACKAGES[@]}")" ]; then
        echo 5
    else
        echo 6
    fi
}

# What the test suite needs besides: a private X server for the display lane, and
# setpriv (util-linux) so that permission tests also hold when run as root.
ZV_TEST_PACKAGES=(
    xvfb xauth util-linux lldb
    # The display lane: window manager, compositor, input, window queries, screenshots.
    openbox xcompmgr xdotool x11-utils imagemagick x11-xserver-utils
    # The display lane's accessibility check: a private D-Bus session, the AT-SPI bus
    # and registry, and the Python bindings a screen reader reads them with.
    at-spi2-core dbus dbus-bin python3-pyatspi
    # The windows lane: the MinGW-w64 cross compiler and a 64-bit-only Wine.
    g++-mingw-w64-x86-64-posix wine wine64
)

zv_cmake_generator() {
    if command -v ninja >/dev/null 2>&1; then echo "Ninja"; else echo "Unix Makefiles"; fi
}

# zv_qt6_host_cmake_dir: the folder of the host Qt 6's CMake packages, which a cross build
# against Qt 6 names as QT_HOST_PATH_CMAKE_DIR (Debian keeps them under the multiarch
# library folder, not under QT_HOST_PATH/lib/cmake).
zv_qt6_host_cmake_dir() {
    local info
    info=$(dpkg -L qt6-base-dev 2>/dev/null | grep -m 1 '/Qt6HostInfo/Qt6HostInfoConfig.cmake$' || true)
    if [ -n "$info" ]; then
        dirname "$(dirname "$info")"
    else
        echo "/usr/lib/$(gcc -print-multiarch 2>/dev/null || echo x86_64-linux-gnu)/cmake"
    fi
}
