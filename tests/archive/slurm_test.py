"""Runs by Slurm, of three nodes on this machine: undisturbed, and with everything that goes wrong around them.

Started by scripts/cluster, which says by CLUSTER_FOLDER where the cluster is.
"""

import os
import pathlib
import signal
import subprocess
import unittest

import archive_case  # noqa: F401, finds the modules
from archive.slurm import job_name, shared_out
from whole_archive import WholeArchive

CLUSTER = pathlib.Path(os.environ["CLUSTER_FOLDER"])
FILES = 3


def ask(*words):
    return subprocess.run(words, capture_output=True, text=True, timeout=60, check=True).stdout.strip()


def node_process(node):
    return int((CLUSTER / "pids" / node).read_text())


def idle_nodes():
    return ask("sinfo", "-h", "-t", "idle", "-o", "%D") or "0"


def processes_on(node):
    """slurmd, the slurmstepd of each of its tasks, and then the tasks: who could tell of their end goes first."""
    daemons, tasks = {node_process(node)}, []
    for entry in os.listdir("/proc"):
        process = pathlib.Path("/proc", entry)
        try:
            environment = b"\0" + (process / "environ").read_bytes()
            if (
                b"\0SLURMD_NODENAME=%s\0" % node.encode() not in environment
                or os.fsencode(CLUSTER) not in environment
            ):
                continue
            tasks.append(int(entry))
            parent = (process / "stat").read_text().rpartition(")")[2].split()[1]
            if pathlib.Path("/proc", parent, "comm").read_text() == "slurmstepd\n":
                daemons.add(int(parent))
        except OSError:
            continue
    return [*daemons, *(task for task in tasks if task not in daemons)]


def kill_node(node):
    for process in processes_on(node):
        try:
            os.kill(process, signal.SIGKILL)
        except ProcessLookupError:
            pass


class Slurm(WholeArchive):
    def setUp(self):
        super().setUp()
        self.wait_for(lambda: idle_nodes() == "3", "three idle nodes")

    def remove_scratch(self):
        subprocess.run(["scancel", "--full", "--user", str(os.getuid())], capture_output=True, check=False)
        self.end_processes()
        self.wait_for_queue()
        super().remove_scratch()

    def states(self):
        """States of the array's tasks that Slurm has, by their index."""
        lines = ask("squeue", "-h", "-r", "--name", job_name(self.folder), "-o", "%K %T %N %r").split("\n")
        return {line.split()[0]: line.split()[1:] for line in lines if line}

    def wait_for_queue(self):
        self.wait_for(lambda: ask("squeue", "-h") == "", "the end of all jobs", patience=180)

    def release(self):
        """Slurm holds what it has put into the queue again for two minutes: not here."""
        for index, state in self.states().items():
            if state[0] == "PENDING":
                words = ["scontrol", "update", f"JobId={self.job()}_{index}", "StartTime=now"]
                subprocess.run(words, capture_output=True, check=False)  # it may have started meanwhile

    def submit(self):
        return self.command("run", "--slurm")[0]

    def submit_and_hold(self, after=15):
        self.stand_in()
        self.plan("--files", str(FILES))
        self.hold_after(after)
        self.submit()
        # Three nodes of two cores.
        self.wait_until_held(6)
        self.assert_results_whole()
        before = self.results()
        self.assertLess(len(before), 15)
        return before

    def job(self):
        return max(self.folder.runs.glob("*/submitted")).read_text().split("\n")[-2]

    def test_each_recording_is_in_the_catalogue_once_with_its_verdict(self):
        for files, tasks in ((1, 60), (20, 3)):
            with self.subTest(files):
                self.work = self.scratch / f"work_{files}"
                self.folder = type(self.folder)(self.work)
                self.plan("--files", str(files))
                self.assertRegex(
                    self.submit(), rf"^{tasks} lists submitted as job [0-9]+ of {tasks} tasks\n$"
                )
                self.wait_for_queue()
                self.assert_all_done()
                # The catalogue is the job behind the array.
                self.assert_catalogue_has_each_with_the_verdict_of_the_overview_alone()
        self.assertEqual(self.submit(), "nothing to do: every list is done\n")

    def test_slots_are_lists_at_a_time_in_each_task(self):
        self.plan("--files", "5")
        self.assertIn(
            "12 lists submitted", self.command("run", "--slurm", "--slots", "2", "--time=5", "-p", "batch")[0]
        )
        self.assertIn("NumCPUs=2", ask("scontrol", "show", "job", self.job() + "_1"))
        self.assertIn("TimeLimit=00:05:00", ask("scontrol", "show", "job", self.job() + "_1"))
        self.wait_for_queue()
        self.assert_as_undisturbed(5)
        self.assertEqual(len(list(self.folder.runs.glob("*/joblog-*"))), 6)

    def test_more_lists_than_an_array_has_room_for_go_several_to_a_task(self):
        for lists, slots, largest in (
            (1, 1, 1000),
            (1000, 1, 1000),
            (1001, 1, 1000),
            (4000, 8, 1000),
            (3, 8, 1000),
            (20000, 2, 1000),
        ):
            tasks, each = shared_out(lists, slots, largest)
            self.assertLessEqual(tasks, largest)
            self.assertTrue((tasks - 1) * each < lists <= tasks * each, (lists, tasks, each))
            self.assertGreaterEqual(each, min(slots, lists))

    def test_what_sbatch_does_not_know_is_said(self):
        self.plan()
        said = self.command("run", "--slurm", "--no-such-option", status=1)[1]
        self.assertIn("mpeg_ts_archive: sbatch: sbatch: unrecognized option '--no-such-option'", said)

    def test_two_runs_at_once(self):
        before = self.submit_and_hold()
        for options in ([], ["--slurm"]):
            said = self.command("run", *options, status=1)[1]
            self.assertRegex(said, "a run of '.*' is going on: [0-9]+ tasks are in Slurm's queue\n$")
        self.assertRegex(
            self.command("status")[0],
            r"^lists        [0-9]+ of 20 done, 6 tasks running, [0-9]+ waiting in Slurm's queue",
        )
        self.let_go()
        self.wait_for_queue()
        self.assert_not_done_again(before)
        self.assert_as_undisturbed(FILES)

    def test_a_task_that_is_killed_is_done_by_the_same_command_again(self):
        before = self.submit_and_hold()
        index = next(index for index, state in self.states().items() if state[0] == "RUNNING")
        ask("scancel", f"{self.job()}_{index}")
        self.wait_for(lambda: index not in self.states(), "the end of a task")
        os.kill(self.tasks()[0], signal.SIGKILL)  # of another: GNU parallel retries it
        self.let_go()
        self.wait_for_queue()
        self.assert_results_whole()
        self.assertEqual(len(self.results()), 19)
        self.assertEqual(self.submit().split(" as ")[0], "1 list submitted")
        self.wait_for_queue()
        self.assert_not_done_again(before)
        self.assert_as_undisturbed(FILES)

    def test_a_node_that_dies_has_its_tasks_requeued(self):
        before = self.submit_and_hold()
        node = next(state[1] for state in self.states().values() if state[0] == "RUNNING")
        lost = [index for index, state in self.states().items() if state[0] == "RUNNING" and state[1] == node]
        kill_node(node)
        self.wait_for(
            lambda: {self.states()[index][0] for index in lost} == {"PENDING"}, "tasks in the queue again"
        )
        self.release()
        self.let_go()
        self.wait_for_queue()
        self.assert_not_done_again(before)
        self.assert_as_undisturbed(FILES)
        start_node(node)

    def test_a_node_that_dies_and_is_back_at_once_leaves_the_rest_to_the_same_command(self):
        before = self.submit_and_hold()
        node = next(state[1] for state in self.states().values() if state[0] == "RUNNING")
        lost = [index for index, state in self.states().items() if state[0] == "RUNNING" and state[1] == node]
        kill_node(node)
        start_node(node)
        self.wait_for(
            lambda: all(self.states().get(index, [""])[0] != "RUNNING" for index in lost),
            "the end of lost tasks",
        )
        self.let_go()
        self.release()
        self.wait_for_queue()
        self.assert_results_whole()
        self.submit()
        self.wait_for_queue()
        self.assert_not_done_again(before)
        self.assert_as_undisturbed(FILES)

    def test_everything_killed_and_the_same_command_again(self):
        before = self.submit_and_hold()
        ask("scancel", self.job())
        self.end_processes()
        self.wait_for_queue()
        self.assert_results_whole()
        self.assertEqual(self.results(), before)
        self.let_go()
        self.submit()
        self.wait_for_queue()
        self.assertEqual(list(self.folder.results.glob("*.part")), [])
        self.assert_not_done_again(before)
        self.assert_as_undisturbed(FILES)

    def test_storage_that_is_away_for_a_while(self):
        before = self.submit_and_hold()
        away = self.scratch / "away"
        os.rename(self.recordings, away)
        self.let_go()
        self.wait_for_queue()
        self.assertLess(len(self.results()), 20)
        os.rename(away, self.recordings)
        self.submit()
        self.wait_for_queue()
        self.assert_not_done_again(before)
        self.assert_as_undisturbed(FILES)


STARTED = []  # not waited for: they end with the cluster


def start_node(node):
    """As scripts/cluster does, which ends it by the process noted."""
    with open(CLUSTER / "log" / f"{node}.out", "ab") as log:
        slurmd = subprocess.Popen(
            ["slurmd", "-D", "-N", node],
            stdin=subprocess.DEVNULL,
            stdout=log,
            stderr=log,
            start_new_session=True,
        )
    STARTED.append(slurmd)
    (CLUSTER / "pids" / node).write_text(f"{slurmd.pid}\n")


if __name__ == "__main__":
    unittest.main()
