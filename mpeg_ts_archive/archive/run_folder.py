"""The folder of one run: which lists, what was submitted, logs. Nothing but status reads it again."""

import datetime

from archive.folder import number_text, written_aside


def new_run_folder(folder, numbers):
    """Makes runs/DATE, in UTC, with the lists that are to be done."""
    date = datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%dT%H.%M.%SZ")
    for name in (date, *(f"{date}-{again}" for again in range(2, 1000))):
        path = folder.runs / name
        try:
            path.mkdir()
        except FileExistsError:
            continue
        written_aside(path / "lists", "".join(number_text(number) + "\n" for number in numbers))
        return path
    raise FileExistsError(folder.runs / date)


def last_run_folder(folder):
    """None when nothing has run."""
    try:
        runs = [entry for entry in folder.runs.iterdir() if (entry / "lists").is_file()]
    except FileNotFoundError:
        return None
    # "-10" comes behind "-2": the shorter of one date is the earlier.
    return max(runs, key=lambda run: (run.name[:20], len(run.name), run.name), default=None)


def lists_of_run(path):
    return [int(line) for line in (path / "lists").read_text("ascii").split()]
