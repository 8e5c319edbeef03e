"""catalogue: brings catalogue.sqlite up to date with the results that are there. Safe at any time."""

import contextlib
import pathlib
import sqlite3
import sys
import zipfile

from archive.errors import ArchiveError
from archive.folder import number_text
from archive.lock import locked
from archive.path_text import path_of
from archive.result_zip import read_facts

COLUMNS = (
    "path", "size", "mtime", "seconds", "exit", "message", "standard", "duration_s", "mean_bps", "packets", "programs",
    "p1_failed", "p2_failed", "p3_failed",
)  # fmt: skip
RESULTS_IN_TRANSACTION = 50


def bring_up_to_date(folder):
    """Returns how many recordings were read anew, and how many results could not be read."""
    with locked(folder, "catalogue", wait=True), open_catalogue(folder) as catalogue:
        read = broken = 0
        new = _new_results(folder, catalogue)
        for first in range(0, len(new), RESULTS_IN_TRANSACTION):
            # Who is killed here leaves a journal, and the next one who opens the catalogue undoes what was half done.
            with catalogue:
                for number, version in new[first : first + RESULTS_IN_TRANSACTION]:
                    try:
                        facts = read_facts(folder.result(number))
                    except (OSError, KeyError, ValueError, zipfile.BadZipFile) as error:
                        print(
                            f"mpeg_ts_archive: cannot read '{folder.result(number)}': {error}",
                            file=sys.stderr,
                        )
                        broken += 1
                        continue
                    _add(catalogue, number, facts)
                    catalogue.execute("REPLACE INTO result VALUES (?, ?, ?)", (number, *version))
                    read += len(facts)
        return read, broken


@contextlib.contextmanager
def open_catalogue(folder):
    try:
        catalogue = sqlite3.connect(folder.catalogue, timeout=60)
        with contextlib.closing(catalogue):
            with catalogue:
                catalogue.executescript(pathlib.Path(__file__).with_name("schema.sql").read_text("utf-8"))
            yield catalogue
    except sqlite3.Error as error:
        raise ArchiveError(f"'{folder.catalogue}': {error}") from None


def _new_results(folder, catalogue):
    known = {
        number: version for number, *version in catalogue.execute("SELECT list, size, mtime_ns FROM result")
    }
    results = []
    for number in folder.result_numbers():
        status = folder.result(number).stat()
        version = [status.st_size, status.st_mtime_ns]
        if known.get(number) != version:
            results.append((number, version))
    return results


def _add(catalogue, number, facts):
    """Of two receptions of a path that of the newer list stands, whatever order results come in."""
    paths = [(each["path"],) for each in facts]
    newer = {
        path
        for parameters in paths
        for (path,) in catalogue.execute(
            "SELECT path FROM recording WHERE path = ? AND list > ?", (*parameters, number)
        )
    }
    facts = [each for each in facts if each["path"] not in newer]
    replaced = [(each["path"],) for each in facts]
    for table in ("service", "failed_check", "page"):
        catalogue.executemany(f"DELETE FROM {table} WHERE path = ?", replaced)
    places = ", ".join("?" * (len(COLUMNS) + 1))
    catalogue.executemany(
        f"REPLACE INTO recording ({', '.join(COLUMNS)}, list) VALUES ({places})",
        ([*map(each.get, COLUMNS), number] for each in facts),
    )
    catalogue.executemany(
        "INSERT INTO service VALUES (?, ?, ?, ?)", _rows_of(facts, "services", "number name provider")
    )
    catalogue.executemany(
        "INSERT INTO failed_check VALUES (?, ?, ?, ?, ?)",
        _rows_of(facts, "failed_checks", "id count first_s worst"),
    )
    catalogue.executemany(
        "INSERT INTO page VALUES (?, ?)",
        ((each["path"], each["members"]["html"]) for each in facts if "html" in each["members"]),
    )


def _rows_of(facts, key, columns):
    for each in facts:
        for row in each.get(key, ()):
            yield [each["path"], *map(row.get, columns.split())]


def unopened(folder):
    """Paths, as bytes, of recordings that could not be opened, with the list that says so."""
    if not folder.catalogue.exists():
        return []
    with open_catalogue(folder) as catalogue:
        rows = catalogue.execute("SELECT path, list FROM recording WHERE exit IS NULL").fetchall()
    return [(path_of(text), number) for text, number in rows]


def pages_by_list(catalogue):
    """Numbers of lists with members of the pages that stand."""
    found = {}
    for number, member in catalogue.execute(
        "SELECT list, member FROM page JOIN recording USING (path) ORDER BY list"
    ):
        found.setdefault(number, []).append(member)
    return found


def page_path(number, member):
    """Where a page is unpacked to, seen from the folder of the archive."""
    return f"pages/{number_text(number)}/{member.rpartition('/')[2]}"
