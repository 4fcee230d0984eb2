#!/bin/sh
# What the shared library shows to the outside: its soname, no symbol but the library's own, and a
# size that a program can afford.
# usage: shared_library.sh PREFIX WORK LARGEST_KIB
set -eu
prefix=$1 work=$2 largest_kib=$3
failed=0

library=$(find "$prefix" -name 'libZelStyleKit.so.1.0.0')
[ -f "$library" ] || { echo "no libZelStyleKit.so.1.0.0 below $prefix"; exit 1; }
for name in libZelStyleKit.so libZelStyleKit.so.1; do
    [ -L "$(dirname "$library")/$name" ] || { echo "no link $name beside the library"; failed=1; }
done

soname=$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
[ "$soname" = libZelStyleKit.so.1 ] || { echo "its soname is '$soname'"; failed=1; }

# Names inside the versioned namespace, and what the compiler makes for classes in it: tables,
# type information, thunks.
mkdir -p "$work"
nm -D --defined-only "$library" | awk '{print $NF}' | sort -u > "$work/symbols"
[ -s "$work/symbols" ] || { echo "it shows no symbol at all"; failed=1; }
grep -Ev '^_Z(T[VTIS]|GV|Thn[0-9]+_|Tv0_n[0-9]+_)?N[VKRO]*3zel2v1' "$work/symbols" |
    c++filt > "$work/foreign" || true
if [ -s "$work/foreign" ]; then
    echo "$(wc -l < "$work/foreign") symbols that are not its own:"
    head -20 "$work/foreign"
    failed=1
fi

strip -o "$work/stripped" "$library"
size=$(wc -c < "$work/stripped")
echo "stripped size: $((size / 1024)) KiB, symbols: $(wc -l < "$work/symbols")"
[ "$size" -lt $((largest_kib * 1024)) ] || { echo "more than $largest_kib KiB"; failed=1; }
exit "$failed"
