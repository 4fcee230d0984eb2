#!/usr/bin/env bash
# Counts the instructions of a piece of work and fails where there are more for each listener than
# there may be.
#
# usage: instructions.sh PROGRAM WORK LISTENERS MOST
set -euo pipefail
program=$1 work=$2 size=$3 most=$4

# shellcheck source=tests/figures/count.sh
. "$(dirname "$0")/count.sh"

counted=$(instructions "$size")
if [ "${counted:-0}" -lt "$size" ]; then
    echo "$work: $counted instructions for $size listeners: nothing was measured" >&2
    exit 1
fi
echo "$work: $((counted / size)) instructions for each of $size listeners, at most $most"
[ "$counted" -le $((size * most)) ]
