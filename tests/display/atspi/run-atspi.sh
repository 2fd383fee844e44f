#!/bin/sh
# The demo as an assistive technology sees it: a private X server, a private D-Bus
# session with the accessibility bus and its registry, the demo started in a copy of its
# folder, and titlebar.py reading its tree through AT-SPI and pressing its close button,
# after which the demo must end.
#
#   run-atspi.sh <demo folder> <Qt major version> <work folder>
#
# Exits 77 (skipped) when a tool is missing or on Qt 5 (see below).
set -u
demo_dir=$1 qt_major=$2 work=$3
here=$(cd "$(dirname "$0")" && pwd)

if [ "$qt_major" = 5 ]; then
    # Qt 5.15's bridge connects to the accessibility bus but sends its registration to
    # the registry before that connection is up, and never again (QDBUS_DEBUG shows no
    # Embed call): no assistive technology ever sees a Qt 5.15 application started
    # this way. Qt 6 registers. The names and roles are checked in process on both.
    echo "skipped: Qt 5.15's AT-SPI bridge does not register with the registry (no Embed call)"
    exit 77
fi
for tool in Xvfb dbus-run-session /usr/libexec/at-spi-bus-launcher /usr/bin/python3; do
    if ! command -v "$tool" >/dev/null 2>&1 && [ ! -x "$tool" ]; then
        echo "skipped: $tool is not installed (at-spi2-core, dbus, python3-pyatspi)"
        exit 77
    fi
done
if ! /usr/bin/python3 -c 'import pyatspi' 2>/dev/null; then
    echo "skipped: python3-pyatspi is not installed"
    exit 77
fi

rm -rf "$work"
mkdir -p "$work"
cp -a "$demo_dir" "$work/demo"

# A display of our own: Xvfb writes the number it took.
exec 3>"$work/display"
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
xvfb=$!
exec 3>&-
tries=0
while [ ! -s "$work/display" ] && [ $tries -lt 100 ]; do sleep 0.1; tries=$((tries + 1)); done
if [ ! -s "$work/display" ]; then
    echo "Xvfb did not start"; kill "$xvfb" 2>/dev/null; exit 1
fi
DISPLAY=:$(cat "$work/display")
export DISPLAY

HOME=$work XDG_RUNTIME_DIR=$work timeout 90 dbus-run-session -- sh -c '
    /usr/libexec/at-spi-bus-launcher --launch-immediately >"$1/launcher.log" 2>&1 &
    launcher=$!
    sleep 1
    cd "$1/demo"
    QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 QT_QPA_PLATFORM=xcb ./zvcore-demo >"$1/demo.log" 2>&1 &
    demo=$!
    /usr/bin/python3 "$2/titlebar.py" "Folder Lens"
    status=$?
    if [ $status -eq 0 ]; then
        # The close button, pressed through AT-SPI, ends the demo.
        tries=0
        while kill -0 $demo 2>/dev/null && [ $tries -lt 100 ]; do sleep 0.1; tries=$((tries + 1)); done
        if kill -0 $demo 2>/dev/null; then
            echo "atspi: the demo still runs 10 s after its close button was pressed"
            status=1
        else
            echo "atspi: the demo ended"
        fi
    fi
    kill $demo $launcher 2>/dev/null
    exit $status
' sh "$work" "$here" >"$work/session.log" 2>&1
status=$?
# dbus-daemon may not raise its file limit as root in a container; that is noise.
grep -v "Failed to set fd limit" "$work/session.log"
kill "$xvfb" 2>/dev/null
wait "$xvfb" 2>/dev/null
exit "$status"
