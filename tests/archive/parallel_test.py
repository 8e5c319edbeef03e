"""Runs by GNU parallel: undisturbed, and with everything that goes wrong around them."""

import os
import resource
import signal
import unittest

import archive_case
from archive_case import ROOT
from archive.path_text import text_of
from archive.recording_list import read_list
from archive.result_zip import read_facts
from whole_archive import WholeArchive

archive_case.need("parallel")

# Lists of three: twenty of them.
FILES = 3


class Parallel(WholeArchive):
    def start_and_hold(self, after=15):
        """A run in mid-course: some lists are done, some under way, some not begun. Returns it, and the results so far."""
        self.stand_in()
        self.plan("--files", str(FILES))
        self.hold_after(after)
        run = self.start("run", "--slots", "2")
        self.wait_until_held(2)
        self.assert_results_whole()
        before = self.results()
        self.assertGreater(len(before), 0)
        self.assertLess(len(before), 15)
        return run, before

    def test_each_recording_is_in_the_catalogue_once_with_its_verdict(self):
        for files in (1, 20):
            with self.subTest(files):
                self.work = self.scratch / f"work_{files}"
                self.folder = type(self.folder)(self.work)
                self.plan("--files", str(files))
                self.command("run")
                self.assert_all_done()
                self.assert_catalogue_has_each_with_the_verdict_of_the_overview_alone()

    def test_a_task_that_is_killed_is_tried_again_in_the_same_run(self):
        run, before = self.start_and_hold()
        killed = self.tasks()
        self.assertEqual(len(killed), 2)
        os.kill(killed[0], signal.SIGKILL)
        self.wait_for(lambda: set(self.tasks()) - set(killed), "another task")
        self.assert_results_whole()
        self.let_go()
        self.assertEqual(run.wait(300), 0)
        self.assert_not_done_again(before)
        # What the killed task had begun is removed by the next run.
        self.assertEqual(len(list(self.folder.results.glob("*.part"))), 1)
        self.assertEqual(self.command("run")[0], "nothing to do: every list is done\n")
        self.assertEqual(list(self.folder.results.glob("*.part")), [])
        self.assert_as_undisturbed(FILES)

    def test_everything_killed_and_the_same_command_again(self):
        run, before = self.start_and_hold()
        self.end_processes()
        run.wait(60)
        self.assert_results_whole()
        self.assertEqual(self.results(), before)
        self.assertGreater(len(list(self.folder.results.glob("*.part"))), 0)
        self.let_go()
        self.command("run", "--slots", "2")
        self.assertEqual(list(self.folder.results.glob("*.part")), [])
        self.assert_not_done_again(before)
        self.assert_as_undisturbed(FILES)

    def test_a_run_that_is_ended_ends_its_tasks_and_the_same_command_resumes(self):
        for number in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(number):
                self.doCleanups()
                self.setUp()
                run, before = self.start_and_hold()
                run.send_signal(number)
                self.assertEqual(run.wait(60), 128 + number)
                self.wait_for(lambda: not self.processes(), "the end of all tasks")
                self.assertEqual(self.results(), before)
                self.let_go()
                self.command("run")
                self.assert_not_done_again(before)
                self.assert_all_done()

    def test_two_runs_at_once(self):
        run, before = self.start_and_hold()
        said = self.command("run", status=1)[1]
        self.assertEqual(said, f"mpeg_ts_archive: a run of '{self.work}' is going on\n")
        status = self.command("status")[0]
        self.assertRegex(status, r"^lists        [0-9]+ of 20 done, 2 running\n")
        self.assertRegex(status, r"\nrate         [0-9.]+ recordings/s, [0-9.]+ MB/s\ntime left    [0-9]+ (s|min|h)\n$")
        # Also while nothing but its tasks is left of it.
        for process in [run.pid, *self.processes(b"--joblog")]:
            os.kill(process, signal.SIGKILL)
        run.wait(60)
        self.assertEqual(len(self.tasks()), 2)
        self.assertEqual(self.command("run", status=1)[1], said)
        self.let_go()
        self.wait_for(lambda: not self.tasks(), "the end of the tasks")
        self.command("run")
        self.assert_not_done_again(before)
        self.assert_as_undisturbed(FILES)

    def test_storage_that_is_away_for_a_while(self):
        run, before = self.start_and_hold()
        away = self.scratch / "away"
        os.rename(self.recordings, away)
        self.let_go()
        self.assertEqual(run.wait(300), 1)
        self.assertIn("the storage", (self.scratch / "said").read_text() + self.logs())
        self.assertEqual(list(self.folder.results.glob("*.tries")), [])
        self.assertLess(len(self.results()), 20)
        self.assert_results_whole()
        os.rename(away, self.recordings)
        self.command("run")
        self.assert_not_done_again(before)
        self.assert_as_undisturbed(FILES)

    def test_one_folder_of_the_storage_that_is_away_for_a_while(self):
        self.plan("--files", str(FILES))
        folder, away = self.recordings / "samples", self.scratch / "away"
        os.rename(folder, away)
        self.command("run")
        self.assertEqual(
            self.rows(f"SELECT count(*) FROM recording WHERE exit IS NULL AND path LIKE '{folder}/%'"), [(6,)]
        )
        os.rename(away, folder)
        self.assertIn("(6 tried again)", self.plan()[0])
        self.command("run")
        found = self.catalogue(with_lists=False)["recording"]
        self.undisturbed(FILES)
        self.work, self.folder = self.scratch / "undisturbed", type(self.folder)(self.scratch / "undisturbed")
        self.assertEqual(found, self.catalogue(with_lists=False)["recording"])

    def test_a_recording_that_makes_the_tool_abort_is_a_row_and_nothing_else_changes(self):
        self.stand_in("case $recording in */samples/encoder.ts) kill -ABRT $$ ;; esac")
        self.plan("--files", str(FILES))
        self.command("run")
        self.assert_all_done()
        path = f"{self.recordings}/samples/encoder.ts"
        self.assertEqual(
            self.rows("SELECT exit, message FROM recording WHERE message LIKE 'ended%'"),
            [(-6, "ended by SIGABRT")],
        )
        self.assertEqual(self.looked()[os.fsencode(path)], 1)
        found, expected = self.catalogue(), self.undisturbed(FILES)
        for table in expected:
            others = [[row for row in rows[table] if row[0] != path] for rows in (found, expected)]
            self.assertEqual(*others)

    def test_a_full_disk_at_the_zip(self):
        # Results of more than 30 kB, those with pages, find no room; the program may write as much as it likes.
        self.stand_in("ulimit -S -f unlimited")
        self.plan("--files", str(FILES))
        full = {
            "preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (30000, resource.RLIM_INFINITY))
        }
        self.command("run", "--keep", "json,html", status=1, **full)
        self.assertIn("cannot write the result: File too large", self.logs())
        self.assert_results_whole()
        before = self.results()
        self.assertLess(len(before), 20)
        self.assertGreater(len(before), 0)
        self.assertEqual(list(self.folder.results.glob("*.part")), [])
        self.command("run")
        self.assertEqual({number: self.results()[number] for number in before}, before)
        self.assert_as_undisturbed(FILES)

    def test_recordings_added_and_changed_between_runs(self):
        self.stand_in()
        self.plan("--files", str(FILES))
        self.command("run")
        before = self.results()
        encoder = (ROOT / "samples" / "encoder.ts").read_bytes()
        self.record("samples/atsc.ts", encoder[:100000])
        self.record("generated/00.ts", b"")
        self.record("added/new.ts", encoder)
        self.assertIn("1 new list of 3 recordings (1 new, 2 changed)", self.plan()[0])
        self.command("run")
        self.assert_all_done()
        self.assertEqual({number: self.results()[number] for number in before}, before)
        looked = self.looked()
        for path in self.readable:
            changed = path.endswith((b"/samples/atsc.ts", b"/generated/00.ts"))
            self.assertEqual(looked[path], 2 if changed else 1, path)
        found = self.catalogue(with_lists=False)
        self.undisturbed(FILES)
        self.work, self.folder = self.scratch / "undisturbed", type(self.folder)(self.scratch / "undisturbed")
        self.assertEqual(found, self.catalogue(with_lists=False))

    def test_over_ssh(self):
        # A stand-in for ssh: its options, the host, and a command for the shell there.
        ssh = self.scratch / "ssh"
        ssh.write_text(f'#!/bin/sh\nwhile [ "${{1#-}}" != "$1" ]; do shift; done\nhost=$1\nshift\n'
                       f'if [ "$1" = -- ]; then shift; fi\necho "$host" >>"{self.scratch}/hosts"\nexec sh -c "$*"\n')  # fmt: skip
        ssh.chmod(0o755)
        self.plan("--files", "10")
        environment = {**self.environment(), "PARALLEL_SSH": str(ssh)}
        self.command("run", "--hosts", "here,there", "--slots", "1", env=environment)
        self.assert_all_done()
        self.assertLessEqual({"here", "there"}, set((self.scratch / "hosts").read_text().split()))
        self.assert_catalogue_has_each_with_the_verdict_of_the_overview_alone()

    def test_pages_and_reports_are_kept_when_asked_for(self):
        self.plan("--files", "20")
        self.command("run", "--keep", "json,html,report")
        self.assert_all_done()
        for number in self.folder.list_numbers():
            for each, listed in zip(
                read_facts(self.folder.result(number)), read_list(self.folder.list(number))
            ):
                self.assertEqual(each["path"], text_of(listed.path))
                self.assertEqual(
                    sorted(each["members"]), ["html", "json", "report"] if each["exit"] == 0 else []
                )

    def logs(self):
        return "".join(path.read_text() for path in self.folder.runs.glob("*/log"))


if __name__ == "__main__":
    unittest.main()
