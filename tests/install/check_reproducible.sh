#!/bin/sh
# Builds the programs twice, in two places whose paths differ in length, and compares them byte for byte.
#   check_reproducible.sh SOURCE COMPILER PROGRAM...
set -eu
source=$1 compiler=$2
shift 2
with_overview=OFF
case " $* " in *" mpeg_ts_overview "*) with_overview=ON ;; esac

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
# A compiler cache would hand out the first result twice.
export CCACHE_DISABLE=1

build_in() { # place, programs
    place=$1
    shift
    mkdir -p "$place/source"
    (cd "$source" && tar -cf - --exclude=./.git --exclude='./build*' --exclude=./generated .) | tar -xf - -C "$place/source"
    cmake -S "$place/source" -B "$place/build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER="$compiler" \
        -DWITH_OVERVIEW=$with_overview >"$place/log"
    cmake --build "$place/build" --target "$@" --parallel 2 >>"$place/log" 2>&1 || { cat "$place/log"; exit 1; }
}

one="$scratch/a" other="$scratch/another, much longer/place of building"
build_in "$one" "$@"
build_in "$other" "$@"
for program in "$@"; do cmp "$one/build/bin/$program" "$other/build/bin/$program"; done
