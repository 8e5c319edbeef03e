#!/bin/sh
# Holds outputs against the schema, and the schema against outputs that are wrong.
#   check_schema.sh SCHEMA WRITER
set -eu
schema=$1 writer=$2
here=$(cd "$(dirname "$0")" && pwd)

python=$("$here/find_python.sh") || exit 77

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
for sample in sample empty hostile; do "$writer" $sample >"$scratch/$sample.json"; done
diff "$here/sample.json" "$scratch/sample.json"
"$python" "$here/check_schema.py" "$schema" "$scratch"/*.json
