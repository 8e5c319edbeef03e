"""What recorders and senders do to a stream of 188-byte packets, as functions of bytes."""

PACKET = 188
NULL_PID = 0x1FFF


def packets_of(stream):
    return [stream[at:at + PACKET] for at in range(0, len(stream) - PACKET + 1, PACKET)]


def pid_of(packet):
    return (packet[1] & 0x1F) << 8 | packet[2]


def without_pids(stream, pids):
    return b"".join(packet for packet in packets_of(stream) if pid_of(packet) not in pids)


def with_pids_only(stream, pids):
    return b"".join(packet for packet in packets_of(stream) if pid_of(packet) in pids)


def without_null_packets(stream):
    return without_pids(stream, {NULL_PID})


def cut(stream, first, last):
    """From one fraction of the bytes to another, wherever in a packet that is."""
    return stream[int(len(stream) * first):int(len(stream) * last)]


def with_parity(stream):
    """Packets of 204 bytes: 16 bytes behind each."""
    return b"".join(packet + bytes(16) for packet in packets_of(stream))


def crc_32(section):
    """ISO/IEC 13818-1 Annex A."""
    value = 0xFFFFFFFF
    for byte in section:
        value ^= byte << 24
        for _ in range(8):
            value = (value << 1 ^ (0x04C11DB7 if value & 0x80000000 else 0)) & 0xFFFFFFFF
    return value


def with_pat_of(stream, program_number):
    """The PAT of one packet lists that program alone, as recorders write it that keep one service."""
    changed = []
    for packet in packets_of(stream):
        if pid_of(packet) == 0:
            section_length = (packet[6] & 0x0F) << 8 | packet[7]
            entries = packet[13:5 + 3 + section_length - 4]
            kept = b"".join(entries[at:at + 4] for at in range(0, len(entries), 4)
                            if int.from_bytes(entries[at:at + 2], "big") == program_number)
            length = 5 + len(kept) + 4
            section = bytes([0, 0xB0 | length >> 8, length & 0xFF]) + packet[8:13] + kept
            section += crc_32(section).to_bytes(4, "big")
            packet = packet[:5] + section
            packet += b"\xFF" * (PACKET - len(packet))
        changed.append(packet)
    return b"".join(changed)
