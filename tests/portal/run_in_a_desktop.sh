#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Runs a program in a small desktop of its own: an X server, a session bus, on it the desktop portal
# with its GTK backend, and settings that nobody else sees. Ends everything that it started.
#
# usage: run_in_a_desktop.sh [--without-display] PROGRAM [ARGUMENT...]
# Exit status: the program's; 77 where something that a desktop needs isn't installed.
set -u

if [ "${1:-}" = --inside-the-session ]; then
    shift
    # Without the settings daemon's module, settings silently stay inside each process; then a plain
    # file has to do.
    for backend in dconf keyfile; do
        export GSETTINGS_BACKEND=$backend
        gsettings set org.gnome.desktop.interface color-scheme prefer-dark
        if [ "$(gsettings get org.gnome.desktop.interface color-scheme)" = "'prefer-dark'" ]; then
            gsettings set org.gnome.desktop.interface color-scheme default
            echo "Settings are kept by: $backend"
            exec "$@"
        fi
    done
    echo "Settings don't reach from one process to another" >&2
    exit 1
fi

skip() {
    echo "SKIPPED: $1"
    exit 77
}

with_display=yes
if [ "$1" = --without-display ]; then
    with_display=no
    shift
fi

for program in Xvfb dbus-run-session gsettings timeout; do
    command -v "$program" >/dev/null || skip "$program is not installed"
done
for service in org.freedesktop.portal.Desktop org.freedesktop.impl.portal.desktop.gtk; do
    [ -e "/usr/share/dbus-1/services/$service.service" ] || skip "$service is not installed"
done
gsettings list-keys org.gnome.desktop.interface 2>/dev/null | grep -qx color-scheme ||
    skip "the desktop's settings have no colour scheme"

work=$(mktemp -d) || exit 1
xvfb=

# Whatever the session has started carries its folder in its environment.
of_this_session() {
    grep -lzxF "ZEL_TEST_DESKTOP=$work" /proc/[0-9]*/environ 2>/dev/null | tr -dc '0-9\n'
}

clean_up() {
    trap - EXIT INT TERM
    for signal in TERM KILL; do
        for id in $(of_this_session) $xvfb; do
            kill -s "$signal" "$id" 2>/dev/null
        done
        rounds=0
        while [ $rounds -lt 50 ] && [ -n "$(of_this_session)" ]; do
            rounds=$((rounds + 1))
            sleep 0.1
        done
    done
    [ -z "$xvfb" ] || wait "$xvfb" 2>/dev/null
    # The portal for documents mounts a file system.
    if [ -e "$work/run/doc" ] && grep -qF " $work/run/doc " /proc/mounts; then
        fusermount3 -u "$work/run/doc" 2>/dev/null || fusermount -u "$work/run/doc"
    fi
    rm -rf --one-file-system "$work"
}
trap clean_up EXIT
trap 'exit 1' INT TERM

mkdir -m 700 "$work/home" "$work/run" "$work/config" "$work/data" "$work/cache" "$work/state" || exit 1
export HOME="$work/home" XDG_RUNTIME_DIR="$work/run" XDG_CONFIG_HOME="$work/config" \
    XDG_DATA_HOME="$work/data" XDG_CACHE_HOME="$work/cache" XDG_STATE_HOME="$work/state" \
    XDG_CURRENT_DESKTOP=gnome NO_AT_BRIDGE=1
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS XDG_DATA_DIRS XDG_CONFIG_DIRS XAUTHORITY

if [ $with_display = yes ]; then
    # Xvfb chooses a free display and says which one when it is ready.
    mkfifo "$work/display" || exit 1
    Xvfb -displayfd 3 -screen 0 1600x1200x24 -nolisten tcp 3>"$work/display" \
        >"$work/xvfb.log" 2>&1 &
    xvfb=$!
    if ! read -r display <"$work/display"; then
        echo "Xvfb doesn't start:" >&2
        cat "$work/xvfb.log" >&2
        exit 1
    fi
    export DISPLAY=":$display"
fi

export ZEL_TEST_DESKTOP="$work"
timeout --kill-after=10 90 dbus-run-session -- "$0" --inside-the-session "$@" &
session=$!
unset ZEL_TEST_DESKTOP
wait $session
