"""catalogue --html: index.html, one file with a table of all recordings, and the pages that were kept beside it."""

import base64
import hashlib
import json
import os
import pathlib
import shutil
import zipfile

from archive.catalogue import open_catalogue, page_path, pages_by_list
from archive.folder import number_text, written_aside
from archive.lock import locked

PAGE = pathlib.Path(__file__).with_name("page")
ROWS = """
    SELECT recording.path, size, mtime, message, standard, duration_s, mean_bps, p1_failed, p2_failed, p3_failed, list,
        (SELECT json_group_array(coalesce(name, '')) FROM service WHERE service.path = recording.path),
        (SELECT json_group_array(id) FROM failed_check WHERE failed_check.path = recording.path),
        page.member
    FROM recording LEFT JOIN page USING (path) ORDER BY recording.path"""


def write_index(folder):
    """Returns how many recordings it shows."""
    with locked(folder, "index", wait=True), open_catalogue(folder) as catalogue:
        for number, members in pages_by_list(catalogue).items():
            _unpack(folder, number, members)
        rows = [_shown(folder, *row) for row in catalogue.execute(ROWS)]
    written_aside(folder.index, page_of(rows))
    return len(rows)


def page_of(rows):
    """The page. Every byte that comes from recordings is in its data, which is no script and cannot end early."""
    data = (
        "[\n" + ",\n".join(json.dumps(row, ensure_ascii=False, separators=(",", ":")) for row in rows) + "\n]"
    )
    style = (PAGE / "index.css").read_text("utf-8")
    script = (PAGE / "index.js").read_text("utf-8")
    policy = (
        f"default-src 'none'; script-src {_hash(script)}; style-src {_hash(style)}; img-src data:; "
        "base-uri 'none'; form-action 'none'"
    )
    page = (PAGE / "index.html").read_text("utf-8")
    # The data last: what is in it is not looked at again.
    for name, text in (
        ("POLICY", policy),
        ("STYLE", style),
        ("SCRIPT", script),
        ("DATA", data.replace("<", "\\u003c")),
    ):
        page = page.replace(f"@{name}@", text, 1)
    return page


def _hash(text):
    return "'sha256-" + base64.b64encode(hashlib.sha256(text.encode("utf-8")).digest()).decode("ascii") + "'"


def _shown(
    folder, path, size, mtime, message, standard, duration, rate, p1, p2, p3, number, services, checks, member
):
    link = (
        page_path(number, member) if member and (folder.path / page_path(number, member)).exists() else None
    )
    failed = None if p1 is None else [p1, p2, p3]
    return [
        path,
        size,
        mtime,
        message,
        standard,
        duration,
        rate,
        failed,
        json.loads(services),
        json.loads(checks),
        link,
    ]


def _unpack(folder, number, members):
    """The pages of a result, into a folder that is written aside and renamed. Not those that are there."""
    place = folder.pages / number_text(number)
    result = folder.result(number)
    if place.exists() and place.stat().st_mtime_ns >= result.stat().st_mtime_ns:
        return
    part = folder.pages / (number_text(number) + ".part")
    shutil.rmtree(part, ignore_errors=True)
    part.mkdir(parents=True)
    with zipfile.ZipFile(result) as zipped:
        for member in members:
            with zipped.open(member) as source, open(part / member.rpartition("/")[2], "wb") as target:
                shutil.copyfileobj(source, target)
    shutil.rmtree(place, ignore_errors=True)
    os.replace(part, place)
