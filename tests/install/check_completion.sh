#!/bin/sh
# Loads the completion into bash and completes switches, values and files with it.
#   check_completion.sh COMPLETION
set -eu
command -v bash >/dev/null || { echo "bash is not here: skipped"; exit 77; }

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
: >"$scratch/a stream.ts"
: >"$scratch/clip.M2TS"
: >"$scratch/notes.txt"
: >"$scratch/record.trp"
mkdir "$scratch/recordings"

cat >"$scratch/complete" <<'END'
set -eu
. "$1"
cd "${0%/*}"
[[ $(complete -p mpeg_ts_analysis) == *_mpeg_ts_analysis* ]]

status=0
expect() { # wanted in the order of the bytes, words of the line...
    local wanted=$1 found
    COMP_WORDS=(mpeg_ts_analysis "${@:2}") COMP_CWORD=$(($# - 1))
    _mpeg_ts_analysis || : # compopt fails where no line is being edited
    found=$(printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort | paste -sd '|')
    if [[ $found != "$wanted" ]]; then
        echo "mpeg_ts_analysis ${*:2}: '$found' and not '$wanted'"
        status=1
    fi
}

# Readline splits at "=": the value is a word of its own.
expect 'all|contents|header|raw' -dump-ts =
expect 'contents' -dump-ts = c
expect 'all|contents|none|raw' --dump-descriptors =
expect 'none' -dump-descriptors = n
expect 'auto' -ts-bitrate = a
expect 'aus' -assume-country =
expect '' -program =
expect '' -program = 1
# Where "=" is no separator, the switch stays in front.
expect '-dump-ts=all|-dump-ts=contents|-dump-ts=header|-dump-ts=raw' -dump-ts=
expect '--dump-ts=header' --dump-ts=h

expect '-dump-descriptors|-dump-descriptors=|-dump-pcr-analysis|-dump-tables|-dump-ts|-dump-ts=' -dump
expect '--max-pcr-interval=' --max
expect '-bdmv' -b
expect '' -x

expect 'a stream.ts|clip.M2TS|record.trp|recordings' ''
expect 'a stream.ts' a
expect 'recordings' -std recordi
expect '' notes
exit $status
END
bash --norc "$scratch/complete" "$1"
