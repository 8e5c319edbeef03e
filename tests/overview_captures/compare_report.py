#!/usr/bin/env python3
"""Compares what the overview says of captures with what the analyser's report says of the same bytes.

    compare_report.py ANALYSER OVERVIEW FILE...

Without files, those of the folder that MPEG_TS_STREAMS names; without that, skipped (status 77)."""
import glob
import json
import os
import re
import subprocess
import sys
from datetime import datetime, timedelta

GPS_EPOCH = datetime(1980, 1, 6)
MJD_EPOCH = datetime(1858, 11, 17)
SHORTEST_ROW = 8  # letters and digits: rows with fewer are too much alike to compare


def report_of(analyser, path):
    done = subprocess.run([analyser, path], capture_output=True, check=False, timeout=600)
    return done.stdout.decode("utf-8", "replace").splitlines()


def overview_of(overview, path):
    done = subprocess.run([overview, "--json=-", path], capture_output=True, check=False, timeout=600)
    if done.returncode != 0:
        sys.exit(f"{path}: {overview} ended with {done.returncode}: {done.stderr.decode()}")
    return json.loads(done.stdout)


def sections(lines, heading):
    """The lines of each section of the report whose first line matches."""
    found = []
    for line in lines:
        if line.startswith("* "):
            found.append([line] if re.match(heading, line) else None)
        elif found and found[-1] is not None:
            found[-1].append(line)
    return [section for section in found if section]


def value_of(section, name):
    for line in section:
        match = re.match(rf"\s*{name}\s*[:=]\s*(0x[0-9a-f]+|\d+)", line)
        if match:
            return int(match.group(1), 0)
    return None


def utc(time):
    return time.strftime("%Y-%m-%dT%H:%M:%SZ")


def start_of_bits(bits):
    """The start_time of 40 bits, EN 300 468 Annex C."""
    digits = f"{bits & 0xFFFFFF:06x}"
    if not digits.isdigit() or int(digits[:2]) > 23 or int(digits[2:4]) > 59 or int(digits[4:]) > 59:
        return None
    time = timedelta(hours=int(digits[:2]), minutes=int(digits[2:4]), seconds=int(digits[4:]))
    return utc(MJD_EPOCH + timedelta(days=bits >> 24) + time)


def duration_of_bits(bits):
    digits = f"{bits:06x}"
    if not digits.isdigit():
        return None
    return int(digits[:2]) * 3600 + int(digits[2:4]) * 60 + int(digits[4:])


def letters(text):
    return "".join(character for character in text if character.isascii() and character.isalnum())


def events_of_report(lines):
    """(service, event) to (start, duration, name), what came last."""
    events = {}
    for section in sections(lines, r"\* (Scheduled )?Event Information Section"):
        service = value_of(section, "Service ID")
        key = None
        for line in section:
            match = re.match(r"\s*- event_id:\s*0x([0-9a-f]+)", line)
            if match:
                key = (service, int(match.group(1), 16))
                events[key] = [None, None, None]
            elif key and (match := re.match(r"\s*start_time:\s*0x([0-9a-f]+)", line)):
                events[key][0] = start_of_bits(int(match.group(1), 16))
            elif key and (match := re.match(r"\s*duration:\s*0x([0-9a-f]+)", line)):
                events[key][1] = duration_of_bits(int(match.group(1), 16))
            elif key and (match := re.match(r"\s*event_name=(.*)", line)) and events[key][2] is None:
                events[key][2] = match.group(1)
    return events


def atsc_events_of_report(lines):
    offset = None
    for line in lines:
        if match := re.match(r"\s*GPS_UTC_offset=(\d+)", line):
            offset = int(match.group(1))
    events = {}
    for section in sections(lines, r"\* event_information_table_section"):
        service = value_of(section, "Source ID")
        for line in section:
            match = re.match(
                r"\s*event #\d+: event_id=0x([0-9a-f]+) start_time=(\d+) length_in_seconds=(\d+)", line)
            if match:
                seconds = int(match.group(2)) - (offset or 0)
                start = None if offset is None else utc(GPS_EPOCH + timedelta(seconds=seconds))
                events[(service, int(match.group(1), 16))] = [start, int(match.group(3)), None]
    return events


def compare_events(lines, found):
    expected = {**events_of_report(lines), **atsc_events_of_report(lines)}
    events = {(event["service"], event["event_id"]): event for event in found["guide"]["events"]}
    missing = sorted(set(expected) - set(events))
    if missing and found["guide"]["not_kept"] == 0:
        yield f"events are missing: {missing[:5]}"
    # The analyser does not read every schedule table, nor sections that come between those of another.
    extra = [key for key in set(events) - set(expected) if events[key]["source"] != "schedule"]
    if extra and not any("table error: table incomplete" in line for line in lines):
        yield f"events are not in the report: {sorted(extra)[:5]}"
    for key in set(expected) & set(events):
        start, duration, name = expected[key]
        event = events[key]
        if (start, duration) != (event["start_utc"], event["duration_s"]):
            yield f"event {key}: {start} {duration} is {event['start_utc']} {event['duration_s']}"
        if name and name.isascii() and name.isprintable() and "\n" not in event["title"]:
            if letters(name) != letters(event["title"]):
                yield f"event {key}: {name!r} is {event['title']!r}"
    return len(expected)


def compare_services(lines, found):
    names = {}
    for section in sections(lines, r"\* Service Description Section"):
        service = None
        for line in section:
            if match := re.match(r"\s*- service_id=0x([0-9a-f]+)", line):
                service = int(match.group(1), 16)
            elif match := re.match(r"\s*service_name=(.*)", line):
                names[service] = match.group(1)
    compared = 0
    for program in found["programs"]:
        name = program["service_name"]
        if program["number"] not in names or "." in (program["channel"] or ""):
            continue
        compared += 1
        if name is None or letters(name) != letters(names[program["number"]]):
            yield f"service {program['number']}: {names[program['number']]!r} is {name!r}"
    return compared


def compare_cues(lines, found):
    expected = set()
    for section in sections(lines, r"\* SCTE-35 message"):
        event = value_of(section, "splice_event_id")
        if event is not None:
            expected.add(event)
    cues = {cue["splice_event_id"] for cue in found["cues"] if cue["splice_event_id"] is not None}
    if expected != cues:
        yield f"splice events differ: {sorted(expected ^ cues)[:5]}"
    return len(expected)


def compare_pages(lines, found):
    """The report shows few rows, of pages that are cut short too: a third of them at least has to be there."""
    rows = {}
    for page in found["teletext"]:
        for number, row in enumerate(page["rows"]):
            rows.setdefault((int(page["page"][0]), number), set()).add(letters(row))
    place, shown, missing = None, 0, []
    for line in lines:
        if match := re.match(r"\s*X/(\d) Y=(\d+)", line):
            place = (int(match.group(1)) or 8, int(match.group(2)))
        elif match := re.match(r"Displayable page contents: (.*)", line):
            text = letters(re.sub(r"<[^>]*>", " ", match.group(1)))
            if len(text) >= SHORTEST_ROW and any(where[0] == place[0] for where in rows):
                shown += 1
                if text not in rows.get(place, set()):
                    missing.append((place, text))
    if 3 * len(missing) > 2 * shown:
        yield f"of {shown} rows {len(missing)} are missing: {missing[:5]}"
    return shown - len(missing)


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    analyser, overview, *paths = sys.argv[1:]
    if not paths:
        folder = os.environ.get("MPEG_TS_STREAMS")
        if not folder:
            print("MPEG_TS_STREAMS does not name a folder of captures: skipped")
            return 77
        paths = sorted(glob.glob(os.path.join(folder, "*.ts")))
    faults = 0
    for path in paths:
        lines, found = report_of(analyser, path), overview_of(overview, path)
        counts = []
        for compare in (compare_services, compare_events, compare_cues, compare_pages):
            comparison = compare(lines, found)
            while True:
                try:
                    fault = next(comparison)
                except StopIteration as end:
                    counts.append(end.value)
                    break
                print(f"{path}: {fault}")
                faults += 1
        print("{}: {} services, {} events, {} splice events, {} rows".format(path, *counts))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
