#!/usr/bin/env python3
"""The overview on inputs that change, fail or have strange names: overview_inputs.py PROGRAM RECORDING CASE"""
import json
import os
import pty
import signal
import subprocess
import threading
import tty

from surroundings import (PROGRAM, RECORDING, contents, expect_files, expect_status, run, run_case, start_slow,
                          unfinished, wait_for, write)

PACKET = 188


def json_after(change):
    """The JSON of recording.ts, which changes when it is open and before any of it is read; and the exit status."""
    write("recording.ts", contents(RECORDING))
    os.mkfifo("fifo")
    # The program waits here until somebody reads its output.
    with subprocess.Popen([PROGRAM, "--json=fifo", "recording.ts"], stderr=subprocess.PIPE) as running:
        wait_for(lambda: has_open(running.pid, "recording.ts"))
        change()
        written = contents("fifo")
        status = running.wait(60)
        return status, json.loads(written) if written else running.stderr.read()


def has_open(process, name):
    folder = f"/proc/{process}/fd"
    links = [os.path.join(folder, descriptor) for descriptor in os.listdir(folder)]
    return os.path.realpath(name) in map(os.path.realpath, links)


def input_grows():
    def grow():
        with open("recording.ts", "ab") as file:
            file.write(contents(RECORDING))

    status, output = json_after(grow)
    assert status == 0
    assert output["recording"]["bytes"] == 2 * os.path.getsize(RECORDING)


def input_shrinks():
    status, output = json_after(lambda: os.truncate("recording.ts", 100 * PACKET + 7))
    assert status == 0
    recording = output["recording"]
    assert (recording["bytes"], recording["packets"], recording["trailing_bytes"]) == (100 * PACKET + 7, 100, 7)


def input_shrinks_to_nothing():
    status, words = json_after(lambda: os.truncate("recording.ts", 0))
    assert status == 1
    assert words == b"mpeg_ts_overview: no transport packets found\n", words


def input_grows_while_it_is_read():
    """Whatever part is seen, its packets and bytes agree."""
    part = contents(RECORDING)
    write("recording.ts", part)
    ended = threading.Event()

    def grow():
        with open("recording.ts", "ab", buffering=0) as file:
            for _ in range(400):
                if ended.is_set():
                    return
                file.write(part)

    writer = threading.Thread(target=grow)
    writer.start()
    done = run("--json=out.json", "recording.ts")
    ended.set()
    writer.join()
    expect_status(done, 0)
    recording = json.loads(contents("out.json"))["recording"]
    assert len(part) <= recording["bytes"] <= os.path.getsize("recording.ts"), recording
    assert recording["packets"] * PACKET + recording["trailing_bytes"] == recording["bytes"], recording


def reading_fails():
    """A terminal whose other end is closed gives what was written, then an error."""
    reading, writing = pty.openpty()
    tty.setraw(writing)
    running = subprocess.Popen([PROGRAM, "--check", "--json=out.json", "-"], stdin=reading, stderr=subprocess.PIPE)
    os.close(reading)
    rest = contents(RECORDING)
    while rest:
        rest = rest[os.write(writing, rest):]
    os.close(writing)
    assert running.wait(60) == 1
    assert running.stderr.read() == b"mpeg_ts_overview: cannot read '-': Input/output error\n"
    # What was read is not lost.
    recording = json.loads(contents("out.json"))["recording"]
    assert 0 < recording["bytes"] <= os.path.getsize(RECORDING), recording
    expect_files("out.json")


def reading_fails_at_once():
    write("out.json", b"before")
    expect_status(run("--json=out.json", "/proc/self/mem"), 1, b"cannot read '/proc/self/mem': Input/output error\n")
    assert contents("out.json") == b"before"
    expect_files("out.json")


def input_is_closed():
    done = run("--json=out.json", "-", preexec_fn=lambda: os.close(0))
    expect_status(done, 1, b"mpeg_ts_overview: cannot read '-': Bad file descriptor\n")
    expect_files()


def interrupt_while_a_pipe_has_no_other_end():
    os.mkfifo("fifo")
    for arguments in (["fifo"], ["--json=fifo", RECORDING]):
        running = subprocess.Popen([PROGRAM, *arguments], stderr=subprocess.PIPE)
        # It takes signals and then waits in open().
        wait_for(lambda: catches(running.pid, signal.SIGINT))
        wait_for(lambda: contents(f"/proc/{running.pid}/stat").rsplit(b")", 1)[1].split()[0] == b"S")
        running.send_signal(signal.SIGINT)
        assert running.wait(60) == -signal.SIGINT
        assert running.stderr.read() == b""
    expect_files("fifo")


def catches(process, number):
    with open(f"/proc/{process}/status", encoding="ascii") as file:
        caught = next(int(line.split()[1], 16) for line in file if line.startswith("SigCgt"))
    return caught >> (number - 1) & 1


def interrupt_with_every_output():
    with open("summary", "wb") as summary:
        running = start_slow("--json=out.json", "--html=out.html", "--text", stdout=summary)
    # The pipe holds less than what is written to it: the rest has been read.
    wait_for(lambda: len(unfinished()) == 2)
    running.stdin.write(contents(RECORDING))
    running.stdin.flush()
    running.send_signal(signal.SIGINT)
    assert running.wait(60) == -signal.SIGINT
    assert json.loads(contents("out.json"))["recording"]["packets"] > 0
    assert contents("out.html").rstrip().endswith(b"</html>")
    assert contents("summary").startswith(b"-   ")
    expect_files("out.json", "out.html", "summary")


def names_with_controls():
    """No control character of a name reaches a terminal."""
    name = "a\x1b[31mb\nc\x7fd\u009be.ts"
    os.symlink(RECORDING, name)
    expect_status(run("absent" + name), 1, "cannot open 'absenta[31mbcde.ts': No such file".encode())
    expect_status(run("--no-such-option" + name, name), 1, b"--no-such-optiona[31mbcde.ts\n")
    expect_status(run("--json=absent/" + name, name), 1, "cannot write 'absent/a[31mbcde.ts'".encode())
    summary = run(name).stdout.decode()
    assert summary.startswith("a[31mbcde.ts   "), summary
    assert all(character == "\n" or character.isprintable() for character in summary), summary
    assert json.loads(run("--json=-", name).stdout)["recording"]["path"] == name


def names_that_are_no_utf_8():
    name = b"\xe9\xe4\xbd.\xff\xc3\xa9.ts"
    os.symlink(os.fsencode(RECORDING), name)
    shown = name.decode(errors="replace")
    assert json.loads(run("--json=-", name).stdout)["recording"]["path"] == shown
    assert run(name).stdout.decode().startswith(shown + "   ")
    assert json.dumps(shown, ensure_ascii=False).encode() in run("--html=-", name).stdout


CASES = [input_grows, input_shrinks, input_shrinks_to_nothing, input_grows_while_it_is_read, reading_fails,
         reading_fails_at_once, input_is_closed, interrupt_while_a_pipe_has_no_other_end, interrupt_with_every_output,
         names_with_controls, names_that_are_no_utf_8]

if __name__ == "__main__":
    run_case(CASES)
