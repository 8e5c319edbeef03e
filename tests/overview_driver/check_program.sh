#!/bin/sh
# The program as its users start it: outputs, messages, exit statuses.
#   check_program.sh PROGRAM SAMPLES
set -eu
program=$1 samples=$2

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
cp "$samples/encoder.ts" recording.ts
failures=0
fail() {
    echo "$*"
    failures=1
}

expect() { # status, standard error, arguments...
    wanted=$1 message=$2 status=0
    shift 2
    "$program" "$@" >output 2>errors || status=$?
    [ "$status" = "$wanted" ] || fail "mpeg_ts_overview $*: status $status, not $wanted"
    printf '%s' "$message" >wanted_errors
    diff wanted_errors errors || fail "mpeg_ts_overview $*: standard error differs"
}
holds() { # file, text
    grep -qF -- "$2" "$1" || fail "$1 does not hold '$2'"
}

expect 0 '' recording.ts
holds output 'recording.ts   241 kB   3.86 s   0.50 Mbit/s constant   188-byte packets   '
cp output summary

expect 0 '' --json=out.json recording.ts
[ ! -s output ] || fail "a summary beside --json"
holds out.json '"format": "mpeg_ts_overview"'
expect 0 '' --json=- recording.ts
cmp output out.json
expect 0 '' --json=again.json --text recording.ts
cmp output summary
cmp again.json out.json

expect 0 '' --html=out.html --json=again.json recording.ts
[ ! -s output ] || fail "a summary beside --html"
holds out.html '<!DOCTYPE html>'
holds out.html '"path":"recording.ts"'
cmp again.json out.json
expect 0 '' --html=- recording.ts
cmp output out.html

# A pipe gives the same figures as the file.
mkfifo pipe
cat recording.ts >pipe &
"$program" --json=- - <pipe | sed 's/"path":"-"/"path":"recording.ts"/' | cmp - out.json

# What is no transport stream leaves no output.
expect 1 'mpeg_ts_overview: no transport packets found
' --json=none.json /dev/null
[ ! -e none.json ] || fail "JSON of nothing"
expect 1 "mpeg_ts_overview: cannot open 'missing.ts': No such file or directory
" missing.ts
expect 1 "mpeg_ts_overview: cannot read '.': Is a directory
" .
expect 1 "mpeg_ts_overview: --clock=arrival: only packets of 192 bytes have arrival time stamps
" --clock=arrival recording.ts

# The input and a full disk.
cp recording.ts before.ts
expect 1 "mpeg_ts_overview: cannot write 'recording.ts': it is the input
" --json=recording.ts recording.ts
cmp recording.ts before.ts
expect 1 "mpeg_ts_overview: cannot write '/dev/full': No space left on device
" --json=/dev/full recording.ts
status=0
"$program" recording.ts 2>errors >/dev/full || status=$?
[ $status = 1 ] || fail "a full disk behind standard output ends with status $status"
holds errors 'mpeg_ts_overview: cannot write to standard output: No space left on device'

# Colour only where it is asked for.
expect 0 '' --color=always recording.ts
holds output "$(printf '\033[1mrecording.ts\033[0m   241 kB')"

# An interrupt while more input is awaited ends the reading; what was read is written.
"$program" --json=interrupted.json pipe &
child=$!
exec 3>pipe
cat recording.ts >&3
sleep 1
kill -TERM $child
status=0
wait $child || status=$?
exec 3>&-
[ $status = 143 ] || fail "an interrupted run ends with status $status"
holds interrupted.json '"path":"pipe"'

# Nothing is left beside the outputs.
left=$(find . -name '.mpeg_ts_overview*')
[ -z "$left" ] || fail "left behind: $left"
exit $failures
