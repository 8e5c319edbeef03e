"""status: how far the lists are. It only reads, and may be asked at any time."""

import time

from archive.catalogue import open_catalogue
from archive.folder import number_text
from archive.lock import is_locked
from archive.recording_list import read_list
from archive.run_folder import last_run_folder, lists_of_run
from archive.slurm import tasks_in_queue

# To look at a recording costs as much as to read so many bytes, however short it is.
BYTES_OF_A_RECORDING = 2_000_000
FAILING_SHOWN = 5


def status(folder):
    folder.must_have_lists()
    work = {number: _work_of(folder, number) for number in folder.list_numbers()}
    done = set(folder.result_numbers()) & work.keys()
    queue = tasks_in_queue(folder)
    here = is_locked(folder, "run")

    print(f"lists        {len(done)} of {len(work)} done{_going_on(folder, queue, here)}")
    recordings, recordings_done = (sum(work[number][0] for number in numbers) for numbers in (work, done))
    print(f"recordings   {recordings_done} of {recordings} done")
    print(f"failures     {_failures(folder, done, work)}")
    _print_rate(folder, work, done, bool(queue) or here)
    for number in _failing(folder, work.keys() - done):
        last = folder.tries(number).read_text("utf-8").split("\n")[-2]
        print(f"list {number_text(number)} failed, on {last}")
    return 0


def _work_of(folder, number):
    """Recordings and bytes of a list."""
    recordings = read_list(folder.list(number))
    return len(recordings), sum(recording.size for recording in recordings)


def _going_on(folder, queue, here):
    if queue:
        running = queue.get("RUNNING", 0)
        return f", {running} tasks running, {sum(queue.values()) - running} waiting in Slurm's queue"
    if here:
        return f", {len(list(folder.results.glob('*.part')))} running"
    return ", nothing is running"


def _failures(folder, done, work):
    failing = len(_failing(folder, work.keys() - done, limit=None))
    lists = f", {failing} {'list has' if failing == 1 else 'lists have'} failed so far" if failing else ""
    if not folder.catalogue.exists():
        return f"not known before the catalogue is made{lists}"
    with open_catalogue(folder) as catalogue:
        catalogued, bad = catalogue.execute("SELECT count(*), count(message) FROM recording").fetchone()
    return f"{bad} of {catalogued} recordings in the catalogue have no overview{lists}"


def _failing(folder, waiting, limit=FAILING_SHOWN):
    return [number for number in sorted(waiting) if folder.tries(number).exists()][:limit]


def _print_rate(folder, work, done, going_on):
    run = last_run_folder(folder)
    if run is None:
        return
    done_in_run = [number for number in lists_of_run(run) if number in done]
    if not done_in_run:
        return
    start = (run / "lists").stat().st_mtime
    end = time.time() if going_on else max(folder.result(number).stat().st_mtime for number in done_in_run)
    seconds = max(end - start, 0.001)
    recordings, size = (sum(column) for column in zip(*(work[number] for number in done_in_run)))
    print(f"rate         {recordings / seconds:.1f} recordings/s, {size / seconds / 1e6:.1f} MB/s")
    left = sum(map(_cost, (work[number] for number in work.keys() - done)))
    if going_on and left:
        print(f"time left    {duration_text(left / (_cost((recordings, size)) / seconds))}")


def _cost(work):
    recordings, size = work
    return recordings * BYTES_OF_A_RECORDING + size


def duration_text(seconds):
    minutes, hours = round(seconds / 60), round(seconds / 3600)
    if minutes < 2:
        return f"{round(seconds)} s"
    return f"{minutes} min" if hours < 3 else f"{hours} h" if hours < 72 else f"{round(seconds / 86400)} days"
