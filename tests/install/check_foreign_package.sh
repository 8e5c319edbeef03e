#!/bin/sh
# Packs the program for another machine, installs the package into a root of its own, and runs it under an emulator.
#   check_foreign_package.sh SOURCE MACHINE BUILD
set -eu
source=$1 build=$3

# shellcheck source=scripts/machines.sh
. "$source/scripts/machines.sh"
describe_machine "$2"
for tool in "$compiler" "$emulator" ninja ccache cpack file dpkg dpkg-deb dpkg-shlibdeps lintian readelf; do
    command -v "$tool" >/dev/null || { echo "$tool is not here: skipped"; exit 77; }
done

mkdir -p "$build"
deb=$(BUILD_DIR=$build "$source/scripts/package" "$machine" 2>"$build/log") || { cat "$build/log"; exit 1; }
echo "$(basename "$deb"): $(($(wc -c <"$deb") / 1024)) KiB"
"$source/packaging/check_deb" "$deb" "$build" "$emulator" -L "/usr/$triplet"
