#!/bin/sh
# Holds outputs against the schema, and the schema against outputs that are wrong.
#   check_schema.sh SCHEMA WRITER
set -eu
schema=$1 writer=$2
here=$(cd "$(dirname "$0")" && pwd)

# Where several Pythons are, any that has jsonschema will do.
for python in python3 /usr/bin/python3 ""; do
    [ -n "$python" ] || { echo "python3-jsonschema is not here: skipped"; exit 77; }
    "$python" -c 'import jsonschema' 2>/dev/null && break
done

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
for sample in sample empty hostile; do "$writer" $sample >"$scratch/$sample.json"; done
diff "$here/sample.json" "$scratch/sample.json"
"$python" "$here/check_schema.py" "$schema" "$scratch"/*.json
