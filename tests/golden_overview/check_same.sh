#!/bin/sh
# Compares what two builds of the program write of a recording: summary, JSON, page, messages and exit status.
#   check_same.sh PROGRAM REFERENCE RECORDING
set -eu

program=$1 reference=$2 recording=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

outputs_of() { # program, folder
    mkdir "$2"
    status=0
    "$1" --color=never --json="$2/json" --html="$2/page" "$recording" >"$2/summary" 2>"$2/messages" || status=$?
    echo "exit status $status" >>"$2/messages"
    # A page is a few long lines.
    if [ -f "$2/page" ]; then sed -i 's/,"/,\n"/g' "$2/page"; fi
}

outputs_of "$program" "$work/program"
outputs_of "$reference" "$work/reference"
LC_ALL=C diff -a -u -r "$work/reference" "$work/program"
