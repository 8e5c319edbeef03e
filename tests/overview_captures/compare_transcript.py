#!/usr/bin/env python3
"""Compares the transcript of captures with the analyser's report of the same bytes: every text of the one
stands in the other.

    compare_transcript.py ANALYSER OVERVIEW FILE...

Without files, those of the folder that MPEG_TS_STREAMS names; without that, skipped (status 77)."""
import glob
import json
import os
import re
import subprocess
import sys

CHANGES_EACH_TIME = (0x70, 0x73, 0xCD)  # TDT, TOT, STT: the transcript has the first of them
# What the analyser says between sections, of the run and of clocks.
NO_TABLE = re.compile(r"\* (Starting analysis|Packet size|Packets of 1FF|TS bitrate|Program 0x[0-9a-f]+ PCR|"
                      r"Scan complete|Priority #)")
# What it says of a section depends here on what it knew before.
OF_STATE = re.compile(r"\s*(First aware of|Changed NIT tracking|Now tracking|PCR is a stream|PCR not related|"
                      r"! not showing start-end times|starts at:|ends at:|$)")


def output_of(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, check=True, timeout=600).stdout


def without_state(lines):
    return [line for line in lines if not OF_STATE.match(line)]


def without_numbers(lines):
    return [re.sub(r"0x[0-9a-f]+|\d+", "#", line) for line in lines]


class Places:
    """Where each line stands in a report."""

    def __init__(self, lines):
        self.lines = lines
        self.of = {}
        for place, line in enumerate(lines):
            self.of.setdefault(line, []).append(place)

    def texts(self, text):
        """Where the text begins."""
        return [place for place in self.of.get(text[0], []) if self.lines[place:place + len(text)] == text]


def missing_in_report(report, transcript):
    """Texts that the analyser did not print; where it lost sections of a PID it need not have."""
    places = Places(report)
    lost = re.findall(r"!!! PID 0x([0-9a-f]+) table error: table incomplete", "\n".join(report))
    losses = {int(pid, 16) for pid in lost}
    for entry in transcript:
        if not places.texts(entry["lines"]) and entry["pid"] not in losses:
            yield f"not in the report: PID {entry['pid']:#x}, {entry['heading']!r}"


def missing_in_transcript(report, transcript):
    """Sections in the report of which the transcript says nothing."""
    plain = Places(without_state(report))
    masked = Places(without_numbers(plain.lines))
    told = set()
    for entry in transcript:
        text = without_state(entry["lines"])
        changes = entry["table_id"] in CHANGES_EACH_TIME
        for begin in masked.texts(without_numbers(text)) if changes else plain.texts(text):
            told.update(range(begin, begin + len(text)))
    for place, line in enumerate(plain.lines):
        is_section = line.startswith("* ") and not NO_TABLE.match(line)
        # A PES packet on a PID of splice information is no section.
        is_unknown = any("!!! Unknown table ID" in near for near in plain.lines[place:place + 3])
        if is_section and place not in told and not is_unknown:
            yield f"not in the transcript: {line!r}"


def compare(analyser, overview, path):
    report = output_of(analyser, path).decode("utf-8", "replace").split("\n")
    found = json.loads(output_of(overview, "--json=-", path))
    transcript = found["transcript"]
    faults = list(missing_in_report(report, transcript))
    if not any(limit["what"].startswith("transcript") for limit in found["limits_reached"]):
        faults += missing_in_transcript(report, transcript)
    for fault in faults[:10]:
        print(f"{path}: {fault}")
    print(f"{path}: {len(transcript)} texts, {len(faults)} missing")
    return not faults


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
    results = [compare(analyser, overview, path) for path in paths]
    return 0 if results and all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
