"""What the headers of transport packets say, counted packet by packet."""
import collections

PCR_CYCLE = 2**33 * 300


class Packets:
    """The counts of a recording that is in sync from its first byte to its last."""

    def __init__(self, recording):
        self.size = packet_size(recording)
        self.counts = collections.Counter()
        self.first, self.last = {}, {}
        self.errors, self.scrambled = collections.Counter(), collections.Counter()
        self.unit_starts, self.random_access = collections.Counter(), collections.Counter()
        self.without_payload, self.discontinuities = collections.Counter(), collections.Counter()
        self.pcrs = collections.defaultdict(list)  # PID: [(packet, PCR)]
        self.starts = collections.defaultdict(list)  # PID: [(packet, payload)] of clear unit starts
        offset = 4 if self.size == 192 else 0
        self.total = len(recording) // self.size
        for index in range(self.total):
            at = index * self.size + offset
            self.count(index, recording[at:at + 188])

    def count(self, index, packet):
        assert packet[0] == 0x47, f"packet {index} is not in sync"
        pid = (packet[1] & 0x1F) << 8 | packet[2]
        self.counts[pid] += 1
        self.first.setdefault(pid, index)
        self.last[pid] = index
        if packet[1] & 0x80:
            self.errors[pid] += 1
            return
        has_field, has_payload = packet[3] & 0x20, packet[3] & 0x10
        self.scrambled[pid] += packet[3] >> 6 != 0
        self.unit_starts[pid] += packet[1] >> 6 & 1
        self.without_payload[pid] += bool(has_field and not has_payload)
        payload = 4
        if has_field:
            payload = 5 + packet[4]
            if payload > 188:
                return
            if packet[4] > 0:
                self.discontinuities[pid] += packet[5] >> 7
                self.random_access[pid] += packet[5] >> 6 & 1
                if packet[5] & 0x10 and packet[4] >= 7:
                    base = int.from_bytes(packet[6:12], "big")
                    self.pcrs[pid].append((index, (base >> 15) * 300 + (base & 0x1FF)))
        if packet[1] & 0x40 and has_payload and packet[3] >> 6 == 0:
            self.starts[pid].append((index, packet[payload:]))


def packet_size(recording):
    for size, offset in ((188, 0), (192, 4), (204, 0)):
        places = range(offset, min(len(recording), 20 * size), size)
        if all(recording[at] == 0x47 for at in places):
            return size
    raise ValueError("not in sync from its first byte on")


def expect_same_counts(overview, packets):
    """Holds the rows of the PIDs against the counts."""
    recording = overview["recording"]
    assert recording["packets"] == packets.total, (recording["packets"], packets.total)
    assert recording["packet_size"] == packets.size
    assert [row["pid"] for row in overview["pids"]] == sorted(packets.first, key=packets.first.get)
    for row in overview["pids"]:
        pid = row["pid"]
        expected = {
            "packets": packets.counts[pid], "first_packet": packets.first[pid], "last_packet": packets.last[pid],
            "transport_errors": packets.errors[pid], "scrambled": packets.scrambled[pid],
            "unit_starts": packets.unit_starts[pid], "random_access_points": packets.random_access[pid],
            "without_payload": packets.without_payload[pid], "discontinuities": packets.discontinuities[pid]}
        for name, value in expected.items():
            assert row[name] == value, (hex(pid), name, row[name], value)
