#!/bin/sh
# One case of what can go wrong around the program.
#   faults.sh CASE PROGRAM TOOLS FAULT_INJECTION STREAMS plain|watched
# TOOLS is the folder of measure and make_flood, FAULT_INJECTION the library that is preloaded, STREAMS the folder that
# make_streams has filled. A case that cannot be tried here says so and ends with status 77. watched: the program has
# been built with sanitizers or counters.
set -eu

case=$1 program=$2 tools=$3 fault_injection=$4 streams=$5 build=$6
dvb=$streams/dvb.ts

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
export TZ=UTC LC_ALL=C
"$program" "$dvb" >expected

fail() {
    echo "$case: $*"
    for file in report errors; do
        if [ -s $file ]; then echo "-- $file, last lines:"; tail -n 20 $file; fi
    done
    exit 1
}

skip() { echo "$case: skipped, $*"; exit 77; }

plain_build_only() { if [ "$build" != plain ]; then skip "the build is watched by sanitizers or counters"; fi; }

# The status of a command, its output in report and errors.
run() {
    status=0
    "$@" >report 2>errors || status=$?
}

run_with_fault() { # fault, call, arguments of the program
    fault=$1 at=$2
    shift 2
    status=0
    FAULT=$fault FAULT_AT=$at LD_PRELOAD=$fault_injection ASAN_OPTIONS=verify_asan_link_order=0 \
        "$program" "$@" >report 2>errors || status=$?
}

status_is() { if [ "$status" != "$1" ]; then fail "exit status $status, not $1"; fi; }
errors_are() { if [ "$(cat errors)" != "$1" ]; then fail "standard error is not: $1"; fi; }
errors_end_with() { if [ "$(tail -n 1 errors)" != "$1" ]; then fail "standard error does not end with: $1"; fi; }
is_complete() { if ! grep -q '^\* Priority #3 errors: 0$' report; then fail "no summary"; fi; }

same_report_as() { # file; the line that names the input aside
    sed 1d "$1" >wanted
    sed 1d report >got
    cmp -s wanted got || { diff -a wanted got | head -n 20; fail "another report"; }
}

# At least so many bytes of the sample multiplex again and again.
make_long_file() { # bytes
    cat "$dvb" "$dvb" "$dvb" "$dvb" "$dvb" "$dvb" "$dvb" "$dvb" >eight
    while [ "$(wc -c <long.ts)" -lt "$1" ]; do cat eight >>long.ts; done
}

full_device() {
    [ -w /dev/full ] || skip "there is no /dev/full"
    status=0
    "$program" "$dvb" >/dev/full 2>errors || status=$?
    status_is 1
    errors_are "mpeg_ts_analysis: cannot write the report: No space left on device"
}

file_size_limit() {
    status=0
    (ulimit -f 8 && exec "$program" -dump-ts "$dvb") >report 2>errors || status=$?
    status_is 1
    errors_are "mpeg_ts_analysis: cannot write the report: File too large"
}

closed_output() {
    status=0
    "$program" "$dvb" >&- 2>errors || status=$?
    status_is 1
    errors_are "mpeg_ts_analysis: cannot write the report: Bad file descriptor"
}

# So a network file system tells of what it could not store.
output_fails_to_close() {
    run_with_fault close 1 "$dvb"
    status_is 1
    errors_are "mpeg_ts_analysis: cannot write the report: Input/output error"
    same_report_as expected
}

# Who only asks for the usage text has no report to lose.
closed_output_without_report() {
    status=0
    "$program" -help >&- 2>errors || status=$?
    status_is 1
    if grep -q 'cannot write' errors; then fail "a report is missed"; fi
}

# The input is then opened as descriptor 2: nothing may be written into it, and the report is as always.
closed_errors() {
    cp "$dvb" copy.ts
    head -c 1000 "$dvb" >short.ts
    "$program" copy.ts >report 2>&- || fail "exit status $?"
    same_report_as expected
    "$program" short.ts >report 2>&- || fail "exit status $?"
    cmp "$dvb" copy.ts || fail "the input has changed"
}

broken_pipe() {
    "$program" -dump-ts=all "$dvb" 2>errors | head -n 1 >report
    [ "$(cat report)" = "* Starting analysis of: $dvb" ] || fail "another first line"
    errors_are ""
}

ignored_broken_pipe() {
    # The reader is gone before the first line is written.
    {
        sleep 0.3
        trap '' PIPE
        status=0
        "$program" "$dvb" 2>errors || status=$?
        echo $status >status
    } | :
    status=$(cat status)
    status_is 141
    errors_are ""
}

directory() {
    mkdir folder
    run "$program" folder
    status_is 0
    errors_end_with "Cannot read file 'folder': Is a directory"
    is_complete
}

read_fails_at_once() {
    run_with_fault error 1 "$dvb"
    status_is 0
    errors_end_with "Cannot read file '$dvb': Input/output error"
    is_complete
}

read_fails_later() {
    make_long_file 1000000
    run_with_fault error 3 long.ts
    status_is 0
    errors_are "Cannot read file 'long.ts': Input/output error"
    is_complete
    mv report partial
    head -c 524288 long.ts >two_blocks.ts
    run "$program" two_blocks.ts
    mv partial wanted_report
    same_report_as wanted_report
}

interrupted_reads() {
    run_with_fault interrupt 1 "$dvb"
    status_is 0
    errors_are ""
    same_report_as expected
}

short_reads() {
    run_with_fault short 1 "$dvb"
    status_is 0
    errors_are ""
    same_report_as expected
}

shrinking_file() {
    make_long_file 1000000
    run_with_fault shrink 2 long.ts
    status_is 0
    errors_are ""
    is_complete
}

growing_file() {
    make_long_file 300000
    before=$(wc -c <long.ts)
    run_with_fault grow 2 -dump-ts -no-skip-padding long.ts
    status_is 0
    errors_are ""
    is_complete
    last=$(grep -a '^@' report | tail -n 1 | sed 's/^@\([0-9]*\).*/\1/')
    [ "$last" = $((before + 188000 - 188)) ] || fail "the last packet is at $last"
}

# What has been found until the signal comes is in the report.
terminated() {
    mkfifo pipe
    sleep 300 >pipe &
    sleeper=$!
    "$program" pipe >report 2>errors &
    analyser=$!
    cat "$dvb" >pipe
    tries=0
    until grep -q '^\* Program Association Table' report; do
        tries=$((tries + 1))
        [ $tries -lt 100 ] || fail "no report while the input waits"
        sleep 0.1
    done
    kill -TERM $analyser
    status=0
    wait $analyser 2>/dev/null || status=$?
    kill $sleeper
    status_is 143
    errors_are ""
    # Nothing but the summary is missing.
    head -n "$(wc -l <report)" expected | sed 1d >wanted
    sed 1d report | cmp -s wanted - || fail "another report"
}

# shellcheck disable=SC3045 # ulimit -v: every shell that runs this has it
# The smallest address space in which an empty file can be analysed, then more and more of it: at first there is no
# memory for all the programs, at last there is.
no_memory_for_programs() {
    plain_build_only
    "$tools/make_flood" programs >flood.ts
    : >empty.ts
    limit=3000
    until (ulimit -v $limit && exec "$program" -std empty.ts) >/dev/null 2>&1; do
        limit=$((limit + 200))
        [ $limit -lt 100000 ] || skip "the address space cannot be limited here"
    done
    stopped=0 completed=0
    while [ $completed = 0 ]; do
        limit=$((limit + 500))
        status=0
        (ulimit -v $limit && exec "$program" -std flood.ts) >report 2>errors || status=$?
        case $status in
        0) completed=1 ;;
        134)
            tail -n 1 report | grep -q '^!!! Not tracking program 0x[0-9a-f]\{4\}, cannot start$' || fail "another end"
            stopped=$((stopped + 1))
            ;;
        *) fail "exit status $status with $limit KiB" ;;
        esac
        [ $limit -lt 100000 ] || fail "never enough"
    done
    [ $stopped -gt 0 ] || fail "there was always memory for all programs"
    echo "stopped in $stopped sizes, completed with $limit KiB"
}

# shellcheck disable=SC3045
# From an address space that is too small to load the program on: never an end without a reason.
no_memory_to_start() {
    plain_build_only
    : >empty.ts
    limit=3000 status=127 refused=0
    while [ $status != 0 ]; do
        limit=$((limit + 8))
        [ $limit -lt 30000 ] || skip "the address space cannot be limited here"
        status=0
        (ulimit -v $limit && exec "$program" -std empty.ts) >report 2>errors || status=$?
        case $status in
        0 | 127) ;;
        1)
            errors_end_with "mpeg_ts_analysis: not enough memory to read a file"
            refused=$((refused + 1))
            ;;
        *) fail "exit status $status with $limit KiB" ;;
        esac
    done
    [ $refused -gt 0 ] || fail "there was always enough memory to read a file"
    echo "refused in $refused sizes, completed with $limit KiB"
}

# Sparse: some packets at the start, nothing, and one packet at the end, beyond 2 to the power of 32. Holes are read
# quickly from a file system in memory.
make_huge_file() {
    packets=28600000
    huge=$work/huge.ts
    if [ -w /dev/shm ]; then huge=$(mktemp /dev/shm/huge_XXXXXX) && trap 'rm -rf "$work" "$huge"' EXIT; fi
    cp "$dvb" "$huge"
    truncate -s $(((packets - 1) * 188)) "$huge" 2>/dev/null || skip "the file system takes no file of 5 GB"
    head -c 188 "$dvb" >>"$huge"
}

huge_file() {
    make_huge_file
    run "$program" -dump-ts=header -ts-bitrate=8000000 "$huge"
    status_is 0
    grep -q '^@5376799812 (t=5376\.7998120) TS PACKET: PID=0x0000 ' report || fail "no packet at 5376799812"
    [ "$(grep -c '^@' report)" -gt 30 ] || fail "no packets at the start"
}

peak_of() { "$tools/measure" "$program" "$@" 2>/dev/null | cut -d' ' -f1; }

constant_memory() {
    plain_build_only
    make_huge_file
    make_long_file 1000000
    small=$(peak_of long.ts)
    make_long_file 100000000
    large=$(peak_of long.ts)
    largest=$(peak_of "$huge")
    echo "peak memory: $small KiB for 1 MB, $large KiB for 100 MB, $largest KiB for 5 GB"
    for peak in $small $large $largest; do
        [ "$peak" -lt 8192 ] || fail "more than 8 MiB"
        [ $((peak - small)) -lt 256 ] || fail "more for a larger file"
    done
}

# A stream that makes the program keep all that one can.
most_memory() {
    "$tools/make_flood" all >flood.ts
    run "$program" -std flood.ts
    status_is 0
    programs=$(grep -c 'First aware of, tracking program' report)
    [ "$programs" = 65535 ] || fail "$programs programs"
    sections=$(grep -c '^!!! PID 0x[0-9a-f]* table error: checksum failed$' report)
    [ "$sections" = 8192 ] || fail "$sections sections have been collected"
    if [ "$build" != plain ]; then return; fi
    peak=$(peak_of -std flood.ts)
    echo "peak memory: $peak KiB"
    [ "$peak" -lt 280000 ] || fail "more than 280 MB"
}

# The best of 10 runs, so that a busy machine does not matter.
start_up() {
    plain_build_only
    : >empty.ts
    best=1000000
    for _ in 1 2 3 4 5 6 7 8 9 10; do
        time=$("$tools/measure" "$program" -std empty.ts | cut -d' ' -f2)
        if [ "$time" -lt "$best" ]; then best=$time; fi
    done
    echo "an empty file takes $best ms"
    [ "$best" -lt 50 ] || fail "more than 50 ms"
}

: >long.ts
"$case"
