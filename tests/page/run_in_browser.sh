#!/bin/sh
# run_in_browser.sh TEST.py [ARGUMENTS]: tests of a page in Chromium; status 77 where what they take is not there.
set -eu
for wanted in chromium chromedriver; do
    command -v "$wanted" >/dev/null && continue
    echo "$wanted is not here: skipped"
    exit 77
done
python=
for candidate in /usr/bin/python3 python3; do
    if "$candidate" -c 'import selenium' 2>/dev/null; then python=$candidate; fi
done
[ -n "$python" ] || {
    echo "python3-selenium is not here: skipped"
    exit 77
}
exec "$python" "$@"
