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

# What every build needs.
ZV_BUILD_PACKAGES=(
    g++ make cmake ninja-build ccache pkg-config
    qtbase5-dev qttools5-dev qttools5-dev-tools
    rapidjson-dev libxcb1-dev
    # Glyphs for the demo's pictures (Latin and Arabic) on a machine without a desktop.
    fonts-dejavu-core
)

# What the test suite needs besides: a private X server for the display lane, and
# setpriv (util-linux) so that permission tests also hold when run as root.
ZV_TEST_PACKAGES=(
    xvfb xauth util-linux lldb
    # The display lane: window manager, compositor, input, window queries, screenshots.
    openbox xcompmgr xdotool x11-utils imagemagick x11-xserver-utils
    # The windows lane: the MinGW-w64 cross compiler and a 64-bit-only Wine.
    g++-mingw-w64-x86-64-posix wine wine64
)

zv_cmake_generator() {
    if command -v ninja >/dev/null 2>&1; then echo "Ninja"; else echo "Unix Makefiles"; fi
}
