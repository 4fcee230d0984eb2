#!/bin/sh
# usage: mistake.sh PROGRAM MISTAKE
# Whether the judge finds a mistake of the library's side, finds it again in the script that it
# leaves, and nothing in that script without the mistake.
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
"$1" --operations 20000 --mistake "$2" && exit 1
"$1" --mistake "$2" model-script-* && exit 1
"$1" model-script-*
