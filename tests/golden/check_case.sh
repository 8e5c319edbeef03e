#!/bin/sh
# Runs one golden case and compares standard output, standard error and the exit status with what is on record.
#   check_case.sh PROGRAM CASE STREAMS SAMPLES [update]
# A CASE of - is taken from the environment variable CASE.
# STREAMS is the folder that make_streams has filled, SAMPLES the repository's samples. The pointer values of PES trace
# lines differ from run to run and are masked; nothing else is.
set -eu

program=$1 case=$2 streams=$3 samples=$4 mode=${5:-check}
if [ "$case" = - ]; then case=${CASE:?name a case in the environment variable CASE}; fi
golden=$(cd "$(dirname "$0")" && pwd)

line=$(grep -E "^$case +\|" "$golden/cases.txt") || { echo "no case named $case"; exit 1; }
stream=$(echo "$line" | cut -d'|' -f2 | tr -d ' ')
options=$(echo "$line" | cut -d'|' -f3)
status=$(echo "$line" | cut -d'|' -f4 | tr -d ' ')

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for folder in "$streams" "$samples"; do
    if [ -n "$stream" ] && [ -f "$folder/$stream" ]; then ln -sf "$folder/$stream" "$work/$stream"; fi
done

cd "$work"
actual_status=0
# The options are words on purpose.
# shellcheck disable=SC2086
TZ=UTC "$program" $options $stream >report.raw 2>errors || actual_status=$?
LC_ALL=C sed -E '/^PES [0-9a-f]{4} nxt=/s/=0x[0-9a-f]+/=0x.../g' report.raw >report

if [ "$mode" = update ]; then
    cp report "$golden/$case.report"
    if [ -s errors ]; then cp errors "$golden/$case.errors"; else rm -f "$golden/$case.errors"; fi
    echo "$case: renewed, exit status $actual_status"
    exit 0
fi

[ -f "$golden/$case.errors" ] || : >"$work/no_errors"
wrong=0
LC_ALL=C diff -a -u "$golden/$case.report" report || wrong=1
if [ -f "$golden/$case.errors" ]; then diff -a -u "$golden/$case.errors" errors || wrong=1; else diff -a -u no_errors errors || wrong=1; fi
if [ "$actual_status" != "$status" ]; then echo "exit status $actual_status, not $status"; wrong=1; fi
exit $wrong
