#!/usr/bin/env bash
# Counts the instructions of a piece of work at two sizes and fails where they grow faster than they
# may.
#
# usage: growth.sh PROGRAM WORK SIZE LARGER-SIZE MOST   MOST: the largest ratio, in percent
set -euo pipefail
program=$1 work=$2 size=$3 larger=$4 most=$5

# shellcheck source=tests/figures/count.sh
. "$(dirname "$0")/count.sh"

small=$(instructions "$size")
large=$(instructions "$larger")
if [ "${small:-0}" -lt 1000 ]; then
    echo "$work: $small instructions at size $size: nothing was measured" >&2
    exit 1
fi
echo "$work: $small instructions at $size, $large at $larger: $((large * 100 / small)) %," \
    "at most $most %"
[ $((large * 100)) -le $((small * most)) ]
