"""Submits the lists of a run to Slurm as one job array, with the catalogue behind it."""

import hashlib
import math
import pathlib
import shlex
import subprocess

from archive.errors import ArchiveError
from archive.programs import find_other
from archive.task import TRIES

DEFAULT_ARRAY_SIZE = 1001


def job_name(folder):
    """The same for all jobs of a folder, and another for each: they are found without notes of their numbers."""
    return "mpeg_ts_archive-" + hashlib.sha256(bytes(folder.path)).hexdigest()[:8]


def tasks_in_queue(folder):
    """How many tasks of the folder Slurm has, by state; {} also where there is no Slurm."""
    if not (folder.runs / "slurm").exists():
        return {}  # nothing was ever submitted
    find_other("squeue", "slurm-client")
    words = ["squeue", "--noheader", "--array", "--name", job_name(folder), "--format", "%T"]
    states = {}
    for state in _output_of(words).split():
        states[state] = states.get(state, 0) + 1
    return states


def submit(folder, run, task, catalogue, slots, sbatch_options):
    """Submits the array and the catalogue. Returns how many tasks the array has, and the number of its job."""
    lists = len((run / "lists").read_text("ascii").split())
    tasks, lists_each = shared_out(lists, slots, _largest_array())
    log = f"runs/{run.name}/task-%a.log"
    (folder.runs / "slurm").touch()
    script = str(pathlib.Path(__file__).with_name("array_task.sh"))
    array = [
        *_sbatch(folder, job_name(folder), log, sbatch_options),
        f"--array=1-{tasks}", f"--cpus-per-task={slots}", "--requeue",
        script, str(run), str(lists_each), str(slots), str(TRIES), shlex.join(task) + " {}",
    ]  # fmt: skip
    number = _output_of(array).strip().split(";")[0]
    # afterany: the catalogue is made of what came out, whatever else failed.
    behind = [
        *_sbatch(folder, job_name(folder) + "-catalogue", f"runs/{run.name}/catalogue.log", sbatch_options),
        f"--dependency=afterany:{number}", f"--wrap=exec {shlex.join(catalogue)}",
    ]  # fmt: skip
    with open(run / "submitted", "w", encoding="utf-8", errors="surrogateescape") as submitted:
        submitted.write(f"{shlex.join(array)}\n{shlex.join(behind)}\n{number}\n")
    _output_of(behind)
    return tasks, number


def shared_out(lists, slots, largest_array):
    """How many tasks an array has, and how many lists each: one for each slot, more where an array has no room."""
    lists_each = max(min(slots, lists), math.ceil(lists / largest_array))
    return math.ceil(lists / lists_each), lists_each


def _sbatch(folder, name, log, sbatch_options):
    # Names of logs are seen from the folder: what is a percent sign in its path would mean something there.
    about = [f"--job-name={name}", f"--chdir={folder.path}", f"--output={log}"]
    return ["sbatch", "--parsable", *about, *sbatch_options]


def _largest_array():
    for line in _output_of(["scontrol", "show", "config"]).split("\n"):
        name, _, value = line.partition("=")
        if name.strip() == "MaxArraySize":
            return max(int(value) - 1, 1)  # indices are below it, and ours begin with 1
    return DEFAULT_ARRAY_SIZE - 1


def _output_of(words):
    done = subprocess.run(
        words, stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace", check=False
    )
    if done.returncode != 0:
        raise ArchiveError(f"{words[0]}: {done.stderr.strip()}")
    return done.stdout
