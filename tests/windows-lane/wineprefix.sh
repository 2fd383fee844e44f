# Sourced by the scripts that run Windows programs under Wine:
#   zv_start_xvfb <scratch folder> <screen>  starts a private Xvfb (width x height x depth),
#                                            sets DISPLAY and xvfb_pid
#   zv_wine_prefix <scratch folder>          makes $WINEPREFIX ready, once
#
# The prefix is this lane's own: "owned" is written before wineboot starts, "ready" once
# it is done. An owned prefix that is not ready was cut short and is made anew; a folder
# that is not ours is never removed. Needs DISPLAY (Wine's X11 driver), WINEPREFIX and
# WINEDEBUG set by the caller.
zv_start_xvfb() {
    # Xvfb picks a free display and writes its number to the descriptor given.
    Xvfb -displayfd 3 -screen 0 "$2" -nolisten tcp -noreset 3>"$1/display" 2>"$1/xvfb.log" &
    xvfb_pid=$!
    tries=0
    while ! grep -q '^[0-9][0-9]*$' "$1/display" 2>/dev/null; do
        tries=$((tries + 1))
        if [ $tries -gt 200 ] || ! kill -0 "$xvfb_pid" 2>/dev/null; then
            echo "Xvfb reported no display:" >&2
            cat "$1/xvfb.log" >&2
            return 1
        fi
        sleep 0.1
    done
    export DISPLAY=":$(cat "$1/display")"
}

zv_wine_prefix() {
    owned="$WINEPREFIX/.zvcore-prefix-owned"
    ready="$WINEPREFIX/.zvcore-prefix-ready"
    [ -f "$ready" ] && return 0
    if [ -d "$WINEPREFIX" ] && [ ! -f "$owned" ] && [ -n "$(ls -A "$WINEPREFIX")" ]; then
        echo "$WINEPREFIX exists and is not a prefix of this lane; not touching it" >&2
        return 1
    fi
    echo "creating the Wine prefix (the first start takes a while)"
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX" && touch "$owned" || return 1
    started=$(date +%s)
    wineboot -i >"$1/wineboot.log" 2>&1
    wineserver -w
    # A crash that no filter handles prints a backtrace and ends the process, instead of
    # waiting in a dialog on a display nobody looks at.
    wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >>"$1/wineboot.log" 2>&1
    wineserver -w
    if [ ! -f "$WINEPREFIX/system.reg" ]; then
        echo "wineboot did not create the prefix:" >&2
        cat "$1/wineboot.log" >&2
        return 1
    fi
    touch "$ready"
    echo "Wine prefix ready after $(( $(date +%s) - started )) s"
}
