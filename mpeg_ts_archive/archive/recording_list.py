"""A list of recordings: size, time of the last change and path of each, a line a recording, tabs between.

Lists are frozen: none is ever written again. What is new or has changed goes to a new list.
"""

import dataclasses

from archive.errors import ArchiveError
from archive.folder import written_aside
from archive.path_text import path_of, text_of


@dataclasses.dataclass(frozen=True)
class Recording:
    path: bytes  # absolute
    size: int  # bytes
    mtime_ns: int  # nanoseconds since 1970

    def line(self):
        return f"{self.size}\t{mtime_text(self.mtime_ns)}\t{text_of(self.path)}\n"


def mtime_text(mtime_ns):
    """Seconds since 1970, with all nine digits: lists are compared by it."""
    return f"{mtime_ns // 10**9}.{mtime_ns % 10**9:09d}"


def mtime_ns_of(text):
    seconds, digits = text.split(".")
    return int(seconds) * 10**9 + int(digits)


def write_list(path, recordings):
    written_aside(path, "".join(recording.line() for recording in recordings))


def read_list(path):
    try:
        # Lines end at line feeds only: splitlines would end them at other characters of Unicode too.
        lines = path.read_bytes().decode("utf-8").split("\n")
        return [_recording_of(line) for line in lines if line]
    except OSError as error:
        raise ArchiveError(f"cannot read the list '{path}': {error.strerror}") from None
    except ValueError as error:
        raise ArchiveError(f"'{path}' is not a list of recordings: {error}") from None


def _recording_of(line):
    size, mtime, path = line.split("\t")
    return Recording(path_of(path), int(size), mtime_ns_of(mtime))
