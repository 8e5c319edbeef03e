"""What the catalogue says of a recording, taken from its overview: a line of facts.jsonl in each result."""

from archive.path_text import text_of
from archive.recording_list import mtime_text


def facts_of(recording, looked, members):
    """members: names in the zip of what was kept, by kind."""
    facts = {
        "path": text_of(recording.path),
        "size": looked.size,
        "mtime": mtime_text(looked.mtime_ns),
        "seconds": looked.seconds,
        "exit": looked.exit,
        "message": looked.message,
        "members": members,
    }
    if looked.overview is not None:
        facts.update(_measured(looked.overview))
    return facts


def _measured(overview):
    about, checks = overview["recording"], overview["checks"]
    failed = [check for check in checks if check["result"] == "fail"]
    present = [program for program in overview["programs"] if not program["absent"]]
    return {
        "standard": about["standard"],
        "duration_s": about["duration_s"],
        "mean_bps": about["mean_bps"],
        "packets": about["packets"],
        "programs": len(present),
        **{f"p{priority}_failed": _count(failed, priority) for priority in (1, 2, 3)},
        "services": [
            {"number": each["number"], "name": each["service_name"], "provider": each["provider_name"]}
            for each in present
        ],
        "failed_checks": [
            {key: check[key] for key in ("id", "count", "first_s", "worst")} for check in failed
        ],
    }


def _count(checks, priority):
    return sum(check["priority"] == priority for check in checks)
