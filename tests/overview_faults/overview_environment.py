#!/usr/bin/env python3
"""The overview in every environment: overview_environment.py PROGRAM RECORDING CASE. Status 77: a tool is missing."""
import json
import os
import pty
import re
import resource
import shutil
import subprocess
import sys
import time
import tty

from surroundings import (PROGRAM, RECORDING, contents, expect_files, expect_status, run, run_case, small_pipe, write)


def skip(reason):
    print(reason)
    sys.exit(77)


def outputs_in(environment):
    """Summary, JSON and page, byte for byte, and what is said of a file that is not there."""
    done = [run(*options, env=environment)
            for options in (["--color=never", RECORDING], ["--json=-", RECORDING], ["--html=-", RECORDING], ["absent.ts"])]
    assert [each.returncode for each in done] == [0, 0, 0, 1]
    return [(each.stdout, each.stderr) for each in done]


def time_zones():
    plain = outputs_in({})
    for zone in ("UTC", "America/St_Johns", "Pacific/Kiritimati", "Asia/Kathmandu", "XYZ-14:59", ":nonsense", ""):
        assert outputs_in({"TZ": zone}) == plain, zone


def locales():
    if not shutil.which("localedef") or not os.path.isdir("/usr/share/i18n/locales"):
        skip("localedef or its locales are not here: skipped")
    # Commas for points, dots for thousands, i without a dot, other digits and calendars, other encodings.
    made = {"de_DE": "UTF-8", "tr_TR": "UTF-8", "fa_IR": "UTF-8", "th_TH": "TIS-620", "fr_FR": "ISO-8859-15"}
    for name, charset in made.items():
        subprocess.run(["localedef", "-c", "-i", name, "-f", charset, os.path.abspath(name)], check=False,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    there = [name for name in made if os.path.isdir(name)]
    assert len(there) >= 3, there
    plain = outputs_in({})
    for name in [*there, "C.UTF-8", "POSIX", "nonsense"]:
        assert outputs_in({"LC_ALL": name, "LANG": name, "LANGUAGE": name, "LOCPATH": os.getcwd()}) == plain, name


def on_terminal(environment, *options, **how):
    """What the program writes to a terminal that is its standard output, its standard error, or both."""
    reading, writing = pty.openpty()
    tty.setraw(writing)
    streams = {name: writing if target == "terminal" else target for name, target in how.items()}
    with subprocess.Popen([PROGRAM, *options], env=environment, **streams) as running:
        os.close(writing)
        if os.path.exists("fifo"):
            time.sleep(0.5)  # the input is open, and nothing read: it takes long enough for a line of progress
            contents("fifo")
        written = b""
        try:
            while part := os.read(reading, 65536):
                written += part
        except OSError:  # the program has ended
            pass
        assert running.wait(60) == 0
    os.close(reading)
    return written


def colour_is_for_terminals():
    plain = run("--color=never", RECORDING).stdout
    xterm = {"TERM": "xterm"}
    coloured = on_terminal(xterm, RECORDING, stdout="terminal", stderr=subprocess.DEVNULL)
    assert coloured != plain and re.sub(rb"\x1b\[[0-9;]*m", b"", coloured) == plain, coloured
    assert on_terminal({**xterm, "NO_COLOR": ""}, RECORDING, stdout="terminal") == coloured
    assert run("--color=always", RECORDING).stdout == coloured
    for environment in ({**xterm, "NO_COLOR": "1"}, {"TERM": "dumb"}, {}):
        assert on_terminal(environment, RECORDING, stdout="terminal") == plain, environment
    assert on_terminal({**xterm, "NO_COLOR": "1"}, "--color=always", RECORDING, stdout="terminal") == coloured
    assert on_terminal(xterm, "--color=never", RECORDING, stdout="terminal") == plain


def progress_is_for_terminals():
    os.mkfifo("fifo")
    null = subprocess.DEVNULL
    shown = on_terminal({}, "--json=fifo", RECORDING, stdout=null, stderr="terminal")
    assert re.fullmatch(rb"(\r +\d+%  \d+\.\d MB/s  \d+:\d\d left\x1b\[K)+\r\x1b\[K", shown), shown
    # Beside a summary it would be in the way, and of a pipe nobody knows the length.
    assert on_terminal({}, "--json=fifo", RECORDING, stdout="terminal", stderr="terminal") == b""
    with subprocess.Popen(["cat", RECORDING], stdout=subprocess.PIPE) as cat:
        assert on_terminal({}, "--json=fifo", "-", stdin=cat.stdout, stdout=null, stderr="terminal") == b""


def terminals():
    """What is no terminal gets the same whatever the environment says of one."""
    plain = outputs_in({})
    for environment in ({"TERM": "xterm-256color", "COLUMNS": "40"}, {"TERM": "dumb"}, {"NO_COLOR": "1"},
                        {"CLICOLOR_FORCE": "1", "FORCE_COLOR": "1"}):
        assert outputs_in(environment) == plain, environment


def full_file_system():
    """On a file system of 16 KiB nothing is replaced by less than the whole."""
    os.mkdir("small")
    script = """mount -t tmpfs -o size=16k tmpfs small || exit 77
        printf before >small/out
        status=0
        "$1" "$3=small/out" "$2" 2>errors || status=$?
        [ "$(cat small/out)" = before ] && [ "$(ls -A small)" = out ] && exit $status"""
    for option in ("--json", "--html"):
        done = subprocess.run(["unshare", "--user", "--map-root-user", "--mount", "sh", "-c", script, "sh", PROGRAM,
                               RECORDING, option], stderr=subprocess.DEVNULL, check=False)
        if done.returncode == 77 or not os.path.exists("errors"):
            skip("no file system can be mounted here: skipped")
        assert done.returncode == 1, done
        assert contents("errors") == b"mpeg_ts_overview: cannot write 'small/out': No space left on device\n"


def file_size_limit_of_every_output():
    limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (500, 500))
    write("out", b"before")
    for option in ("--json=out", "--html=out"):
        expect_status(run(option, RECORDING, preexec_fn=limit), 1, b"cannot write 'out': File too large")
        assert contents("out") == b"before"
    for option in ("--json=-", "--html=-", "--text"):
        with open("standard_output", "wb") as file:
            done = run(option, RECORDING, stdout=file, preexec_fn=limit)
        expect_status(done, 1, b"cannot write to standard output: File too large")
    expect_files("out", "standard_output")


def full_standard_output():
    for option in ("--json=-", "--html=-", "--text", "--help", "--version"):
        with open("/dev/full", "wb") as full:
            done = run(option, RECORDING, stdout=full)
        expect_status(done, 1, b"mpeg_ts_overview: cannot write to standard output: No space left on device\n")


def closed_pipes():
    for option in ("--json=-", "--html=-", "--text"):
        reading, writing = small_pipe()
        os.close(reading)
        expect_status(run(option, RECORDING, stdout=writing), 1, b"cannot write to standard output: Broken pipe")
        os.close(writing)
    # A named one, whose reader has had enough.
    os.mkfifo("fifo")
    with subprocess.Popen([PROGRAM, "--html=fifo", "--json=out.json", RECORDING], stderr=subprocess.PIPE) as running:
        with open("fifo", "rb", buffering=0) as file:
            file.read(10)
        assert running.wait(60) == 1
        assert running.stderr.read() == b"mpeg_ts_overview: cannot write 'fifo': Broken pipe\n"
    json.loads(contents("out.json"))
    expect_files("fifo", "out.json")


def closed_streams():
    """No other file gets into the place of standard output or standard error."""
    def closing(*descriptors):
        return lambda: [os.close(descriptor) for descriptor in descriptors]

    wanted = run("--json=-", RECORDING).stdout
    expect_status(run(RECORDING, preexec_fn=closing(1)), 1, b"cannot write to standard output: Bad file descriptor\n")
    expect_status(run("--json=-", RECORDING, preexec_fn=closing(0, 1)), 1, b"Bad file descriptor\n")
    expect_status(run("--json=out.json", RECORDING, preexec_fn=closing(0, 1)), 0)
    assert contents("out.json") == wanted
    os.mkfifo("fifo")
    with subprocess.Popen([PROGRAM, "--json=fifo", "--text", RECORDING], preexec_fn=closing(1, 2)) as running:
        assert contents("fifo") == wanted
        assert running.wait(60) == 1
    expect_files("out.json", "fifo")


def folder_of_somebody_else():
    """Root may write anywhere; so it is somebody else who tries."""
    if os.geteuid() != 0:
        skip("only root can be somebody else: skipped")
    os.chmod(".", 0o755)
    shutil.copy(PROGRAM, "program")
    shutil.copy(RECORDING, "recording.ts")
    write("out.json", b"before")
    os.chmod("out.json", 0o666)
    for place in ("new.json", "out.json"):
        done = subprocess.run(["./program", "--json=" + place, "recording.ts"], user=65534, group=65534, extra_groups=[],
                              stderr=subprocess.PIPE, check=False)
        expect_status(done, 1, f"mpeg_ts_overview: cannot write '{place}': Permission denied\n".encode())
    assert contents("out.json") == b"before"
    expect_files("program", "recording.ts", "out.json")


def nothing_found_leaves_what_a_link_names():
    write("place", b"before")
    os.symlink("place", "link")
    write("none.ts", bytes(10000))
    expect_status(run("--json=link", "none.ts"), 1, b"no transport packets found")
    assert contents("place") == b"before"
    expect_files("place", "link", "none.ts")


def devices_have_room_for_two():
    expect_status(run("--json=/dev/null", "--html=/dev/null", RECORDING), 0)
    expect_status(run("--json=out", "--html=./out", RECORDING), 1, b"--json and --html: both are 'out'\n")
    expect_files()


CASES = [time_zones, locales, colour_is_for_terminals, progress_is_for_terminals, terminals, full_file_system, file_size_limit_of_every_output, full_standard_output,
         closed_pipes, closed_streams, folder_of_somebody_else, nothing_found_leaves_what_a_link_names,
         devices_have_room_for_two]

if __name__ == "__main__":
    run_case(CASES)
