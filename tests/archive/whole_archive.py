"""An archive of sixty recordings, what mpeg_ts_overview alone says of each, and an undisturbed run to compare with."""

import json
import os
import subprocess

from archive_case import OVERVIEW, ArchiveCase
from archive.path_text import path_of
from recordings import COUNT, make_recordings

VERDICTS = {}  # by the content of a recording: many are copies


class WholeArchive(ArchiveCase):
    """One archive for all tests of a class, which do not change it: times of change stay the same."""

    def setUp(self):
        super().setUp()
        self.readable, self.unreadable = make_recordings(self.recordings)

    def assert_catalogue_has_each_with_the_verdict_of_the_overview_alone(self):
        rows = {path_of(row[0]): row[1:] for row in self.rows(
            "SELECT path, exit, message, standard, duration_s, mean_bps, packets, p1_failed, p2_failed, p3_failed FROM recording"
        )}  # fmt: skip
        self.assertEqual(len(self.readable) + len(self.unreadable), COUNT)
        self.assertEqual(self.rows("SELECT count(*) FROM recording"), [(COUNT,)])
        self.assertEqual(sorted(rows), sorted(self.readable + self.unreadable))
        for path in self.unreadable:
            self.assertEqual(rows[path][:2], (None, "cannot open: Permission denied"))
        failed = {}
        for path, check in self.rows("SELECT path, id FROM failed_check"):
            failed.setdefault(path_of(path), set()).add(check)
        for path in self.readable:
            verdict, checks = verdict_alone(path)
            self.assertEqual(rows[path], verdict, path)
            self.assertEqual(failed.get(path, set()), checks, path)

    def undisturbed(self, files, *options):
        """The catalogue of the same archive, run by GNU parallel without disturbance."""
        work, program = self.work, self.program
        self.work, self.program = self.scratch / "undisturbed", OVERVIEW
        self.folder = type(self.folder)(self.work)
        try:
            self.plan("--files", str(files))
            self.command("run", *options)
            return self.catalogue()
        finally:
            self.work, self.program = work, program
            self.folder = type(self.folder)(work)

    def assert_as_undisturbed(self, files):
        self.assert_all_done()
        expected, found = self.undisturbed(files), self.catalogue()
        for table in expected:
            self.assertEqual(found[table], expected[table])


def verdict_alone(path):
    """The row of a recording but for names and times, and the checks that fail."""
    with open(path, "rb") as file:
        content = file.read()
    if content not in VERDICTS:
        done = subprocess.run([OVERVIEW, "--json=-", path], capture_output=True, check=False)
        VERDICTS[content] = _verdict_of(done)
    return VERDICTS[content]


def _verdict_of(done):
    if done.returncode != 0:
        message = os.fsdecode(done.stderr).strip().removeprefix("mpeg_ts_overview: ")
        return (done.returncode, message, *[None] * 7), set()
    overview = json.loads(done.stdout)
    failed = [check for check in overview["checks"] if check["result"] == "fail"]
    about = overview["recording"]
    counts = [sum(check["priority"] == priority for check in failed) for priority in (1, 2, 3)]
    row = (0, None, *(about[key] for key in ("standard", "duration_s", "mean_bps", "packets")), *counts)
    return row, {check["id"] for check in failed}
