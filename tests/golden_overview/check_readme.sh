#!/bin/sh
# The summary in the README is the one that the program prints of that sample.
#   check_readme.sh PROGRAM ROOT
set -eu

program=$1
cd "$2"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The block whose first line begins with the path of a sample.
awk '/^```/ { inside = 0; if (!fence) { fence = 1; first = 1 } else fence = 0; next }
     fence && first { inside = /^samples\//; first = 0 }
     inside' README.md >"$work/readme"
sample=$(head -n 1 "$work/readme" | cut -d ' ' -f 1)
[ -n "$sample" ] || { echo "the README has no summary of a sample"; exit 1; }
"$program" --color=never "$sample" | LC_ALL=C diff -a -u "$work/readme" -
