# Sourced: counts the instructions of a piece of work. They are exact: no load of the machine changes
# them. Needs: $program, $work
# shellcheck shell=bash disable=SC2154

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
