"""The task: one list becomes one result, whatever its recordings and its tool do."""

import json
import os
import resource
import signal
import subprocess
import unittest
import zipfile

from archive_case import OVERVIEW, ROOT, ArchiveCase
from archive.result_zip import read_facts


class Task(ArchiveCase):
    def task(self, *words, status=0, **how):
        programs = ["--overview", str(self.program), "--analysis", str(self.program)]
        return self.command("task", *programs, *words, "1", status=status, **how)[1]

    def planned(self, *names):
        for name in names:
            self.record(name, (ROOT / "samples" / "dvb.ts").read_bytes())
        self.plan()
        self.folder.results.mkdir()

    def facts(self):
        return read_facts(self.folder.result(1))

    def tries(self):
        path = self.folder.tries(1)
        return path.read_text().split("\n")[:-1] if path.exists() else []

    def assert_nothing_written(self):
        self.assertEqual([path.name for path in self.folder.results.iterdir() if path.suffix != ".tries"], [])

    def test_keeps_what_it_is_told_to(self):
        self.planned("a.ts", "b.ts")
        self.task("--keep", "json,html,report")
        with zipfile.ZipFile(self.folder.result(1)) as result:
            names = [kind + "/000" + number for number in "12" for kind in ("overviews", "pages", "reports")]
            self.assertEqual([name.rpartition(".")[0] for name in result.namelist()], [*names, "facts"])
            alone = subprocess.run(
                [OVERVIEW, "--json=-", self.recordings / "a.ts"], capture_output=True, check=True
            )
            self.assertEqual(result.read("overviews/0001.json"), alone.stdout)
            self.assertTrue(result.read("pages/0001.html").startswith(b"<!DOCTYPE html>"))
        self.assertEqual(self.facts()[1]["members"]["html"], "pages/0002.html")

    def test_keeps_json_unless_told_otherwise_and_may_keep_facts_only(self):
        self.planned("a.ts")
        self.task()
        self.assertEqual(list(self.facts()[0]["members"]), ["json"])
        self.folder.result(1).unlink()
        self.task("--keep", "")
        self.assertEqual(self.facts()[0]["members"], {})
        self.assertEqual(self.facts()[0]["standard"], "DVB")

    def test_names_in_the_result_lead_nowhere_else(self):
        self.planned("..ts", "...ts", "a/b.ts", b"back\\slash\n.ts")
        self.task()
        with zipfile.ZipFile(self.folder.result(1)) as result:
            for name in result.namelist():
                self.assertRegex(name, r"^(overviews/[0-9]{4}\.json|facts\.jsonl)$")

    def test_facts_are_those_of_the_overview(self):
        self.planned("a.ts")
        self.task()
        [facts] = self.facts()
        alone = json.loads(
            subprocess.run([OVERVIEW, "--json=-", self.recordings / "a.ts"], capture_output=True).stdout
        )
        for key in ("standard", "duration_s", "mean_bps", "packets"):
            self.assertEqual(facts[key], alone["recording"][key])
        self.assertEqual([each["name"] for each in facts["services"]], ["Sample One", "Sample Two HD"])
        failed = [check for check in alone["checks"] if check["result"] == "fail"]
        self.assertEqual([each["id"] for each in facts["failed_checks"]], [check["id"] for check in failed])
        self.assertEqual(facts["p3_failed"], sum(check["priority"] == 3 for check in failed))

    def test_a_list_that_has_its_result_is_left_alone(self):
        self.stand_in()
        self.planned("a.ts")
        self.task()
        before = self.results()
        self.task()
        self.assert_not_done_again(before)

    def test_a_recording_without_packets_is_a_row(self):
        self.planned("a.ts")
        self.record("b.ts", b"")
        self.plan()
        self.folder.list(1).unlink()
        os.rename(self.folder.list(2), self.folder.list(1))
        self.task()
        [facts] = self.facts()
        self.assertEqual((facts["exit"], facts["message"]), (1, "no transport packets found"))
        self.assertNotIn("packets", facts)

    def test_a_tool_that_aborts_gives_a_row_at_once(self):
        self.stand_in(
            'echo "mpeg_ts_overview: broken invariant" >&2; case $recording in *b.ts) kill -ABRT $$ ;; esac'
        )
        self.planned("a.ts", "b.ts", "c.ts")
        self.task()
        self.assertEqual([each["exit"] for each in self.facts()], [0, -signal.SIGABRT, 0])
        self.assertEqual(self.facts()[1]["message"], "ended by SIGABRT: broken invariant")

    def test_a_tool_that_complains_without_end_does_not_block(self):
        self.stand_in('head -c 3000000 /dev/zero | tr "\\0" x >&2')
        self.planned("a.ts")
        self.task()
        self.assertEqual(self.facts()[0]["exit"], 0)

    def test_a_tool_that_is_killed_or_cannot_read_fails_the_list_three_times_and_then_is_a_row(self):
        for behaviour, exit_status, message in (
            ("case $recording in *b.ts) kill -KILL $$ ;; esac", -9, "ended by SIGKILL"),
            ("case $recording in *b.ts) kill -BUS $$ ;; esac", -7, "ended by SIGBUS"),
            (
                "case $recording in *b.ts) echo \"mpeg_ts_overview: cannot read 'b.ts': Input/output error\" >&2\nexit 1 ;; esac",
                1,
                "cannot read 'b.ts': Input/output error",
            ),
        ):
            with self.subTest(message):
                self.setUp()
                self.stand_in(behaviour)
                self.planned("a.ts", "b.ts", "c.ts")
                for again in (1, 2):
                    self.assertIn(message, self.task(status=1))
                    self.assertEqual(len(self.tries()), again)
                    self.assert_nothing_written()
                self.task()
                self.assertEqual([each["exit"] for each in self.facts()], [0, exit_status, 0])
                self.assertEqual(self.facts()[1]["message"], message)
                self.assertEqual(self.tries(), [])

    def test_a_recording_that_is_missing_fails_the_list_before_others_are_looked_at(self):
        self.stand_in()
        self.planned("a.ts", "b.ts")
        os.unlink(self.recordings / "b.ts")
        for _ in range(2):
            said = self.task(status=1)
            self.assertEqual(
                said, f"list 000001: cannot open '{self.recordings}/b.ts': No such file or directory\n"
            )
        self.assertEqual(self.looked(), {})
        self.task()
        self.assertEqual([each["exit"] for each in self.facts()], [0, None])
        self.assertEqual(self.facts()[1]["message"], "cannot open: No such file or directory")

    def test_while_the_storage_is_away_no_try_counts(self):
        self.planned("a.ts", "b.ts")
        away = self.scratch / "away"
        os.rename(self.recordings, away)
        for mounted in (False, True):
            if mounted:
                self.recordings.mkdir()  # the empty folder where nothing is mounted
            for _ in range(4):
                self.assertEqual(
                    self.task(status=1), f"list 000001: the storage '{self.recordings}' is away\n"
                )
        self.assertEqual(self.tries(), [])
        self.assert_nothing_written()
        self.recordings.rmdir()
        os.rename(away, self.recordings)
        self.task()
        self.assertEqual([each["exit"] for each in self.facts()], [0, 0])

    def test_no_room_for_the_result_says_nothing_of_recordings(self):
        self.planned("a.ts", "b.ts", "c.ts", "d.ts")
        # The program may write as much as it likes.
        self.stand_in("ulimit -S -f unlimited")
        for _ in range(4):
            limited = lambda: resource.setrlimit(
                resource.RLIMIT_FSIZE, (3000, resource.RLIM_INFINITY)
            )  # noqa: E731
            self.assertEqual(
                self.task(status=1, preexec_fn=limited),
                "list 000001: cannot write the result: File too large\n",
            )
            self.assert_nothing_written()
        self.assertEqual(self.tries(), [])
        self.task()
        self.assertEqual([each["exit"] for each in self.facts()], [0] * 4)

    def test_no_room_for_an_overview_says_nothing_of_the_recording(self):
        self.planned("a.ts")
        self.stand_in(
            'echo "mpeg_ts_overview: cannot write to standard output: No space left on device" >&2; exit 1'
        )
        for _ in range(4):
            self.assertIn("No space left on device", self.task(status=1))
        self.assertEqual(self.tries(), [])

    def test_an_overview_that_is_no_json_is_none(self):
        self.planned("a.ts")
        self.stand_in("echo '{\"format\":'; exit 0")
        self.task(status=1)
        self.assertEqual(len(self.tries()), 1)

    def test_a_program_that_is_not_there_fails_the_list(self):
        self.planned("a.ts")
        self.program = self.scratch / "nothing"
        self.assertEqual(
            self.task(status=1), f"mpeg_ts_archive: cannot run '{self.program}': No such file or directory\n"
        )
        self.assert_nothing_written()

    def test_a_task_that_is_ended_leaves_nothing(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number):
                self.setUp()
                self.stand_in()
                self.planned("a.ts", "b.ts", "c.ts")
                self.hold_after(1)
                task = self.start("task", "--overview", self.program, "--analysis", self.program, "1")
                self.wait_until_held(1)
                self.assertEqual(len(list(self.folder.results.glob("*.part"))), 1)
                task.send_signal(number)
                self.assertEqual(task.wait(60), 128 + number)
                self.assert_nothing_written()
                self.assertEqual(self.tries(), [])
                self.wait_for(lambda: not self.processes(), "the end of the program")

    def test_a_recording_that_changed_since_the_plan_has_the_size_that_was_looked_at(self):
        self.planned("a.ts")
        self.record("a.ts", (ROOT / "samples" / "atsc.ts").read_bytes())
        self.task()
        [facts] = self.facts()
        self.assertEqual((facts["size"], facts["standard"]), (2632, "ATSC"))
        self.assertEqual(self.plan()[0], "1 new list of 1 recordings (1 changed)\n")


if __name__ == "__main__":
    unittest.main()
