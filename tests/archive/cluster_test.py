"""scripts/cluster ends what it has started, also when it is interrupted."""

import os
import pathlib
import signal
import subprocess
import tempfile
import unittest

import archive_case

archive_case.need("sbatch", "slurmctld", "slurmd", "munged")
CLUSTER = archive_case.ROOT / "scripts" / "cluster"
DAEMONS = {"munged", "slurmctld", "node1", "node2", "node3"}


def lives(process):
    try:
        return pathlib.Path("/proc", str(process), "stat").read_text().rpartition(")")[2].split()[0] != "Z"
    except OSError:
        return False


class Cluster(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="cluster_test_")
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        self.environment = {**os.environ, "CLUSTER_FOLDER": str(self.folder)}

    def start(self, *words):
        return subprocess.Popen(
            [CLUSTER, *words], env=self.environment, stdin=subprocess.DEVNULL, start_new_session=True
        )

    def wait_for_processes(self):
        """Those of the daemons, as soon as the command runs, and of a job."""
        archive_case.ArchiveCase.wait_for((self.folder / "job").exists, "a job")
        noted = {path.name: int(path.read_text()) for path in (self.folder / "pids").iterdir()}
        self.assertEqual(set(noted), DAEMONS)
        noted["job"] = int((self.folder / "job").read_text())
        for name, process in noted.items():
            self.assertTrue(lives(process), name)
        return noted

    def assert_gone(self, noted):
        archive_case.ArchiveCase.wait_for(
            lambda: not any(map(lives, noted.values())), "the end of " + str(noted)
        )

    JOB = (
        "echo $$ >$CLUSTER_FOLDER/job.part; mv $CLUSTER_FOLDER/job.part $CLUSTER_FOLDER/job; exec sleep 1000"
    )

    def test_ends_with_its_command_and_has_its_status(self):
        wait = "while [ ! -e $CLUSTER_FOLDER/end ]; do sleep 0.1; done"
        cluster = self.start("sh", "-c", f"sbatch -o /dev/null --wrap='{self.JOB}'; {wait}; exit 7")
        noted = self.wait_for_processes()
        (self.folder / "end").touch()
        self.assertEqual(cluster.wait(90), 7)
        self.assert_gone(noted)
        self.assertEqual(list((self.folder / "pids").iterdir()), [])

    def test_ends_when_it_is_interrupted(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number):
                (self.folder / "job").unlink(missing_ok=True)
                cluster = self.start("sh", "-c", f"sbatch -o /dev/null --wrap='{self.JOB}'; exec sleep 1000")
                noted = self.wait_for_processes()
                cluster.send_signal(number)
                self.assertEqual(cluster.wait(90), 128 + number)
                self.assert_gone(noted)


if __name__ == "__main__":
    unittest.main()
