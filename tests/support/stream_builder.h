// The vocabulary of the tests: sections, descriptors and a stream as a recipe in code. The builder keeps the
// continuity counters, the pointer_field, the stuffing and the CRC.
#pragma once

#include "tests/support/hex.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

/// The fields of a long section header that a recipe may care about.
struct section_fields {
    unsigned version_number = 0;
    unsigned current_next_indicator = 1;
    unsigned section_number = 0;
    unsigned last_section_number = 0;
    unsigned private_indicator = 0;
};

/// A section with section_syntax_indicator 1 and its CRC_32.
bytes long_section(unsigned table_id, unsigned table_id_extension, const bytes &body,
                   section_fields fields = {});

/// A section with section_syntax_indicator 0: 3 header bytes, then the body.
bytes short_section(unsigned table_id, const bytes &body, unsigned private_indicator = 0);

/// A descriptor: tag, length, body.
bytes descriptor(unsigned tag, const bytes &body);

/// A PAT of (program_number, PID) entries, reserved bits set.
bytes pat_section(unsigned transport_stream_id, const std::vector<std::pair<unsigned, unsigned>> &programs,
                  section_fields fields = {});

struct pmt_stream {
    unsigned stream_type;
    unsigned elementary_PID;
    bytes ES_info;
};

bytes pmt_section(unsigned program_number, unsigned PCR_PID, const bytes &program_info,
                  const std::vector<pmt_stream> &streams, section_fields fields = {});

/// An MPEG-2 PES packet of header and data; PES_packet_length is that of both. pts below 0 leaves it out.
bytes pes_packet(unsigned stream_id, const bytes &data, long long pts = -1, long long dts = -1);

class stream_builder {
public:
    /// A section from the start of a packet on, the last packet filled with stuffing.
    stream_builder &section(unsigned pid, const bytes &section);

    /// Several sections back to back. Where one begins in a packet, the packet starts a unit and its
    /// pointer_field points at the first that does.
    stream_builder &sections(unsigned pid, const std::vector<bytes> &sections);

    /// One packet with up to 184 payload bytes; an adaptation field of stuffing fills what is left.
    stream_builder &payload(unsigned pid, const bytes &payload, bool unit_start = false);

    /// A PES packet, or any other unit, over as many packets as it needs.
    stream_builder &unit(unsigned pid, const bytes &unit);

    /// One packet with an adaptation field (the bytes behind its length byte) and a payload behind it.
    /// Without a payload the field is filled up with stuffing to the packet's end.
    stream_builder &adaptation(unsigned pid, const bytes &field, const bytes &payload = {},
                               bool unit_start = false);

    /// A packet that carries a PCR, 27 MHz ticks, and no payload.
    stream_builder &pcr(unsigned pid, unsigned long long ticks);

    /// Padding packets, PID 0x1FFF.
    stream_builder &padding(unsigned count = 1);

    /// 188 bytes as they are.
    stream_builder &raw(const bytes &packet);

    /// The counters go on as if this many packets with payload of the PID had been lost.
    stream_builder &lose_packets(unsigned pid, unsigned count);

    /// Turns one bit of the packet added last (packet byte 0 to 187, bit 7 the most significant).
    stream_builder &flip_bit(unsigned byte, unsigned bit);

    /// Sets transport_scrambling_control of the packet added last.
    stream_builder &scramble(unsigned control);

    size_t packet_count() const { return stream.size() / 188; }

    /// The stream as 188-byte packets.
    const bytes &data() const { return stream; }

    /// The stream as 192-byte packets whose arrival times begin at first_arrival_time and rise by step.
    bytes avchd(unsigned first_arrival_time = 0, unsigned step = 0) const;

private:
    void add(unsigned pid, unsigned control, bool unit_start, const bytes &rest);

    bytes stream;
    std::array<unsigned, 0x2000> counters = {}; ///< of the next packet with payload
};
