"""Subtitles as pictures, for ffmpeg to encode as DVB subtitles: display sets of a Blu-ray .sup file."""

import struct

WIDTH, HEIGHT = 320, 180
BOX, END_OF_SET = 16, 0x80


def segment(seconds, kind, body):
    return b"PG" + struct.pack(">IIBH", int(seconds * 90000), 0, kind, len(body)) + body


def display_set(seconds, number, objects):
    state = 0x80 if objects else 0x00
    composition = struct.pack(">HHBHBBBB", WIDTH, HEIGHT, 0x10, number, state, 0, 0, len(objects))
    composition += b"".join(objects)
    window = struct.pack(">BBHHHH", 1, 0, 100, 150, BOX, BOX)
    sets = segment(seconds, 0x16, composition) + segment(seconds, 0x17, window)
    if objects:
        line = bytes([0, 0x80 | BOX, 1, 0, 0])  # a run of colour 1, the end of the line
        data = struct.pack(">HH", BOX, BOX) + line * BOX
        header = struct.pack(">HBB", 0, 0, 0xC0) + len(data).to_bytes(3, "big")
        sets += segment(seconds, 0x14, bytes([0, 0, 1, 200, 128, 128, 255]))
        sets += segment(seconds, 0x15, header + data)
    return sets + segment(seconds, END_OF_SET, b"")


def subtitle_pictures(seconds):
    """One picture every two seconds, each shown for one."""
    shown = struct.pack(">HBBHH", 0, 0, 0, 100, 150)
    return b"".join(display_set(at + 1, at, [shown]) + display_set(at + 2, at + 1, [])
                    for at in range(0, seconds - 2, 2))
