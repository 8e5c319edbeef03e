#!/bin/sh
# Every shell script of the repository is clean under shellcheck.
#   check_scripts.sh SOURCE
set -eu
command -v shellcheck >/dev/null || { echo "shellcheck is not here: skipped"; exit 77; }

cd "$1"
scripts=$(find . -path './build*' -prune -o -path ./.git -prune -o -type f \
    -exec grep -lE '^#!/(bin/|usr/bin/env )(ba)?sh' {} +)
# The scripts are words on purpose.
# shellcheck disable=SC2086
shellcheck -x -e SC1091 $scripts
# What they source.
shellcheck -s sh -e SC2034,SC2154 scripts/*.sh
shellcheck -s bash packaging/completion/*.bash
# Expectations are sourced by what defines expect.
shellcheck -s bash tests/install/completion_of_*.bash
