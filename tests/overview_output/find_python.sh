#!/bin/sh
# Prints a Python that has jsonschema, where several Pythons are.
for python in python3 /usr/bin/python3; do
    if "$python" -c 'import jsonschema' 2>/dev/null; then
        echo "$python"
        exit 0
    fi
done
echo "python3-jsonschema is not here: skipped" >&2
exit 1
