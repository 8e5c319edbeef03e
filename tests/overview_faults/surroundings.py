"""What the cases of overview_*.py share: PROGRAM and RECORDING are the first two arguments, CASE is the third.

RECORDING is a file of transport packets whose JSON is longer than 4096 bytes.
"""
import fcntl
import os
import signal
import subprocess
import sys
import tempfile
import time

PROGRAM, RECORDING = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])


def run(*options, **how):
    how.setdefault("stdout", subprocess.PIPE)
    how.setdefault("timeout", 60)
    return subprocess.run([PROGRAM, *options], stderr=subprocess.PIPE, check=False, **how)


def expect_status(done, status, words=b""):
    assert done.returncode == status, (done.returncode, done.stderr)
    assert words in done.stderr, done.stderr


def contents(path):
    with open(path, "rb") as file:
        return file.read()


def write(path, content):
    with open(path, "wb") as file:
        file.write(content)


def expect_files(*names):
    assert sorted(os.listdir(".")) == sorted(names), os.listdir(".")


def packet(pid, counter):
    return bytes([0x47, pid >> 8, pid & 0xFF, 0x10 | counter % 16]) + bytes([0x11]) * 184


def small_pipe():
    """Both ends of a pipe that holds 4096 bytes."""
    reading, writing = os.pipe()
    fcntl.fcntl(writing, getattr(fcntl, "F_SETPIPE_SZ", 1031), 4096)
    return reading, writing


def wait_for(condition):
    for _ in range(600):
        if condition():
            return
        time.sleep(0.05)
    raise AssertionError("it never happened")


def unfinished():
    return [name for name in os.listdir(".") if name.startswith(".mpeg_ts_overview.")]


def start_slow(*options, **how):
    """The program on a pipe that has given the recording and stays open."""
    how.setdefault("stdout", subprocess.DEVNULL)
    running = subprocess.Popen([PROGRAM, *options, "-"], stdin=subprocess.PIPE, stderr=subprocess.PIPE, **how)
    running.stdin.write(contents(RECORDING))
    running.stdin.flush()
    # All but what the pipe holds has been read, which is less than the half.
    return running


def run_case(cases):
    """Runs the case of the command line in an empty folder."""
    signal.signal(signal.SIGINT, signal.default_int_handler)  # a child would inherit that it is ignored
    with tempfile.TemporaryDirectory() as work:
        os.chdir(work)
        {case.__name__: case for case in cases}[sys.argv[3]]()
