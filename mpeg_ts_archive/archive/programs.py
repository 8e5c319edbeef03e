"""Where the programs are that look at recordings."""

import os
import shutil

from archive.errors import ArchiveError
from archive.overview import Programs


def find_programs(command, keep):
    """Named by the environment, else beside this command, else in PATH. The analyser is needed for reports only."""
    overview = _find("MPEG_TS_OVERVIEW", "mpeg_ts_overview", command)
    analysis = _find("MPEG_TS_ANALYSIS", "mpeg_ts_analysis", command) if "report" in keep else ""
    return Programs(overview, analysis)


def _find(variable, name, command):
    named = os.environ.get(variable)
    beside = str(command.parent / name)
    found = shutil.which(named) if named else shutil.which(beside) or shutil.which(name)
    if found is None:
        raise ArchiveError(f"{named or name} is not here: install it, or name it by {variable}")
    return os.path.abspath(found)


def find_other(name, package):
    found = shutil.which(name)
    if found is None:
        raise ArchiveError(f"{name} is not here: install the package {package}")
    return found
