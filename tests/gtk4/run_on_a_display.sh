#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Runs a program of the tests' on an X server of its own, without a session bus and with nothing of
# the user's settings. Ends what it started.
#
# usage: run_on_a_display.sh PROGRAM [ARGUMENT...]
# Exit status: the program's.
set -u

# What only lists its tests needs no display.
case " $* " in
*" --gtest_list_tests "*) exec "$@" ;;
esac

work=$(mktemp -d) || exit 1
xvfb=
clean_up() {
    trap - EXIT INT TERM
    if [ -n "$xvfb" ]; then
        kill "$xvfb" 2>/dev/null
        wait "$xvfb" 2>/dev/null
    fi
    rm -rf "$work"
}
trap clean_up EXIT
trap 'exit 1' INT TERM

# Xvfb chooses a free display and says which one when it is ready.
mkfifo "$work/display" || exit 1
Xvfb -displayfd 3 -screen 0 1600x1400x24 -nolisten tcp 3>"$work/display" >"$work/xvfb.log" 2>&1 &
xvfb=$!
if ! read -r display <"$work/display"; then
    echo "Xvfb doesn't start:" >&2
    cat "$work/xvfb.log" >&2
    exit 1
fi

mkdir "$work/home" || exit 1
export DISPLAY=":$display" HOME="$work/home" XDG_CONFIG_HOME="$work/home" \
    XDG_DATA_HOME="$work/home" XDG_CACHE_HOME="$work/home" \
    GDK_BACKEND=x11 GSK_RENDERER=cairo GTK_A11Y=none GSETTINGS_BACKEND=memory \
    DBUS_SESSION_BUS_ADDRESS="unix:path=$work/nobody"
unset WAYLAND_DISPLAY GTK_THEME XDG_CURRENT_DESKTOP
# Before a test's own time is over: whoever ends it then leaves this no time to clean up.
timeout --foreground --kill-after=5 110 "$@"
