#!/bin/sh
# Holds the JSON of every sample and of every golden stream against the schema.
#   check_streams.sh SCHEMA PROGRAM OPTIONS STREAM_FOLDER...
set -eu
schema=$1 program=$2 options=$3
shift 3
here=$(cd "$(dirname "$0")" && pwd)
python=$("$here/find_python.sh") || exit 77

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
for stream in $(find "$@" -type f \( -name '*.ts' -o -name '*.m2ts' \) | sort); do
    output="$scratch/$(basename "$(dirname "$stream")")_$(basename "$stream").json"
    status=0
    # The options are words on purpose.
    # shellcheck disable=SC2086
    "$program" $options --json="$output" "$stream" 2>"$scratch/errors" || status=$?
    # Some of them are not transport streams at all.
    [ $status = 0 ] || [ "$(cat "$scratch/errors")" = "mpeg_ts_overview: no transport packets found" ] || {
        echo "$stream: status $status, $(cat "$scratch/errors")"
        exit 1
    }
done
[ "$(find "$scratch" -name '*.json' | wc -l)" -ge 6 ] || { echo "too few outputs: this check looks in the wrong place"; exit 1; }
"$python" "$here/check_schema.py" "$schema" "$scratch"/*.json
