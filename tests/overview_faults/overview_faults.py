#!/usr/bin/env python3
"""The outputs and the end of the overview when things go wrong around it: overview_faults.py PROGRAM RECORDING CASE"""
import json
import os
import resource
import signal
import stat
import subprocess
import sys
import time

from surroundings import (PROGRAM, RECORDING, contents, expect_files, expect_status, packet, run, run_case, small_pipe,
                          start_slow, unfinished, wait_for, write)


def exit_statuses():
    lossy = b"".join(packet(0x100, counter) for counter in [*range(10), *range(11, 20)])
    write("lossy.ts", lossy)
    write("good.ts", b"".join(packet(0x100, counter) for counter in range(20)))
    write("none.ts", bytes(10000))
    write("empty.ts", b"")
    expect_status(run("lossy.ts"), 0)
    expect_status(run("--check", "lossy.ts"), 2)
    expect_status(run("--check=1", "lossy.ts"), 2)
    expect_status(run("--check=1,2,3", "lossy.ts"), 2)
    expect_status(run("--check=2", "lossy.ts"), 0)
    expect_status(run("--check=2,3", "lossy.ts"), 0)
    expect_status(run("--check=1,2,3", "good.ts"), 0)
    expect_status(run("none.ts"), 1, b"no transport packets found")
    expect_status(run("empty.ts"), 1, b"no transport packets found")
    expect_status(run("absent.ts"), 1, b"absent.ts")
    expect_status(run("."), 1, b"directory")
    expect_status(run(), 1)
    expect_status(run("--no-such-option", "good.ts"), 1)
    expect_status(run("good.ts", "lossy.ts"), 1)
    expect_status(run("--clock=arrival", "good.ts"), 1, b"192")
    expect_status(run("--check", "--json=/dev/full", "lossy.ts"), 1, b"cannot write")
    expect_status(run("--help"), 0)
    expect_status(run("--version"), 0)


def outputs_are_renamed():
    running = start_slow("--json=out.json", "--html=out.html")
    wait_for(lambda: len(unfinished()) == 2)
    expect_files(*unfinished())
    assert running.poll() is None
    running.stdin.close()
    assert running.wait(60) == 0, running.stderr.read()
    expect_files("out.json", "out.html")
    assert json.loads(contents("out.json"))["recording"]["bytes"] == os.path.getsize(RECORDING)
    assert contents("out.html").lstrip().lower().startswith(b"<!doctype html")


def what_is_replaced_stays_until_the_end():
    write("out.json", b"before")
    os.chmod("out.json", 0o640)
    os.link("out.json", "other_name")
    running = start_slow("--json=out.json")
    wait_for(unfinished)
    assert contents("out.json") == b"before"
    running.stdin.close()
    assert running.wait(60) == 0
    json.loads(contents("out.json"))
    assert contents("other_name") == b"before"
    assert stat.S_IMODE(os.stat("out.json").st_mode) == 0o640
    expect_files("out.json", "other_name")


def links_are_written_through():
    write("place", b"before, and longer than nothing")
    os.symlink("place", "link")
    expect_status(run("--json=link", RECORDING), 0)
    assert os.path.islink("link")
    json.loads(contents("place"))
    expect_files("place", "link")


def pipes_are_written_in_place():
    os.mkfifo("fifo")
    with subprocess.Popen([PROGRAM, "--json=fifo", RECORDING]) as running:
        json.loads(contents("fifo"))
        assert running.wait(60) == 0
    assert stat.S_ISFIFO(os.stat("fifo").st_mode)
    expect_files("fifo")


def unwritable_folder():
    expect_status(run("--json=absent/out.json", RECORDING), 1, b"absent/out.json")
    os.mkdir("folder")
    expect_status(run("--json=folder", RECORDING), 1, b"folder")
    if os.geteuid() == 0:
        expect_files("folder")
        return
    os.chmod("folder", 0o555)
    expect_status(run("--json=folder/out.json", RECORDING), 1, b"folder/out.json")
    assert os.listdir("folder") == []


def full_disk():
    for option in ("--json=/dev/full", "--html=/dev/full"):
        expect_status(run(option, RECORDING), 1, b"No space left on device")
    with open("/dev/full", "wb") as full:
        expect_status(run(RECORDING, stdout=full), 1, b"standard output: No space left on device")
        expect_status(run("--json=-", RECORDING, stdout=full), 1, b"No space left on device")
    # The outputs that can be written are whole all the same.
    expect_status(run("--json=/dev/full", "--html=out.html", RECORDING), 1)
    assert contents("out.html").rstrip().endswith(b"</html>")
    expect_files("out.html")


def file_size_limit():
    write("out.json", b"before")
    limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (2000, 2000))
    expect_status(run("--json=out.json", RECORDING, preexec_fn=limit), 1, b"out.json': File too large")
    assert contents("out.json") == b"before"
    expect_files("out.json")


def output_is_the_input():
    original = contents(RECORDING)
    write("recording.ts", original)
    os.symlink("recording.ts", "link")
    os.link("recording.ts", "other_name")
    for name in ("recording.ts", "link", "other_name", "./recording.ts"):
        expect_status(run("--json=" + name, "recording.ts"), 1, b"it is the input")
        assert contents("recording.ts") == original
    with open("recording.ts", "rb") as standard_input:
        expect_status(run("--html=recording.ts", "-", stdin=standard_input), 1, b"it is the input")
    with open("recording.ts", "ab") as appended:
        expect_status(run("recording.ts", stdout=appended), 1, b"it is the input")
    assert contents("recording.ts") == original
    expect_files("recording.ts", "link", "other_name")


def nothing_found_replaces_nothing():
    write("out.json", b"before")
    write("none.ts", bytes(10000))
    expect_status(run("--json=out.json", "none.ts"), 1)
    assert contents("out.json") == b"before"
    expect_files("out.json", "none.ts")


def interrupt(sent=signal.SIGINT):
    running = start_slow("--json=out.json")
    wait_for(unfinished)
    time.sleep(0.5)
    running.send_signal(sent)
    assert running.wait(60) == -sent
    recording = json.loads(contents("out.json"))["recording"]
    assert 0 < recording["bytes"] <= os.path.getsize(RECORDING), recording
    assert recording["packets"] > 0
    expect_files("out.json")


def termination():
    interrupt(signal.SIGTERM)


def interrupt_before_any_packet():
    # Nobody knows whether there are packets behind: nothing is written, nothing is said.
    for sent in (signal.SIGINT, signal.SIGTERM):
        write("out.json", b"before")
        running = subprocess.Popen([PROGRAM, "--json=out.json", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        wait_for(unfinished)
        time.sleep(0.5)
        running.send_signal(sent)
        assert running.wait(60) == -sent
        assert running.stdout.read() == b"" and running.stderr.read() == b""
        assert contents("out.json") == b"before"
        expect_files("out.json")


def interrupt_before_the_input_opens():
    os.mkfifo("pipe")
    running = subprocess.Popen([PROGRAM, "--json=out.json", "pipe"], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    time.sleep(1)
    running.send_signal(signal.SIGINT)
    assert running.wait(60) == -signal.SIGINT
    assert running.stdout.read() == b"" and running.stderr.read() == b""
    expect_files("pipe")


def second_interrupt():
    # The JSON goes first, to a pipe that nobody reads; the page cannot become whole.
    reading, writing = small_pipe()
    running = start_slow("--json=-", "--html=out.html", stdout=writing)
    os.close(writing)
    wait_for(unfinished)
    time.sleep(0.5)
    running.send_signal(signal.SIGINT)
    time.sleep(1)
    assert running.poll() is None, "the first interrupt writes what was read"
    running.send_signal(signal.SIGINT)
    assert running.wait(10) == -signal.SIGINT
    os.close(reading)
    expect_files()


def hang_up():
    running = start_slow("--json=out.json")
    wait_for(unfinished)
    running.send_signal(signal.SIGHUP)
    assert running.wait(10) == -signal.SIGHUP
    expect_files()


def closed_pipe():
    reading, writing = small_pipe()
    running = subprocess.Popen([PROGRAM, "--json=-", "--html=out.html", RECORDING], stdout=writing,
                               stderr=subprocess.PIPE)
    os.close(writing)
    os.read(reading, 10)
    os.close(reading)
    assert running.wait(60) == 1
    assert b"Broken pipe" in running.stderr.read()
    assert contents("out.html").rstrip().endswith(b"</html>")
    expect_files("out.html")


def standard_input():
    named = json.loads(run("--json=-", RECORDING).stdout)
    with open(RECORDING, "rb") as file:
        redirected = json.loads(run("--json=-", "-", stdin=file).stdout)
    piped = json.loads(run("--json=-", "-", input=contents(RECORDING)).stdout)
    assert named["recording"].pop("path") == RECORDING
    assert redirected["recording"].pop("path") == "-"
    assert piped["recording"].pop("path") == "-"
    assert redirected == named and piped == named
    expect_files()


def constant_memory():
    """300 MB in which no clock comes, 300 MB behind the end of a clock, and 300 MB without a packet."""
    null_packets = (bytes([0x47, 0x1F, 0xFF, 0x10]) + bytes(184)) * 20000
    no_packets = bytes(len(null_packets))
    for beginning, rest in ((b"", null_packets), (contents(RECORDING), null_packets), (contents(RECORDING), no_packets)):
        running = subprocess.Popen([PROGRAM, "-"], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)
        running.stdin.write(beginning)
        for _ in range(80):
            running.stdin.write(rest)
        running.stdin.close()
        _, status, usage = os.wait4(running.pid, 0)
        assert status == 0
        assert usage.ru_maxrss < 64 * 1024, usage.ru_maxrss  # KiB


def most_memory():
    """A stream that fills every store: it takes no more than is promised, and every output says what was not kept."""
    making = subprocess.Popen([sys.argv[4]], stdout=subprocess.PIPE)
    with open("out.txt", "wb") as text:
        running = subprocess.Popen([PROGRAM, "--json=out.json", "--html=out.html", "--text", "-"],
                                   stdin=making.stdout, stdout=text)
        making.stdout.close()
        _, status, usage = os.wait4(running.pid, 0)
    assert making.wait(60) == 0 and status == 0
    print("peak memory:", usage.ru_maxrss, "KiB, processor time:", usage.ru_utime + usage.ru_stime, "s")
    assert usage.ru_maxrss < 344000, usage.ru_maxrss

    reached = {limit["what"]: limit for limit in json.loads(contents("out.json"))["limits_reached"]}
    for what in ("guide", "cues", "headers sought", "teletext PIDs", "rate series", "transcript", "tables",
                 "tables whose intervals are judged", "tables whose gaps are judged"):
        assert reached[what]["dropped"] > 0, what
    summary = " ".join(contents("out.txt").decode().split())
    page = contents("out.html").decode()
    for what, limit in reached.items():
        assert f"{what} {limit['dropped']} (limit {limit['limit']})" in summary, what
        assert json.dumps(limit, separators=(",", ":")) in page, what
    assert usage.ru_utime < 60, usage.ru_utime


CASES = [exit_statuses, outputs_are_renamed, what_is_replaced_stays_until_the_end, links_are_written_through,
         pipes_are_written_in_place, unwritable_folder, full_disk, file_size_limit, output_is_the_input,
         nothing_found_replaces_nothing, interrupt, termination, interrupt_before_any_packet,
         interrupt_before_the_input_opens, second_interrupt, hang_up, closed_pipe, standard_input, constant_memory,
         most_memory]

if __name__ == "__main__":
    run_case(CASES)
