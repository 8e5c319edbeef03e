#!/bin/sh
# Compares the summary of a sample with what is on record.
#   check_summary.sh PROGRAM ROOT SAMPLE [update]
# A SAMPLE of - is taken from the environment variable SAMPLE. Run from the root of the tree, so that the path in the
# summary is the same everywhere.
set -eu

program=$1 root=$2 sample=$3 mode=${4:-check}
if [ "$sample" = - ]; then sample=${SAMPLE:?name a sample in the environment variable SAMPLE: dvb.ts}; fi
cd "$root"
golden=tests/golden_overview/${sample%.*}.summary

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
"$program" --color=never "samples/$sample" >"$work/summary" 2>"$work/errors" || status=$?

wrong=0
if [ -s "$work/errors" ]; then cat "$work/errors" && wrong=1; fi
if [ "$status" != 0 ]; then echo "exit status $status" && wrong=1; fi
if [ "$mode" = update ] && [ $wrong = 0 ]; then
    cp "$work/summary" "$golden"
    echo "$sample: renewed"
    exit 0
fi
LC_ALL=C diff -a -u "$golden" "$work/summary" || wrong=1
exit $wrong
