#!/bin/sh
# The library computes and never prints or stops: its objects refer to no output function and not to abort or exit.
#   plain_library.sh ARCHIVE...
set -eu
for archive in "$@"; do
    # Not nm: of objects with bytecode it lists what the bytecode refers to, and there printf and abort are built in.
    symbols=$(readelf -sW "$archive" | awk '$7 == "UND" { print $8 }' | c++filt | sed '/^$/d' | sort -u)
    [ -n "$symbols" ] || { echo "$archive: no undefined symbols at all: this check looks in the wrong place"; exit 1; }
    if echo "$symbols" | grep -xE '(__)?(v|f|vf|s|sn|vsn)?printf(_chk)?|f?puts|f?putc|putchar|f?write|abort|_?exit|std::cout|std::cerr'; then
        echo "$archive refers to the functions above"
        exit 1
    fi
done
