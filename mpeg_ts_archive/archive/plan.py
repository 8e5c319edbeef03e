"""plan: new lists for recordings that no list has, or that have changed since."""

import dataclasses
import os
import stat
import sys

from archive.catalogue import unopened
from archive.errors import ArchiveError
from archive.lock import locked
from archive.path_text import text_of
from archive.recording_list import Recording, read_list, write_list


@dataclasses.dataclass(frozen=True)
class ListLimits:
    files: int  # recordings in a list, at most
    size: int  # bytes in a list, at most; a greater recording has a list of its own


def plan(folder, archives, limits, suffixes):
    """Makes the lists and says how many. Returns the exit status: 1 when a folder could not be read."""
    folder.path.mkdir(parents=True, exist_ok=True)
    with locked(folder, "plan", wait=False):
        folder.lists.mkdir(exist_ok=True)
        roots = [os.path.abspath(os.fsencode(archive)) for archive in archives]
        for root in roots:
            _must_be_readable(root)
            folder.add_root(root)

        to_try_again = _unread_that_can_be_read(folder)
        known = _known_recordings(folder, to_try_again)
        walk = _Walk(suffixes)
        first = next_list = (folder.list_numbers() or [0])[-1] + 1
        counts = {"new": 0, "changed": 0, "tried again": 0}
        seen = set()

        def wanted():
            for root in roots:
                for recording in walk.recordings(root):
                    if recording.path in seen:
                        continue  # of two archives one lies in the other
                    before = known.get(recording.path)
                    now = (recording.size, recording.mtime_ns)
                    if before == now and recording.path not in to_try_again:
                        continue
                    seen.add(recording.path)
                    kind = "new" if before is None else "changed" if before != now else "tried again"
                    counts[kind] += 1
                    yield recording

        for recordings in _in_lists(wanted(), limits):
            write_list(folder.list(next_list), recordings)
            next_list += 1
        _report(counts, next_list - first)
        return 1 if walk.unreadable else 0


def _must_be_readable(root):
    try:
        os.scandir(root).close()
    except OSError as error:
        raise ArchiveError(f"cannot read the archive '{text_of(root)}': {error.strerror}") from None


def _known_recordings(folder, to_try_again):
    """What the newest list that has a path says of it. What a list is to try again already is taken out of the set."""
    known = {}
    for number in folder.list_numbers():
        for recording in read_list(folder.list(number)):
            known[recording.path] = (recording.size, recording.mtime_ns)
            if to_try_again.get(recording.path, number) < number:
                del to_try_again[recording.path]
    return known


def _unread_that_can_be_read(folder):
    """Paths of the catalogue that could not be opened when their list was tried, and can be now, with that list.

    A storage that was away leaves such rows. It is no change of the recording that brings them back.
    """
    return {path: number for path, number in unopened(folder) if _can_be_opened(path)}


def _can_be_opened(path):
    try:
        os.close(os.open(path, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC))
    except OSError:
        return False
    return True


class _Walk:
    """The recordings below a folder, by name, so that neighbours share a list."""

    def __init__(self, suffixes):
        self.suffixes = tuple(os.fsencode(suffix.lower()) for suffix in suffixes)
        self.unreadable = 0

    def recordings(self, top):
        folders = [top]
        while folders:
            folder = folders.pop()
            try:
                with os.scandir(folder) as entries:
                    found = sorted(entries, key=lambda entry: entry.name)
            except OSError as error:
                self._complain(folder, error)
                continue
            # Links to folders are not followed: they may lead in circles.
            folders += [entry.path for entry in reversed(found) if entry.is_dir(follow_symlinks=False)]
            for entry in found:
                if entry.name.lower().endswith(self.suffixes):
                    yield from self._recording(entry)

    def _recording(self, entry):
        try:
            status = entry.stat()
        except OSError as error:  # gone meanwhile, or a link to nothing
            self._complain(entry.path, error)
            return
        if stat.S_ISREG(status.st_mode):
            yield Recording(entry.path, status.st_size, status.st_mtime_ns)

    def _complain(self, path, error):
        self.unreadable += 1
        print(f"mpeg_ts_archive: left out '{text_of(path)}': {error.strerror}", file=sys.stderr)


def _in_lists(recordings, limits):
    batch, size = [], 0
    for recording in recordings:
        if batch and (len(batch) == limits.files or size + recording.size > limits.size):
            yield batch
            batch, size = [], 0
        batch.append(recording)
        size += recording.size
    if batch:
        yield batch


def _report(counts, lists):
    if lists == 0:
        print("nothing new")
        return
    kinds = ", ".join(f"{count} {kind}" for kind, count in counts.items() if count)
    print(f"{lists} new {'list' if lists == 1 else 'lists'} of {sum(counts.values())} recordings ({kinds})")
