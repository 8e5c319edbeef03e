"""The command line: which command, with which options."""

import argparse
import os
import pathlib
import re
import sys

from archive.errors import ArchiveError
from archive.folder import Folder

UNITS = {"": 1, "k": 10**3, "M": 10**6, "G": 10**9, "T": 10**12}
KINDS = ("json", "html", "report")


def main(words, command):
    """Returns the exit status. command is the path of this program, which tasks are started by."""
    for stream in (sys.stdout, sys.stderr):
        stream.reconfigure(errors="backslashreplace")  # paths are said in any locale
    options = _parse(words)
    folder = Folder(pathlib.Path(os.path.abspath(options.folder)))
    try:
        return options.act(folder, command, options)
    except ArchiveError as error:
        print(f"mpeg_ts_archive: {error}", file=sys.stderr)
    except OSError as error:
        print(f"mpeg_ts_archive: {error}", file=sys.stderr)
    except KeyboardInterrupt:
        return 130
    return 1


def _plan(folder, _command, options):
    from archive.plan import ListLimits, plan

    return plan(folder, options.archive, ListLimits(options.files, options.bytes), options.suffix)


def _run(folder, command, options):
    from archive.run import RunOptions, run

    sbatch_options = tuple(options.sbatch_options)
    return run(
        folder, command, RunOptions(options.slots, options.hosts, options.keep, options.slurm, sbatch_options)
    )


def _task(folder, _command, options):
    from archive.overview import Programs
    from archive.task import do_list

    return do_list(folder, options.number, Programs(options.overview, options.analysis), options.keep)


def _status(folder, _command, _options):
    from archive.status import status

    return status(folder)


def _catalogue(folder, _command, options):
    from archive.catalogue import bring_up_to_date
    from archive.index_page import write_index

    folder.must_have_lists()
    read, broken = bring_up_to_date(folder)
    print(f"{read} recordings read")
    if options.html:
        print(f"{write_index(folder)} recordings in '{folder.index}'")
    return 1 if broken else 0


def _parse(words):
    parser = _parser()
    options, others = parser.parse_known_args(words)
    # What stands behind --slurm and is none of ours is sbatch's.
    options.sbatch_options = others
    if others and not getattr(options, "slurm", False):
        parser.error("unrecognized arguments: " + " ".join(others))
    if getattr(options, "slurm", False) and options.hosts:
        parser.error("--hosts and --slurm exclude each other")
    return options


def _parser():
    parser = argparse.ArgumentParser(
        prog="mpeg_ts_archive",
        allow_abbrev=False,
        description="Looks at every recording of an archive with mpeg_ts_overview, by GNU parallel or Slurm, and keeps "
        "a catalogue of what came of it. Lists, results and catalogue are kept in the current folder.",
    )
    parser.add_argument("--version", action="version", version="mpeg_ts_archive " + _version())
    commands = parser.add_subparsers(title="commands", required=True, metavar="COMMAND")

    plan = _command_of(
        commands, "plan", _plan, "make lists of recordings that no list has, or that have changed"
    )
    plan.add_argument("archive", nargs="+", metavar="ARCHIVE", help="folder of recordings")
    plan.add_argument(
        "--files", type=_count, default=500, metavar="N", help="recordings in a list, at most (500)"
    )
    plan.add_argument(
        "--bytes", type=_size, default=_size("50G"), metavar="N", help="bytes in a list, at most (50G)"
    )
    plan.add_argument("--suffix", type=_suffixes, default=_suffixes(".ts,.m2ts,.mts,.trp"), metavar=".A,.B",
                      help="what names of recordings end with (.ts,.m2ts,.mts,.trp)")  # fmt: skip

    run = _command_of(commands, "run", _run, "do every list that has no result; the same command resumes")
    run.add_argument(
        "--slots", type=_count, metavar="N", help="lists at a time: here, on each host, in each Slurm task"
    )
    run.add_argument("--hosts", metavar="A,B", help="run on these hosts, by ssh")
    run.add_argument("--slurm", action="store_true", help="submit to Slurm; options that are not of this command "
                     "go to sbatch")  # fmt: skip
    _add_keep(run)

    _command_of(commands, "status", _status, "tell how far it is")

    catalogue = _command_of(
        commands, "catalogue", _catalogue, "bring catalogue.sqlite up to date; safe at any time"
    )
    catalogue.add_argument(
        "--html", action="store_true", help="write index.html, a table of all recordings, too"
    )

    # What GNU parallel runs; nobody types it.
    task = _command_of(commands, "task", _task, None)
    task.add_argument("--overview", required=True)
    task.add_argument("--analysis", required=True)
    _add_keep(task)
    task.add_argument("number", type=int)
    return parser


def _command_of(commands, name, act, what):
    shown = {"help": what} if what else {}
    command = commands.add_parser(name, allow_abbrev=False, description=what, **shown)
    command.add_argument(
        "--folder", default=".", metavar="FOLDER", help="where lists, results and catalogue are (.)"
    )
    command.set_defaults(act=act)
    return command


def _add_keep(parser):
    parser.add_argument("--keep", type=_kinds, default=("json",), metavar="KINDS",
                        help="what results keep of each recording: json, html, report, with commas between (json)")  # fmt: skip


def _count(text):
    if not text.isascii() or not text.isdigit() or int(text) < 1:
        raise argparse.ArgumentTypeError(f"'{text}' is no number from 1 on")
    return int(text)


def _size(text):
    match = re.fullmatch(r"([0-9]+)([kMGT]?)", text)
    if not match or int(match.group(1)) < 1:
        raise argparse.ArgumentTypeError(f"'{text}' is no size, such as 500M or 50G")
    return int(match.group(1)) * UNITS[match.group(2)]


def _suffixes(text):
    suffixes = [suffix for suffix in text.split(",") if suffix]
    if not suffixes:
        raise argparse.ArgumentTypeError("there is no suffix")
    return tuple(suffix if suffix.startswith(".") else "." + suffix for suffix in suffixes)


def _kinds(text):
    kinds = tuple(kind for kind in text.split(",") if kind)
    for kind in kinds:
        if kind not in KINDS:
            raise argparse.ArgumentTypeError(f"'{kind}' is none of {', '.join(KINDS)}")
    return tuple(kind for kind in KINDS if kind in kinds)


def _version():
    try:
        return pathlib.Path(__file__).with_name("version").read_text("ascii").strip()
    except FileNotFoundError:
        return "of the source tree"
