#!/bin/sh
# run_page_tests.sh MAKE_PAGES: the page in Chromium; status 77 where what it takes is not there.
for python in python3 /usr/bin/python3; do
    "$python" -c 'import selenium' 2>/dev/null || continue
    if ! command -v chromium >/dev/null || ! command -v chromedriver >/dev/null; then break; fi
    exec "$python" "$(dirname "$0")/page_test.py" "$1"
done
echo "not here: chromium, chromedriver or selenium for python3"
exit 77
