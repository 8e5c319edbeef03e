"""Locks: one plan, one run and one catalogue at a time in a folder."""

import contextlib
import fcntl
import os

from archive.errors import ArchiveError


@contextlib.contextmanager
def locked(folder, name, wait):
    """Holds the lock of that name, and gives its descriptor. Who does not wait is told that it is held.

    The lock is a file's, not a process's: it is held until the last process that inherited the descriptor has ended. So
    a run that was killed still holds it while tasks of its own go on, and nobody ever has to remove it.
    """
    folder.runs.mkdir(parents=True, exist_ok=True)
    descriptor = os.open(folder.runs / f".{name}.lock", os.O_RDWR | os.O_CREAT | os.O_CLOEXEC, 0o666)
    try:
        try:
            fcntl.flock(descriptor, fcntl.LOCK_EX | (0 if wait else fcntl.LOCK_NB))
        except BlockingIOError:
            raise ArchiveError(f"a {name} of '{folder.path}' is going on") from None
        yield descriptor
    finally:
        os.close(descriptor)


def is_locked(folder, name):
    """Whether somebody holds it."""
    try:
        descriptor = os.open(folder.runs / f".{name}.lock", os.O_RDWR | os.O_CLOEXEC)
    except FileNotFoundError:
        return False
    try:
        fcntl.flock(descriptor, fcntl.LOCK_SH | fcntl.LOCK_NB)
    except BlockingIOError:
        return True
    finally:
        os.close(descriptor)
    return False
