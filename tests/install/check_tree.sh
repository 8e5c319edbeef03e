#!/bin/sh
# Installs a build into a temporary root and uses it as a stranger would: builds the example against the installed
# library by CMake and by pkg-config, and compares what it prints.
#   check_tree.sh BUILD SOURCE COMPILER FLAGS
set -eu
build=$1 source=$2 compiler=$3 flags=$4

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "$*"; exit 1; }

cmake --install "$build" --prefix "$scratch/first place" >/dev/null
# Nothing in the tree may know where it was built or installed, but for counts of coverage, which go to the build, and for
# reports of sanitizers, which name the source.
root="$scratch/second"
mv "$scratch/first place" "$root"
case $flags in
*coverage* | *-fsanitize*) ;;
*) if grep -rlF -e "$scratch" -e "$build" "$root"; then fail "the files above name the place of the build"; fi ;;
esac

for file in bin/mpeg_ts_analysis share/man/man1/mpeg_ts_analysis.1 \
    share/bash-completion/completions/mpeg_ts_analysis share/zsh/site-functions/_mpeg_ts_analysis \
    share/fish/vendor_completions.d/mpeg_ts_analysis.fish share/doc/mpeg_ts_analysis/LICENSE; do
    [ -f "$root/$file" ] || fail "$file is not installed"
done

# Every switch that the program knows is in its manual and in each completion.
"$root/bin/mpeg_ts_analysis" --help 2>"$scratch/usage" && fail "--help ended with status 0"
switches=$(sed -n 's/^    -\([a-z][a-z-]*\).*/\1/p' "$scratch/usage")
[ "$(echo "$switches" | wc -w)" -ge 20 ] || fail "the usage text lists too few switches: $switches"
for switch in $switches pcr-drift-correction; do
    grep -qE -- "Fl $switch( |$)|, Fl $switch( |$)" "$root/share/man/man1/mpeg_ts_analysis.1" ||
        fail "the manual does not explain -$switch"
    for completion in bash-completion/completions/mpeg_ts_analysis zsh/site-functions/_mpeg_ts_analysis \
        fish/vendor_completions.d/mpeg_ts_analysis.fish; do
        grep -qE -- "(^|[^a-z-])-{0,2}$switch([^a-z-]|$)" "$root/share/$completion" ||
            fail "$completion does not offer -$switch"
    done
done

# So it is with the overview, where it is built.
if grep -q '^WITH_OVERVIEW:BOOL=ON' "$build/CMakeCache.txt"; then
    for file in bin/mpeg_ts_overview share/mpeg_ts_overview/overview.schema.json; do
        [ -f "$root/$file" ] || fail "$file is not installed"
    done
    options=$("$root/bin/mpeg_ts_overview" --help | grep -oE -- '--[a-z-]+' | sed 's/^--//' | sort -u)
    [ "$(echo "$options" | wc -w)" -ge 14 ] || fail "the usage text lists too few options: $options"
    limits=$("$root/bin/mpeg_ts_overview" --help | grep -oE '[a-z]+(_[a-z]+)+' | grep -v '^mpeg_ts' | sort -u)
    [ "$(echo "$limits" | wc -w)" -eq 10 ] || fail "the usage text does not list ten limits: $limits"
    for option in $options; do
        grep -qE -- "Fl -$option( |$)" "$root/share/man/man1/mpeg_ts_overview.1" || fail "the manual does not explain --$option"
    done
    for limit in $limits; do
        grep -qE "^\.It Cm $limit$" "$root/share/man/man1/mpeg_ts_overview.1" || fail "the manual does not explain $limit"
    done
    for completion in bash-completion/completions/mpeg_ts_overview zsh/site-functions/_mpeg_ts_overview \
        fish/vendor_completions.d/mpeg_ts_overview.fish; do
        for word in $options $limits; do
            grep -qE -- "(^|[^a-z_-])-{0,2}$word([^a-z_-]|$)" "$root/share/$completion" || fail "$completion does not offer $word"
        done
    done
    # And with mpeg_ts_archive, whose options are those of its commands.
    for command in plan run status catalogue; do
        "$root/bin/mpeg_ts_archive" "$command" --help >"$scratch/help" || fail "mpeg_ts_archive $command --help fails"
        for word in $command $(grep -oE -- '--[a-z]+' "$scratch/help" | sed 's/^--//' | sort -u); do
            grep -qE -- "(Fl -|Cm |Ar |Fl )$word( |$)" "$root/share/man/man1/mpeg_ts_archive.1" || [ "$word" = help ] ||
                fail "its manual does not explain $word"
            for completion in bash-completion/completions/mpeg_ts_archive zsh/site-functions/_mpeg_ts_archive \
                fish/vendor_completions.d/mpeg_ts_archive.fish; do
                grep -qE -- "(^|[^a-z-])-{0,2}$word([^a-z-]|$)" "$root/share/$completion" || fail "$completion does not offer $word"
            done
        done
    done
    "$root/bin/mpeg_ts_overview" "$source/samples/encoder.ts" >"$scratch/summary" || fail "mpeg_ts_overview does not run"
    "$root/bin/mpeg_ts_overview" --json="$scratch/out.json" "$source/samples/encoder.ts" || fail "it writes no JSON"
    [ -s "$scratch/summary" ] || fail "its summary is empty"
    [ -s "$scratch/out.json" ] || fail "its JSON is empty"
fi

# Each header stands alone.
for header in $(cd "$root/include" && find . -name '*.h'); do
    echo "#include \"${header#./}\"" | "$compiler" -x c++ -std=c++17 -Wall -Werror -I"$root/include" -fsyntax-only - ||
        fail "$header does not stand alone"
done

# The sample has no fault; without its 11th packet, which is one of PID 0x0100, one counter is missing.
packet() { dd if="$source/samples/encoder.ts" bs=188 status=none "$@"; }
{ packet count=10; packet skip=11; } >"$scratch/damaged.ts"
cat >"$scratch/expected" <<'END'
PID 0x0000         42 packets      0 continuity errors
PID 0x0011          8 packets      0 continuity errors
PID 0x0100       1057 packets      0 continuity errors
PID 0x0101        134 packets      0 continuity errors
PID 0x1000         42 packets      0 continuity errors
END
sed 's/0x0100       1057 packets      0/0x0100       1056 packets      1/' "$scratch/expected" >"$scratch/expected_damaged"

compare() { # program
    "$1" "$source/samples/encoder.ts" | diff "$scratch/expected" - || fail "$1 differs"
    "$1" "$scratch/damaged.ts" | diff "$scratch/expected_damaged" - || fail "$1 differs on a damaged stream"
}

example="$source/examples/list_pids"
cmake -S "$example" -B "$scratch/cmake" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$root" >/dev/null
cmake --build "$scratch/cmake" >/dev/null
compare "$scratch/cmake/list_pids"

if ! command -v pkg-config >/dev/null || ! command -v make >/dev/null; then
    echo "pkg-config or make is not here: the example was built by CMake only"
    exit 0
fi
pc=$(find "$root" -name mpeg12.pc)
make_example() { # folder, compiler, flags
    mkdir "$scratch/$1"
    (cd "$scratch/$1" && PKG_CONFIG_PATH="${pc%/*}" make -f "$example/Makefile" CXX="$2" CXXFLAGS="$3" >/dev/null)
    compare "$scratch/$1/list_pids"
}
make_example make "$compiler" "$flags"

# The archives serve other compilers too, unless this build leans on a library of its compiler.
case $flags in
*sanitize* | *coverage*) ;;
*)
    for other in g++ clang++; do
        if command -v $other >/dev/null; then make_example $other $other ''; fi
    done
    ;;
esac
