#!/bin/sh
# Builds and runs the consumers with what pkg-config says and nothing else.
# usage: pkg_config_consumer.sh PREFIX WORK COMPILER SOURCES LINKAGE DISPLAY_COMMAND [COMPONENT...]
# Exit status: 77 where one of them needs a display and DISPLAY_COMMAND is empty.
set -eu
prefix=$1 work=$2 compiler=$3 sources=$4 linkage=$5 on_display=$6
shift 6
skipped=0

# Only this folder and what the compiler finds by itself: a copy of the library that the system has
# must not pass for this one.
pc_folder=$(dirname "$(find "$prefix" -name zelstylekit.pc)")
[ "$(PKG_CONFIG_LIBDIR=$pc_folder pkg-config --modversion zelstylekit)" = 1.0.0 ]
PKG_CONFIG_PATH=$pc_folder
export PKG_CONFIG_PATH
LD_LIBRARY_PATH=$(pkg-config --variable=libdir zelstylekit)
export LD_LIBRARY_PATH

case "$linkage $(pkg-config --cflags zelstylekit)" in
static*-DZELSTYLEKIT_STATIC*) static=--static ;;
shared*-DZELSTYLEKIT_STATIC*) echo "a shared library that calls itself static" && exit 1 ;;
shared*) static= ;;
*) echo "a static library that calls itself shared" && exit 1 ;;
esac

# build_and_run MODULE SOURCE [COMMAND...]: the program is run by the command.
build_and_run() {
    module=$1 source=$2
    shift 2
    flags=$(pkg-config --cflags --libs ${static:+"$static"} "$module")
    echo "$module: $flags"
    case $flags in
    *"$prefix"*) ;;
    *) echo "$module is not the one below $prefix" && exit 1 ;;
    esac
    # The flags are a list of words.
    # shellcheck disable=SC2086
    "$compiler" -std=c++20 "$source" -o "$work/program" $flags
    status=0
    "$@" "$work/program" || status=$?
    case $status in
    0) ;;
    77) skipped=77 ;;
    *) exit "$status" ;;
    esac
}

rm -rf "$work"
mkdir -p "$work"
build_and_run zelstylekit "$sources/consumer/host.cpp"
build_and_run zelstylekit "$sources/consumer/early.cpp"
for component in "$@"; do
    set --
    if [ "$component" = Gtk4 ] && [ -n "$on_display" ]; then
        set -- "$on_display"
    fi
    build_and_run "zelstylekit-$(echo "$component" | tr '[:upper:]' '[:lower:]')" \
        "$sources/component/$component.cpp" "$@"
done
exit "$skipped"
