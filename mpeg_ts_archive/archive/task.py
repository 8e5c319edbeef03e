"""The task: looks at each recording of one list and writes the list's result. What GNU parallel runs."""

import contextlib
import os
import signal
import socket
import sys

from archive.errors import ArchiveError
from archive.facts import facts_of
from archive.folder import number_text
from archive.overview import Fault, look_at
from archive.path_text import text_of
from archive.recording_list import read_list
from archive.result_zip import ResultZip

TRIES = 3


class TryAgain(Exception):
    """The storage or the node is at fault. Tries that count are limited: then the recording is a row as it is."""

    def __init__(self, message, counts):
        super().__init__(message)
        self.counts = counts


def do_list(folder, number, programs, keep):
    """Returns 0 when the list has its result, also when it had one before; 1 when it is to be tried again."""
    if folder.result(number).exists():
        return 0  # done by another run, or before Slurm put the task into its queue again
    for number_of_signal in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number_of_signal, _end)
    tries_file = folder.tries(number)
    last = _tries(tries_file) >= TRIES - 1
    try:
        _write_result(folder, number, programs, keep, last)
    except TryAgain as failure:
        if failure.counts:
            with open(tries_file, "a", encoding="utf-8") as tries:
                tries.write(f"{socket.gethostname()}: {failure}\n")
        print(f"list {number_text(number)}: {failure}", file=sys.stderr)
        return 1
    except OSError as error:
        print(f"list {number_text(number)}: cannot write the result: {error.strerror}", file=sys.stderr)
        return 1
    tries_file.unlink(missing_ok=True)
    return 0


def _end(number, _frame):
    """Ends by way of every finally: the program is ended, and what is half-written removed."""
    sys.exit(128 + number)


def _tries(path):
    try:
        return path.read_text("utf-8").count("\n")
    except FileNotFoundError:
        return 0


def _write_result(folder, number, programs, keep, last):
    storage = _Storage(folder.roots())
    recordings = read_list(folder.list(number))
    # A recording that is not there is found out before hours are spent on its neighbours.
    for recording in recordings:
        storage.must_hold(recording.path, last)

    result = ResultZip(folder.result(number))
    try:
        for index, recording in enumerate(recordings, 1):
            with contextlib.ExitStack() as files:
                looked = look_at(recording, programs, keep, files)
                if looked.fault in (Fault.STORAGE, Fault.NODE):
                    storage.must_be_there(recording.path)
                    counts = looked.fault is Fault.STORAGE
                    if not (counts and last):
                        raise TryAgain(f"'{text_of(recording.path)}': {looked.message}", counts)
                members = {kind: result.add_file(kind, index, file) for kind, file in looked.files.items()}
                result.add_facts(facts_of(recording, looked, members))
        result.finish()
    finally:
        result.abandon()


class _Storage:
    """The folders of recordings that lists were made of.

    A recording that is missing while its archive is there is a fault of the recording, after three tries. But while the
    archive is missing, or is the empty folder that a file system that is not mounted leaves, nothing can be said about
    any recording: no try counts then, however many there are.
    """

    def __init__(self, roots):
        self.roots = sorted(roots, key=len, reverse=True)

    def must_hold(self, path, last):
        try:
            os.close(os.open(path, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC))
        except OSError as error:
            self.must_be_there(path)
            if not last:
                raise TryAgain(f"cannot open '{text_of(path)}': {error.strerror}", counts=True) from None

    def must_be_there(self, path):
        root = next((root for root in self.roots if path.startswith(root.rstrip(b"/") + b"/")), None)
        if root is None:
            raise ArchiveError(f"'{text_of(path)}' is of no archive that was planned")
        try:
            with os.scandir(root) as entries:
                there = next(entries, None) is not None
        except OSError:
            there = False
        if not there:
            raise TryAgain(f"the storage '{text_of(root)}' is away", counts=False)
