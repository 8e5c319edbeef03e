#!/usr/bin/env python3
"""Packets, clocks and time stamps of streams that ffmpeg makes, against ffprobe and a count of its own.

ffprobe.py PROGRAM: mpeg_ts_overview. Exit status 77 when ffmpeg or ffprobe is not there.
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile

from transport_counts import PCR_CYCLE, Packets, expect_same_counts

SOURCES = ["-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25:duration=4",
           "-f", "lavfi", "-i", "sine=frequency=440:sample_rate=48000:duration=4"]
CODECS = ["-c:v", "mpeg2video", "-b:v", "1M", "-g", "12", "-bf", "2", "-c:a", "mp2", "-b:a", "128k"]
STREAMS = [
    ("constant.ts", ["-muxrate", "3M"]),
    ("constant_slow_clock.ts", ["-muxrate", "2500k", "-pcr_period", "35"]),
    ("variable.ts", []),
    ("late_clock.ts", ["-muxrate", "3M", "-output_ts_offset", "95443.5"]),  # wraps within
    ("stamped.m2ts", ["-muxrate", "3M", "-mpegts_m2ts_mode", "1", "-c:a", "ac3"]),
]


def output_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, timeout=300).stdout


def frames_of(path, kind):
    """(pts, dts) of each frame as ffprobe reads them, in 90 kHz."""
    shown = json.loads(output_of("ffprobe", "-v", "error", "-select_streams", kind, "-show_packets", "-of", "json",
                                 path))
    return [(packet["pts"], packet["dts"]) for packet in shown["packets"]]


def stamp(field):
    return (field[0] >> 1 & 7) << 30 | field[1] << 22 | field[2] >> 1 << 15 | field[3] << 7 | field[4] >> 1


def stamps_of(starts):
    """(packet, pts, dts or None) of each PES header."""
    found = []
    for packet, payload in starts:
        assert payload[:3] == b"\0\0\1"
        flags = payload[7] >> 6
        if flags >= 2:
            found.append((packet, stamp(payload[9:14]), stamp(payload[14:19]) if flags == 3 else None))
    return found


def clock_at(pcrs, packet):
    """The clock at a packet, between two PCRs on the line that they give."""
    before = max((point for point in pcrs if point[0] <= packet), default=None)
    behind = min((point for point in pcrs if point[0] > packet), default=None)
    if before is None or behind is None:
        return None
    rate = (behind[1] - before[1]) % PCR_CYCLE / (behind[0] - before[0])
    return before[1] + rate * (packet - before[0])


def signed(difference, cycle):
    return (difference + cycle / 2) % cycle - cycle / 2


def expect_clock(overview, packets, clock_pid):
    pcrs = packets.pcrs[clock_pid]
    (row,) = overview["pcr"]
    assert row["pid"] == clock_pid
    assert row["count"] == len(pcrs), (row["count"], len(pcrs))
    intervals = [(b[1] - a[1]) % PCR_CYCLE / 27000 for a, b in zip(pcrs, pcrs[1:])]
    for name, value in (("min", min(intervals)), ("max", max(intervals)), ("mean", sum(intervals) / len(intervals))):
        assert abs(row["interval_ms"][name] - value) < 2e-6, (name, row["interval_ms"], value)
    if overview["recording"]["time_base"] != "pcr":
        return
    assert overview["recording"]["clock_pid"] == clock_pid
    spans = [((b[1] - a[1]) % PCR_CYCLE, b[0] - a[0]) for a, b in zip(pcrs, pcrs[1:])]
    ticks, count = sum(span[0] for span in spans), sum(span[1] for span in spans)
    first = pcrs[0][0] * spans[0][0] / spans[0][1]
    behind = (packets.total - pcrs[-1][0]) * ticks / count
    assert abs(overview["recording"]["duration_s"] - (first + ticks + behind) / 27e6) < 2e-6


def expect_stamps(overview, packets, path, clock_pid):
    assert len(overview["time_stamps"]) == 2
    for row, kind in zip(sorted(overview["time_stamps"], key=lambda row: row["pid"]), "va"):
        pid = row["pid"]
        stamps = stamps_of(packets.starts[pid])
        assert row["pts"]["count"] == len(stamps), (hex(pid), row["pts"], len(stamps))
        assert row["dts"]["count"] == sum(dts is not None for _, _, dts in stamps)
        back = sum(signed(b[1] - a[1], 2**33) < 0 for a, b in zip(stamps, stamps[1:]))
        assert row["reordered"] == back, (row["reordered"], back)

        frames = frames_of(path, kind)
        if kind == "v":
            assert row["pts"]["count"] == len(frames), "a picture is a PES packet"
        assert signed(stamps[0][1] - frames[0][0], 2**33) == 0, "the first PTS"
        if kind == "v":
            assert signed(stamps[-1][1] - frames[-1][0], 2**33) == 0, "the last PTS"

        if overview["recording"]["time_base"] != "pcr":
            continue
        clocks = [(clock_at(packets.pcrs[clock_pid], packet), dts if dts is not None else pts)
                  for packet, pts, dts in stamps]
        margins = [signed(time * 300 - clock, PCR_CYCLE) / 27000 for clock, time in clocks if clock is not None]
        # Those behind the last PCR are in the overview too.
        assert row["margin_ms"]["min"] <= min(margins) + 1e-4, (row["margin_ms"], min(margins))
        assert row["margin_ms"]["max"] >= max(margins) - 1e-4
        if len(margins) == len(stamps):
            assert abs(row["margin_ms"]["min"] - min(margins)) < 1e-4
            assert abs(row["margin_ms"]["max"] - max(margins)) < 1e-4
        late = sum(margin < -1e-4 for margin in margins)
        assert late <= row["late"] <= late + len(stamps) - len(margins), (row["late"], late)


def main(program):
    if shutil.which("ffmpeg") is None or shutil.which("ffprobe") is None:
        print("ffmpeg or ffprobe is not there")
        return 77
    with tempfile.TemporaryDirectory() as work:
        for name, options in STREAMS:
            path = os.path.join(work, name)
            output_of("ffmpeg", "-v", "error", *SOURCES, *CODECS, *options, "-f", "mpegts", path)
            overview = json.loads(output_of(program, "--json=-", path))
            with open(path, "rb") as file:
                packets = Packets(file.read())
            (clock_pid,) = packets.pcrs
            expect_same_counts(overview, packets)
            expect_clock(overview, packets, clock_pid)
            expect_stamps(overview, packets, path, clock_pid)
            print(name, "agrees:", packets.total, "packets,", overview["recording"]["time_base"])
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
