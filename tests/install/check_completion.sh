#!/bin/sh
# Loads the completion into bash and completes switches, values and files with it.
#   check_completion.sh COMPLETION
set -eu
here=$(cd "$(dirname "$0")" && pwd)
program=$(basename "$1" .bash)
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
program=$2
[[ $(complete -p "$program") == *_"$program"* ]]

status=0
expect() { # wanted in the order of the bytes, words of the line...
    local wanted=$1 found
    COMP_WORDS=("$program" "${@:2}") COMP_CWORD=$(($# - 1))
    "_$program" || : # compopt fails where no line is being edited
    found=$(printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort | paste -sd '|')
    if [[ $found != "$wanted" ]]; then
        echo "$program ${*:2}: '$found' and not '$wanted'"
        status=1
    fi
}

# What is expected stands in a file of its own.
. "$3"
exit $status
END
bash --norc "$scratch/complete" "$1" "$program" "$here/completion_of_$program.bash"
