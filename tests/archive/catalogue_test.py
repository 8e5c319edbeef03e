"""catalogue: what results say, each recording once, the newest reception."""

import json
import os
import signal
import subprocess
import unittest
import zipfile

from archive_case import ROOT, ArchiveCase
from archive.path_text import text_of
from recordings import ODD_NAMES


class Catalogue(ArchiveCase):
    def task(self, number):
        self.folder.results.mkdir(exist_ok=True)
        programs = ["--overview", str(self.program), "--analysis", str(self.program)]
        self.command("task", *programs, str(number))

    def sample(self, name, sample):
        return self.record(name, (ROOT / "samples" / sample).read_bytes())

    def text(self, name):
        return f"{self.recordings}/{name}"

    def write_result(self, number, *facts):
        """A result as a task might have written it."""
        self.folder.results.mkdir(parents=True, exist_ok=True)
        self.folder.lists.mkdir(parents=True, exist_ok=True)
        with zipfile.ZipFile(self.folder.result(number), "w") as result:
            lines = [
                json.dumps({"path": "/a", "size": 1, "mtime": "1.0", "exit": 0, "members": {}, **each})
                for each in facts
            ]
            result.writestr("facts.jsonl", "\n".join(lines) + "\n")

    def test_has_a_row_of_each_recording_with_its_services_and_failed_checks(self):
        self.sample("dvb.ts", "dvb.ts")
        self.record("empty.ts", b"")
        self.plan()
        self.task(1)
        self.assertEqual(self.command("catalogue")[0], "2 recordings read\n")
        rows = self.rows("SELECT path, exit, message, standard, packets, programs, p1_failed, p2_failed, p3_failed, list "
                         "FROM recording ORDER BY path")  # fmt: skip
        self.assertEqual(rows, [
            (self.text("dvb.ts"), 0, None, "DVB", 46, 2, 0, 0, 1, 1),
            (self.text("empty.ts"), 1, "no transport packets found", None, None, None, None, None, None, 1),
        ])  # fmt: skip
        self.assertEqual(
            [name for (name,) in self.rows("SELECT name FROM service")], ["Sample One", "Sample Two HD"]
        )
        self.assertEqual(self.rows("SELECT path, id FROM failed_check"), [(self.text("dvb.ts"), "X.1")])

    def test_reads_each_result_once_and_one_that_was_made_anew_again(self):
        self.sample("a.ts", "dvb.ts")
        self.plan()
        self.task(1)
        self.assertEqual(self.command("catalogue")[0], "1 recordings read\n")
        self.assertEqual(self.command("catalogue")[0], "0 recordings read\n")
        self.sample("a.ts", "atsc.ts")
        self.folder.result(1).unlink()
        self.task(1)
        self.assertEqual(self.command("catalogue")[0], "1 recordings read\n")
        self.assertEqual(self.rows("SELECT standard FROM recording"), [("ATSC",)])
        self.assertEqual(self.rows("SELECT count(*) FROM service"), [(1,)])

    def test_the_newer_reception_stands_whatever_order_results_come_in(self):
        old = {
            "standard": "MPEG",
            "services": [{"number": 1, "name": "old"}],
            "failed_checks": [{"id": "1.4"}],
        }
        new = {"standard": "DVB", "services": [{"number": 2, "name": "new"}]}
        self.write_result(10, new)
        self.command("catalogue")
        self.write_result(9, old)
        self.command("catalogue")
        found = self.rows("SELECT standard, list FROM recording"), self.rows(
            "SELECT number, name FROM service"
        )
        self.assertEqual(found, ([("DVB", 10)], [(2, "new")]))
        self.assertEqual(self.rows("SELECT * FROM failed_check"), [])

        self.folder.catalogue.unlink()
        self.command("catalogue")
        self.assertEqual(
            (
                self.rows("SELECT standard, list FROM recording"),
                self.rows("SELECT number, name FROM service"),
            ),
            found,
        )

    def test_odd_names_are_found_by_their_text(self):
        for name in ODD_NAMES:
            self.sample(name, "teletext.ts")
        self.plan()
        self.task(1)
        self.command("catalogue")
        expected = sorted(text_of(os.fsencode(self.recordings) + b"/" + name) for name in ODD_NAMES)
        self.assertEqual(sorted(path for (path,) in self.rows("SELECT path FROM recording")), expected)

    def test_a_result_that_cannot_be_read_is_said_and_the_others_are_read(self):
        self.write_result(1, {})
        self.write_result(2, {"path": "/b"})
        self.folder.result(1).write_bytes(b"PK no zip")
        said, complaint = self.command("catalogue", status=1)
        self.assertEqual(said, "1 recordings read\n")
        self.assertIn(f"cannot read '{self.folder.result(1)}'", complaint)
        self.write_result(1, {})
        self.assertEqual(self.command("catalogue")[0], "1 recordings read\n")

    def test_several_at_once_and_one_that_is_killed_do_no_harm(self):
        for number in range(1, 200):
            self.write_result(number, *({"path": f"/{number}/{index}"} for index in range(20)))
        started = [self.start("catalogue") for _ in range(3)]
        self.wait_for(self.folder.catalogue.exists, "a catalogue")
        started[0].send_signal(signal.SIGKILL)
        for process in started:
            process.wait(60)
        self.command("catalogue")
        self.assertEqual(self.rows("SELECT count(*), count(DISTINCT path) FROM recording"), [(199 * 20,) * 2])
        self.assertEqual(self.rows("PRAGMA integrity_check"), [("ok",)])

    def test_nothing_planned_is_an_error(self):
        self.work.mkdir()
        for command in ("catalogue", "status", "run"):
            said = self.command(command, status=1)[1]
            self.assertEqual(
                said,
                f"mpeg_ts_archive: there are no lists in '{self.work}': mpeg_ts_archive plan makes them\n",
            )

    def test_what_could_not_be_opened_is_planned_again_when_it_can_be(self):
        self.sample("a.ts", "dvb.ts")
        self.sample("b.ts", "dvb.ts")
        self.plan()
        aside = self.scratch / "aside.ts"
        os.rename(self.recordings / "b.ts", aside)
        programs = ["--overview", str(self.program), "--analysis", str(self.program)]
        self.folder.results.mkdir()
        for status in (1, 1, 0):
            self.command("task", *programs, "1", status=status)
        self.command("catalogue")
        self.assertEqual(self.rows("SELECT exit FROM recording ORDER BY path"), [(0,), (None,)])
        self.assertEqual(self.plan()[0], "nothing new\n")
        os.rename(aside, self.recordings / "b.ts")
        self.assertEqual(self.plan()[0], "1 new list of 1 recordings (1 tried again)\n")
        self.assertEqual(self.plan()[0], "nothing new\n")
        self.task(2)
        self.command("catalogue")
        self.assertEqual(self.rows("SELECT exit, list FROM recording ORDER BY path"), [(0, 1), (0, 2)])


class Status(ArchiveCase):
    def test_tells_how_far_it_is(self):
        for name in ("a.ts", "b.ts", "c.ts"):
            self.record(name, (ROOT / "samples" / "dvb.ts").read_bytes())
        self.plan("--files", "1")
        self.assertEqual(
            self.command("status")[0],
            "lists        0 of 3 done, nothing is running\nrecordings   0 of 3 done\n"
            "failures     not known before the catalogue is made\n",
        )
        self.folder.results.mkdir()
        programs = ["--overview", str(self.program), "--analysis", str(self.program)]
        self.command("task", *programs, "2")
        self.command("catalogue")
        os.unlink(self.recordings / "a.ts")
        self.command("task", *programs, "1", status=1)
        lines = self.command("status")[0].split("\n")
        self.assertEqual(lines[0], "lists        1 of 3 done, nothing is running")
        self.assertEqual(lines[1], "recordings   1 of 3 done")
        self.assertEqual(
            lines[2],
            "failures     0 of 1 recordings in the catalogue have no overview, 1 list has failed so far",
        )
        self.assertRegex(
            lines[3], r"^list 000001 failed, on .*: cannot open '.*/a\.ts': No such file or directory$"
        )


class CommandLine(ArchiveCase):
    def refused(self, *words):
        done = subprocess.run([*self.words(*words)], capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (2, ""), words)
        return done.stderr.strip().split("\n")[-1]

    def test_wrong_usage_is_said(self):
        for words, said in (
            (["plan"], "the following arguments are required: ARCHIVE"),
            (["plan", "a", "--files", "0"], "argument --files: '0' is no number from 1 on"),
            (["plan", "a", "--bytes", "5X"], "argument --bytes: '5X' is no size, such as 500M or 50G"),
            (["plan", "a", "--suffix", ","], "argument --suffix: there is no suffix"),
            (["run", "--keep", "json,pdf"], "argument --keep: 'pdf' is none of json, html, report"),
            (["run", "--slot", "3"], "unrecognized arguments: --slot 3"),
            (["run", "--slurm", "--hosts", "a"], "--hosts and --slurm exclude each other"),
            (["status", "x"], "unrecognized arguments: x"),
        ):
            with self.subTest(words):
                self.assertTrue(self.refused(*words).endswith("error: " + said), self.refused(*words))

    def test_a_path_that_gnu_parallel_would_change_is_refused(self):
        self.record("a.ts")
        self.work = self.scratch / "{.}"
        self.plan()
        said = self.command("run", status=1)[1]
        self.assertIn(f"a path with '{{' in it would mean something to GNU parallel: '{self.work}'", said)

    def test_programs_that_are_not_here_are_said(self):
        self.work.mkdir()
        self.folder.lists.mkdir()
        self.program = self.scratch / "nothing"
        said = self.command("run", status=1)[1]
        self.assertEqual(
            said, f"mpeg_ts_archive: {self.program} is not here: install it, or name it by MPEG_TS_OVERVIEW\n"
        )
        self.program = os.environ["MPEG_TS_OVERVIEW"]
        self.record("a.ts")
        self.plan()
        nowhere = {**self.environment(), "PATH": str(self.scratch)}
        self.assertEqual(
            self.command("run", status=1, env=nowhere)[1],
            "mpeg_ts_archive: parallel is not here: install the package parallel\n",
        )
        self.assertEqual(
            self.command("run", "--slurm", status=1, env=nowhere)[1],
            "mpeg_ts_archive: sbatch is not here: install the package slurm-client\n",
        )


if __name__ == "__main__":
    unittest.main()
