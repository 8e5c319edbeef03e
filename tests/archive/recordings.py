"""Sixty recordings of every kind: samples, generated ones, broken, empty, unreadable, none at all, and odd names."""

import os
import pathlib
import random

SAMPLES = pathlib.Path(__file__).resolve().parents[2] / "samples"
COUNT = 60

ODD_NAMES = [
    b"line\nfeed.ts", b"tab\there.ts", b"carriage\rreturn.ts", b"\"quotes\" and 'quotes'.ts", b"back\\slash \\n.ts",
    b"no utf-8 \xff\xfe\x80.ts", b"half \xe2\x82.ts", b"-dash.ts", b"--json=out.ts", b" blanks  in it .ts", b"$(id);`id`&.ts",
    b"{} {/} {#}.ts", b"*?[a].ts", b"100%a%%.ts", b"..ts", b"...ts", b"<script>alert(1)</script>.ts",
    b"</script><img src=x onerror=alert(1)>.ts", b"\x01\x1b[31mred\x7f.ts", b"x" * 240 + b".ts",
    "Gr\u00fc\u00dfe \u2028\u202e \U0001f600.ts".encode(), b"SHOUT.TS", b"disc.M2TS", b"@DATA@ @POLICY@.ts",
]  # fmt: skip

# Files that nobody can read, not even root; others are made so by their mode.
UNREADABLE_OF_THE_SYSTEM = ["/sys/bus/cpu/drivers_probe", "/sys/bus/platform/drivers_probe"]


def make_recordings(folder):
    """Fills the folder. Returns the paths of those that can be read, and of those that cannot, as bytes."""
    folder = os.fsencode(folder)
    readable, unreadable = [], []

    def add(name, content):
        path = os.path.join(folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content)
        readable.append(path)

    samples = {
        path.name: path.read_bytes() for path in sorted(SAMPLES.iterdir()) if path.suffix in (".ts", ".m2ts")
    }
    for name, content in samples.items():
        add(b"samples/" + name.encode(), content)
    for index, name in enumerate(ODD_NAMES):
        add(b"odd/" + name, list(samples.values())[index % len(samples)])
    for name, content in _broken(samples["encoder.ts"], samples["dvb.ts"]).items():
        add(b"broken/" + name.encode(), content)
    for name in (b"empty.ts", b"empty.m2ts"):
        add(b"none/" + name, b"")
    for name, content in {
        b"text.ts": b"const answer = 42;\n" * 40,
        b"zeros.ts": bytes(4000),
        b"byte.ts": b"\x47",
    }.items():
        add(b"none/" + name, content)
    for name in (b"secret.ts", b"other secret.ts"):
        path = _unreadable(os.path.join(folder, b"none", name), UNREADABLE_OF_THE_SYSTEM[len(unreadable)])
        if path:
            unreadable.append(path)
    for index in range(COUNT - len(readable) - len(unreadable)):
        add(b"generated/%02d.ts" % index, _generated(index))
    return readable, unreadable


def _broken(encoder, dvb):
    chance = random.Random(1)
    flipped = bytearray(encoder)
    for _ in range(200):
        flipped[chance.randrange(len(flipped))] ^= 1 << chance.randrange(8)
    packets = [encoder[at : at + 188] for at in range(0, len(encoder), 188)]
    return {
        "cut.ts": encoder[: len(encoder) // 3 + 17],
        "packets lost.ts": b"".join(packet for number, packet in enumerate(packets) if number % 50),
        "packets doubled.ts": b"".join(
            packet * (1 + (number % 90 == 0)) for number, packet in enumerate(packets)
        ),
        "bits flipped.ts": bytes(flipped),
        "two joined.ts": encoder + dvb,
        "begins late.ts": b"nothing" * 9 + encoder,
        "ends in noise.ts": encoder[:60000] + chance.randbytes(50000),
        "size 204.ts": b"".join(packet + bytes(16) for packet in packets[:400]),
    }


def _generated(seed):
    """Packets of a few PIDs with counters, some of which are wrong."""
    chance = random.Random(seed + 100)
    counters = {pid: 0 for pid in chance.sample(range(0x20, 0x1FFF), 3)}
    packets = []
    for _ in range(chance.randrange(20, 400)):
        pid = chance.choice(list(counters))
        counters[pid] += 2 if chance.random() < 0.02 else 1
        packets.append(bytes([0x47, pid >> 8, pid & 0xFF, 0x10 | counters[pid] % 16]) + chance.randbytes(184))
    return b"".join(packets)


def _unreadable(path, of_the_system):
    """A path that cannot be opened; None where there is no way to make one."""
    if os.geteuid() != 0:
        with open(path, "wb") as file:
            file.write(b"secret")
        os.chmod(path, 0)
        return path
    try:
        with open(of_the_system, "rb"):
            return None
    except PermissionError:
        os.symlink(of_the_system, path)
        return path
    except OSError:
        return None
