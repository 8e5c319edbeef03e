"""run: every list without a result, by GNU parallel or Slurm. The same command resumes."""

import dataclasses
import sys

from archive.catalogue import bring_up_to_date
from archive.errors import ArchiveError
from archive.folder import number_text
from archive.gnu_parallel import run_by_parallel, task_words
from archive.lock import locked
from archive.programs import find_other, find_programs
from archive.run_folder import new_run_folder
from archive.slurm import submit, tasks_in_queue

FAILED_SHOWN = 10


@dataclasses.dataclass(frozen=True)
class RunOptions:
    slots: int  # lists at a time: here, on each host, in each task of Slurm; None: a list a core, in Slurm one
    hosts: str  # as ssh has them, commas between; None: here
    keep: tuple  # of "json", "html", "report"
    slurm: bool
    sbatch_options: tuple


def run(folder, command, options):
    """Returns the exit status: 0 when every list is done, or submitted."""
    folder.must_have_lists()
    programs = find_programs(command, options.keep)
    find_other(*(("sbatch", "slurm-client") if options.slurm else ("parallel", "parallel")))
    with locked(folder, "run", wait=False) as lock:
        queue = tasks_in_queue(folder)
        if queue:
            tasks = sum(queue.values())
            raise ArchiveError(f"a run of '{folder.path}' is going on: {tasks} tasks are in Slurm's queue")
        task = task_words(command, folder, programs, options.keep)
        _remove_parts(folder)
        numbers = lists_to_do(folder)
        if not numbers:
            print("nothing to do: every list is done")
            return 0
        folder.results.mkdir(exist_ok=True)
        run_path = new_run_folder(folder, numbers)
        if options.slurm:
            catalogue = [str(command), "catalogue", "--folder", str(folder.path)]
            tasks, job = submit(folder, run_path, task, catalogue, options.slots or 1, options.sbatch_options)
            print(f"{_lists(len(numbers))} submitted as job {job} of {tasks} tasks")
            return 0
        run_by_parallel(task, run_path, options.slots, options.hosts, lock)
        # Not of its exit status, but of what is there.
        failed = sorted(set(numbers) - set(folder.result_numbers()))
    _report(run_path, len(numbers), failed)
    _, broken = bring_up_to_date(folder)
    return 1 if failed or broken else 0


def _report(run_path, lists, failed):
    print(f"{_lists(lists - len(failed))} done")
    for number in failed[:FAILED_SHOWN]:
        print(f"mpeg_ts_archive: list {number_text(number)} failed", file=sys.stderr)
    if failed:
        print(f"mpeg_ts_archive: {_lists(len(failed))} failed; why is in '{run_path}/log'", file=sys.stderr)


def lists_to_do(folder):
    return sorted(set(folder.list_numbers()) - set(folder.result_numbers()))


def _lists(count):
    return "1 list" if count == 1 else f"{count} lists"


def _remove_parts(folder):
    """What tasks that were killed have left. None of them lives: the lock is ours, and Slurm has no task."""
    for part in folder.results.glob("*.part"):
        part.unlink(missing_ok=True)
