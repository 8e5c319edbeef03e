#!/bin/sh
# The manual is clean under mandoc.
#   check_manual.sh MANUAL
set -eu
command -v mandoc >/dev/null || { echo "mandoc is not here: skipped"; exit 77; }
mandoc -T lint -W warning "$1"
