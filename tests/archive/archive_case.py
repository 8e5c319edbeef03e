"""What the tests of mpeg_ts_archive share: a folder with an archive, the command, and what must always hold."""

import collections
import os
import pathlib
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
COMMAND = ROOT / "mpeg_ts_archive" / "mpeg_ts_archive"
sys.dont_write_bytecode = True
sys.path.insert(0, str(COMMAND.parent))

from archive.folder import Folder  # noqa: E402
from archive.path_text import path_of  # noqa: E402
from archive.recording_list import read_list  # noqa: E402
from archive.result_zip import read_facts  # noqa: E402

OVERVIEW = os.path.abspath(os.environ["MPEG_TS_OVERVIEW"])
SKIPPED = 77
PATIENCE = 60  # seconds, of each wait

# A stand-in that notes what it looks at, and does as it is told before it becomes the program: by names, or by the
# file "hold" with a number, beyond which calls wait until the file has gone.
STAND_IN = """#!/bin/sh
for recording; do :; done
printf '%s\\0' "$recording" >>'{control}/looked'
held() {{
    [ -e '{control}/hold' ] && [ "$(tr -cd '\\0' <'{control}/looked' | wc -c)" -gt "$(cat '{control}/hold')" ]
}}
while held 2>/dev/null; do
    : >'{control}/held.'$$
    sleep 0.05
done
{behaviour}
exec '{program}' "$@"
"""


def need(*programs):
    """Ends the tests as skipped where one is missing."""
    for program in programs:
        if shutil.which(program, path=os.environ["PATH"] + ":/usr/sbin:/sbin") is None:
            print(f"{program} is not here: skipped")
            sys.exit(SKIPPED)


class ArchiveCase(unittest.TestCase):
    """Has a folder of its own: recordings/ is the archive, work/ has lists and results."""

    def setUp(self):
        self.scratch = pathlib.Path(tempfile.mkdtemp(prefix="archive_test_"))
        self.addCleanup(self.remove_scratch)
        self.recordings = self.scratch / "recordings"
        self.recordings.mkdir()
        self.work = self.scratch / "work"
        self.folder = Folder(self.work)
        self.program = OVERVIEW

    def remove_scratch(self):
        self.end_processes()
        shutil.rmtree(self.scratch, ignore_errors=True)

    def environment(self):
        return {**os.environ, "MPEG_TS_OVERVIEW": str(self.program), "MPEG_TS_ANALYSIS": str(self.program)}

    def words(self, *words):
        return [COMMAND, words[0], "--folder", self.work, *words[1:]]

    def command(self, *words, status=0, **how):
        """Runs it and returns what it said on standard output and standard error."""
        how.setdefault("env", self.environment())
        done = subprocess.run(
            self.words(*words), stdin=subprocess.DEVNULL, capture_output=True, timeout=300, check=False, **how
        )
        said = done.stdout.decode(), done.stderr.decode()
        self.assertEqual(done.returncode, status, said)
        return said

    def start(self, *words):
        """Starts it in a session of its own; what it says goes to the file "said"."""
        with open(self.scratch / "said", "ab") as said:
            return subprocess.Popen(
                self.words(*words), stdin=subprocess.DEVNULL, stdout=said, stderr=said, env=self.environment(),
                start_new_session=True,
            )  # fmt: skip

    def plan(self, *words, **how):
        return self.command("plan", self.recordings, *words, **how)

    def record(self, name, content=b"recorded"):
        path = os.path.join(os.fsencode(self.recordings), name if isinstance(name, bytes) else name.encode())
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content)
        return path

    # The stand-in

    def stand_in(self, behaviour="", program=OVERVIEW):
        self.control = self.scratch / "control"
        self.control.mkdir(exist_ok=True)
        (self.control / "looked").touch()
        self.program = self.scratch / "stand_in"
        text = STAND_IN.format(control=self.control, behaviour=behaviour, program=program)
        self.program.write_text(text)
        self.program.chmod(0o755)

    def looked(self):
        """How often each recording was looked at."""
        return collections.Counter((self.control / "looked").read_bytes().split(b"\0")[:-1])

    def hold_after(self, count):
        (self.control / "hold").write_text(str(count))

    def let_go(self):
        (self.control / "hold").unlink()

    def wait_until_held(self, count):
        """Until so many calls wait, which is as many as can be going on."""
        self.wait_for(lambda: len(list(self.control.glob("held.*"))) >= count, f"{count} calls that are held")

    @staticmethod
    def wait_for(condition, what, patience=PATIENCE):
        end = time.monotonic() + patience
        while not condition():
            if time.monotonic() > end:
                raise AssertionError("in vain waited for " + what)
            time.sleep(0.05)

    # Processes of this test, and of nothing else: they name its folder

    def processes(self, part=b""):
        found = []
        for entry in os.listdir("/proc"):
            if not entry.isdigit() or int(entry) == os.getpid():
                continue
            try:
                words = pathlib.Path("/proc", entry, "cmdline").read_bytes()
            except OSError:
                continue
            if os.fsencode(self.scratch) in words and part in words:
                found.append(int(entry))
        return found

    def tasks(self):
        return self.processes(b"\0task\0--folder\0")

    def end_processes(self):
        """Kills all of them. Some may start others meanwhile."""

        def killed():
            for process in self.processes():
                try:
                    os.kill(process, signal.SIGKILL)
                except ProcessLookupError:
                    pass
            return not self.processes()

        self.wait_for(killed, "the end of all processes")

    # What must hold

    def results(self):
        """Which file each result is: one that is written again is another."""
        found = {}
        for number in self.folder.result_numbers():
            status = self.folder.result(number).stat()
            found[number] = (status.st_ino, status.st_mtime_ns)
        return found

    def assert_results_whole(self):
        """What has a final name is whole: each recording of the list, in order, and the files that it names."""
        for number in self.folder.result_numbers():
            with zipfile.ZipFile(self.folder.result(number)) as result:
                self.assertIsNone(result.testzip())
                members = set(result.namelist())
            facts = read_facts(self.folder.result(number))
            listed = [recording.path for recording in read_list(self.folder.list(number))]
            self.assertEqual([path_of(each["path"]) for each in facts], listed)
            for each in facts:
                self.assertLessEqual(set(each["members"].values()), members)

    def assert_all_done(self):
        self.assertEqual(self.folder.result_numbers(), self.folder.list_numbers())
        self.assert_results_whole()
        self.assertEqual(sorted(self.folder.results.glob("*.tries")), [])

    def assert_not_done_again(self, before):
        """before: what results() said; and no recording of theirs was looked at twice."""
        now, looked = self.results(), self.looked()
        for number, version in before.items():
            self.assertEqual(now[number], version)
            for recording in read_list(self.folder.list(number)):
                self.assertEqual(looked[recording.path], 1, recording.path)

    def rows(self, query):
        catalogue = sqlite3.connect(self.folder.catalogue)
        try:
            return catalogue.execute(query).fetchall()
        finally:
            catalogue.close()

    def catalogue(self, with_lists=True):
        """All of it but how long things took."""
        lists = "list" if with_lists else "NULL"
        return {
            "recording": self.rows(
                "SELECT path, size, mtime, exit, message, standard, duration_s, mean_bps, packets, programs, "
                f"p1_failed, p2_failed, p3_failed, {lists} FROM recording ORDER BY path"
            ),
            "service": self.rows("SELECT * FROM service ORDER BY path, number, name"),
            "failed_check": self.rows("SELECT * FROM failed_check ORDER BY path, id"),
        }
