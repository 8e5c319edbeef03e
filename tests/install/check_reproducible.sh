#!/bin/sh
# Builds the program twice, in two places whose paths differ in length, and compares the two byte for byte.
#   check_reproducible.sh SOURCE COMPILER
set -eu
source=$1 compiler=$2

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
# A compiler cache would hand out the first result twice.
export CCACHE_DISABLE=1

build_in() { # place
    mkdir -p "$1/source"
    (cd "$source" && tar -cf - --exclude=./.git --exclude='./build*' --exclude=./generated .) | tar -xf - -C "$1/source"
    cmake -S "$1/source" -B "$1/build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER="$compiler" >"$1/log"
    cmake --build "$1/build" --target mpeg_ts_analysis --parallel 2 >>"$1/log" 2>&1 || { cat "$1/log"; exit 1; }
}

one="$scratch/a" other="$scratch/another, much longer/place of building"
build_in "$one"
build_in "$other"
cmp "$one/build/bin/mpeg_ts_analysis" "$other/build/bin/mpeg_ts_analysis"
