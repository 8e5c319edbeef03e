#!/bin/sh
# Builds the programs once more, in another place whose path is longer, and compares them with those of this build byte for byte.
#   check_reproducible.sh SOURCE BUILD COMPILER FLAGS PROGRAM...
set -eu
source=$1 build=$2 compiler=$3 flags=$4
shift 4
with_overview=OFF
case " $* " in *" mpeg_ts_overview "*) with_overview=ON ;; esac

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
# A compiler cache would hand out the first result again.
export CCACHE_DISABLE=1

place="$scratch/another, much longer/place of building"
mkdir -p "$place/source"
(cd "$source" && tar -cf - --exclude=./.git --exclude='./build*' --exclude=./generated .) | tar -xf - -C "$place/source"
cmake -S "$place/source" -B "$place/build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$flags" -DWITH_OVERVIEW=$with_overview >"$place/log"
cmake --build "$place/build" --target "$@" --parallel 2 >>"$place/log" 2>&1 || { cat "$place/log"; exit 1; }

for program in "$@"; do cmp "$build/bin/$program" "$place/build/bin/$program"; done
