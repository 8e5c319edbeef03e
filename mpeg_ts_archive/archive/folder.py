"""The folder of an archive: where its lists, results, runs and catalogue are."""

import dataclasses
import os
import pathlib
import re

from archive.errors import ArchiveError
from archive.path_text import path_of, text_of

LIST_NAME = re.compile(r"([0-9]{6,})\.tsv")
RESULT_NAME = re.compile(r"([0-9]{6,})\.zip")


def number_text(number):
    """The number of a list as files have it: six digits or more."""
    return f"{number:06d}"


@dataclasses.dataclass(frozen=True)
class Folder:
    path: pathlib.Path  # absolute: tasks start in other folders and on other machines

    @property
    def lists(self):
        return self.path / "lists"

    @property
    def results(self):
        return self.path / "results"

    @property
    def runs(self):
        return self.path / "runs"

    @property
    def pages(self):
        return self.path / "pages"

    @property
    def catalogue(self):
        return self.path / "catalogue.sqlite"

    @property
    def index(self):
        return self.path / "index.html"

    def list(self, number):
        return self.lists / (number_text(number) + ".tsv")

    def result(self, number):
        return self.results / (number_text(number) + ".zip")

    def tries(self, number):
        """A line for each try of a list that failed by the storage's fault or the node's."""
        return self.results / (number_text(number) + ".tries")

    def list_numbers(self):
        """Those of all lists, in order."""
        return _numbers(self.lists, LIST_NAME)

    def result_numbers(self):
        """Those of the lists that are done, in order."""
        return _numbers(self.results, RESULT_NAME)

    def must_have_lists(self):
        if not self.lists.is_dir():
            raise ArchiveError(f"there are no lists in '{self.path}': mpeg_ts_archive plan makes them")

    def roots(self):
        """What was given to plan: folders of recordings, as bytes."""
        try:
            lines = self._roots_file().read_text("utf-8").split("\n")
        except FileNotFoundError:
            return []
        return [path_of(line) for line in lines if line]

    def add_root(self, root):
        if root not in self.roots():
            with open(self._roots_file(), "a", encoding="utf-8") as file:
                file.write(text_of(root) + "\n")

    def _roots_file(self):
        return self.lists / "archives.txt"


def _numbers(folder, name):
    try:
        found = os.listdir(folder)
    except FileNotFoundError:
        return []
    return sorted(int(match.group(1)) for match in map(name.fullmatch, found) if match)


def written_aside(path, text):
    """Writes a file under another name and gives it its own when it is whole."""
    part = path.with_name(f"{path.name}.{os.getpid()}.part")
    try:
        with open(part, "w", encoding="utf-8", newline="\n") as file:
            file.write(text)
            file.flush()
            os.fsync(file.fileno())
        os.replace(part, path)
    except BaseException:
        part.unlink(missing_ok=True)
        raise
