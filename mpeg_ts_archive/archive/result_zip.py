"""The result of a list: one zip, written aside and renamed, so that a result that is there is whole.

    facts.jsonl           a line a recording, in the order of the list
    overviews/0001.json   what was kept of the first recording of the list, and so on
    pages/0001.html
    reports/0001.txt

Members are numbered: whatever a recording is called, unpacking a result writes nowhere else. facts.jsonl has the names.
"""

import contextlib
import json
import os
import shutil
import socket
import zipfile

MEMBERS = {"json": "overviews/{:04d}.json", "html": "pages/{:04d}.html", "report": "reports/{:04d}.txt"}
FACTS = "facts.jsonl"


class ResultZip:
    """Open until it is finished or abandoned. OSError when there is no room."""

    def __init__(self, path):
        self.path = path
        # Two tasks of one list, one of them thought dead by Slurm and not so, do not meet.
        self.part = path.with_name(f"{path.name}.{socket.gethostname()}.{os.getpid()}.part")
        self.file = open(self.part, "w+b")
        self.zip = zipfile.ZipFile(self.file, "w", zipfile.ZIP_DEFLATED)
        self.facts = []

    def add_file(self, kind, number, file):
        """Puts a file in; returns the member's name."""
        name = MEMBERS[kind].format(number)
        with self.zip.open(_member(name), "w", force_zip64=True) as member:
            shutil.copyfileobj(file, member, 1 << 18)
        return name

    def add_facts(self, facts):
        self.facts.append(json.dumps(facts, ensure_ascii=False) + "\n")

    def finish(self):
        self.zip.writestr(_member(FACTS), "".join(self.facts))
        self.zip.close()
        self.file.flush()
        os.fsync(self.file.fileno())
        self.file.close()
        os.replace(self.part, self.path)

    def abandon(self):
        """Harmless when it is finished."""
        with contextlib.suppress(OSError, ValueError):
            self.zip.close()  # there may be no room for its directory
        with contextlib.suppress(OSError):
            self.file.close()
        with contextlib.suppress(FileNotFoundError):
            os.unlink(self.part)


def _member(name):
    info = zipfile.ZipInfo(name)  # of 1980: the same recordings give the same bytes
    info.compress_type = zipfile.ZIP_DEFLATED
    info.external_attr = 0o644 << 16
    return info


def read_facts(path):
    with zipfile.ZipFile(path) as result, result.open(FACTS) as lines:
        return [json.loads(line) for line in lines]
