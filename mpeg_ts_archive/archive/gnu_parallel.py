"""Runs the task on each list by GNU parallel, here or over ssh.

A list that fails is retried by it, on another host if there is one.
"""

import os
import shlex
import signal
import subprocess

from archive.errors import ArchiveError
from archive.task import TRIES


def task_words(command, folder, programs, keep):
    """The task's command line, but for the list."""
    words = [
        str(command), "task", "--folder", str(folder.path), "--overview", programs.overview,
        "--analysis", programs.analysis, "--keep", ",".join(keep),
    ]  # fmt: skip
    for word in words:
        if "{" in word:
            raise ArchiveError(f"a path with '{{' in it would mean something to GNU parallel: '{word}'")
    return words


def run_by_parallel(task, run, slots, hosts, lock):
    """Waits until all lists have been tried. The run's lock is handed on: it is held as long as a task lives."""
    options = ["--joblog", str(run / "joblog")]
    if slots:
        options += ["--jobs", str(slots)]
    if hosts:
        options += ["--sshlogin", hosts]
    words = ["parallel", "--retries", str(TRIES), *options, shlex.join(task) + " {}"]
    (run / "submitted").write_text(shlex.join(words) + "\n", encoding="utf-8", errors="surrogateescape")

    # Tasks are started by the shell that is everywhere, whatever shell the user has.
    environment = {**os.environ, "PARALLEL_SHELL": "/bin/sh"}
    with open(run / "lists", "rb") as lists, open(run / "log", "wb") as log:
        parallel = subprocess.Popen(
            words, stdin=lists, stdout=log, stderr=log, pass_fds=[lock], env=environment
        )
        before = {
            number: signal.signal(number, _end) for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)
        }
        try:
            return parallel.wait()
        finally:
            if parallel.poll() is None:
                # The first lets it start no more, the second ends what it has started.
                parallel.send_signal(signal.SIGTERM)
                parallel.send_signal(signal.SIGTERM)
                parallel.wait()
            for number, handler in before.items():
                signal.signal(number, handler)


def _end(number, _frame):
    raise SystemExit(128 + number)
