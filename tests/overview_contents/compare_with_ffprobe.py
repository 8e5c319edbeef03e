#!/usr/bin/env python3
"""Codec parameters against ffprobe, on streams that ffmpeg makes: compare_with_ffprobe.py PROGRAM

PROGRAM is mpeg_ts_overview. Exit status 77 when ffmpeg or ffprobe is not there."""
import fractions
import json
import shutil
import subprocess
import sys
import tempfile

VIDEO = [
    ("mpeg1video", "352x288", "25", []),
    ("mpeg2video", "1280x720", "25", []),
    ("mpeg2video", "720x480", "30000/1001", ["-flags", "+ildct+ilme", "-top", "1"]),
    ("mpeg2video", "1920x1080", "50", ["-b:v", "20M"]),
    ("mpeg2video", "1920x1080", "25", ["-pix_fmt", "yuv422p", "-flags", "+ildct+ilme"]),
    ("libx264", "1920x1080", "25", ["-level", "4.0", "-flags", "+ildct+ilme", "-x264opts", "tff=1"]),
    ("libx264", "1280x720", "50", ["-profile:v", "main", "-x264opts", "nal-hrd=cbr", "-b:v", "2M",
                                   "-maxrate", "2M", "-bufsize", "2M"]),
    ("libx264", "322x182", "24000/1001", ["-profile:v", "baseline"]),
    ("libx264", "1440x1080", "30000/1001", ["-pix_fmt", "yuv422p10le"]),
    ("libx265", "1920x1080", "50", ["-preset", "ultrafast", "-x265-params", "log-level=none"]),
    ("libx265", "1922x1082", "24", ["-preset", "slow", "-x265-params", "log-level=none"]),
    ("libx265", "3840x2160", "60000/1001", [
        "-preset", "ultrafast", "-pix_fmt", "yuv420p10le", "-x265-params",
        "log-level=none:scaling-list=default:hrd=1:vbv-maxrate=20000:vbv-bufsize=20000"]),
]
AUDIO = [
    ("mp2", ["-ac", "2", "-b:a", "192k"]),
    ("mp2", ["-ac", "1", "-ar", "32000", "-b:a", "64k"]),
    ("mp2", ["-ac", "2", "-ar", "22050", "-b:a", "96k"]),
    ("aac", ["-ac", "2"]),
    ("aac", ["-ac", "6", "-ar", "44100"]),
    ("ac3", ["-ac", "6", "-b:a", "448k"]),
    ("ac3", ["-ac", "2", "-ar", "44100", "-b:a", "192k"]),
    ("eac3", ["-ac", "6", "-b:a", "384k"]),
    ("eac3", ["-ac", "1", "-ar", "32000", "-b:a", "96k"]),
]


def decimal(value):
    return f"{float(value):.3f}".rstrip("0").rstrip(".")


def expected(stream):
    """The details that ffprobe's description of the stream asks for."""
    if stream["codec_type"] == "audio":
        channels = {6: "5.1", 8: "7.1"}.get(stream["channels"], stream["channels"])
        words = [f"{decimal(int(stream['sample_rate']) / 1000)} kHz", f"{channels} ch"]
        if stream["codec_name"] == "aac":
            return " ".join([stream["profile"]] + words)
        return " ".join(words + [f"{decimal(int(stream['bit_rate']) / 1000)} kbit/s"])
    interlaced = stream.get("field_order", "progressive") in ("tt", "bb", "tb", "bt")
    rate = decimal(fractions.Fraction(stream["r_frame_rate"]))
    details = f"{stream['width']}x{stream['height']} {rate}{'i' if interlaced else 'p'}"
    if stream["codec_name"] == "h264":
        details += f" {stream['profile']}@{stream['level'] / 10:.1f}"
    if stream["codec_name"] == "hevc":
        details += f" {stream['profile']}@{stream['level'] / 30:.1f}"
    if stream["codec_name"] == "mpeg2video":
        level = {2: "High", 4: "High", 5: "Main", 6: "High 1440", 8: "Main"}[stream["level"]]
        details += f" {stream['profile']}@{level}"
    return details


def check(program, path, arguments):
    subprocess.run(["ffmpeg", "-v", "error", "-y", *arguments, "-t", "0.4", "-f", "mpegts", path], check=True)
    probed = json.loads(subprocess.run(["ffprobe", "-v", "error", "-show_streams", "-of", "json", path],
                                       check=True, capture_output=True).stdout)
    overview = json.loads(subprocess.run([program, "--json=-", path], check=True, capture_output=True).stdout)
    wanted = expected(probed["streams"][0])
    told = overview["programs"][0]["streams"][0]["details"]
    if told != wanted:
        print(f"{' '.join(arguments)}\n  ffprobe:  {wanted}\n  overview: {told}")
    return told == wanted


def main():
    program = sys.argv[1]
    if not shutil.which("ffmpeg") or not shutil.which("ffprobe"):
        return 77
    with tempfile.TemporaryDirectory() as folder:
        path = f"{folder}/stream.ts"
        results = []
        for codec, size, rate, options in VIDEO:
            picture = ["-f", "lavfi", "-i", f"testsrc2=s={size}:r={rate}"]
            results.append(check(program, path, picture + ["-c:v", codec, *options]))
        for codec, options in AUDIO:
            tone = ["-f", "lavfi", "-i", "sine=f=440:r=48000"]
            results.append(check(program, path, tone + ["-c:a", codec, *options]))
    print(f"{results.count(True)} of {len(results)} streams as ffprobe says")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
