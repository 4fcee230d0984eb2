#!/usr/bin/env bash
# Counts the instructions of a piece of work at two sizes and fails where they grow faster than they
# may. Instructions are exact: no load of the machine changes them.
#
# usage: growth.sh PROGRAM WORK SIZE LARGER-SIZE MOST   MOST: the largest ratio, in percent
set -euo pipefail
program=$1 work=$2 size=$3 larger=$4 most=$5

# The user's own defaults stay as they are.
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export XDG_CONFIG_HOME=$folder

instructions() {
    valgrind --tool=callgrind --callgrind-out-file="$folder/out" --collect-atstart=no \
        --toggle-collect='*measured*' "$program" "$work" "$1" >"$folder/log" 2>&1 || {
        cat "$folder/log" >&2
        return 1
    }
    awk '/^(summary|totals):/ { print $2; exit }' "$folder/out"
}

small=$(instructions "$size")
large=$(instructions "$larger")
if [ "${small:-0}" -lt 1000 ]; then
    echo "$work: $small instructions at size $size: nothing was measured" >&2
    exit 1
fi
echo "$work: $small instructions at $size, $large at $larger: $((large * 100 / small)) %," \
    "at most $most %"
[ $((large * 100)) -le $((small * most)) ]
