#!/bin/sh
# usage: mistake.sh PROGRAM MISTAKE LINES
# Whether the judge finds a mistake of the library's side, shrinks the script that shows it to so many
# lines at most, finds it in that script again, and nothing in it without the mistake.
set -u
program=$1
mistake=$2
lines=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
    echo "$1" >&2
    cat "$folder/found" >&2
    exit 1
}

"$program" --operations 20000 --patience 0.3 --mistake "$mistake" >"$folder/found" 2>&1
[ $? -eq 1 ] || fail "the mistake isn't found"
grep '^[a-zA-Z][a-zA-Z0-9]* [a-zA-Z0-9 ]*$' "$folder/found" >"$folder/script" ||
    fail "no script is printed"
[ "$(wc -l <"$folder/script")" -le "$lines" ] || fail "the script has more than $lines lines"
"$program" --patience 0.3 --mistake "$mistake" --script "$folder/script" >"$folder/again" 2>&1
[ $? -eq 1 ] || fail "the script doesn't show the mistake"
"$program" --script "$folder/script" >"$folder/without" 2>&1 || fail "the script alone shows something"
