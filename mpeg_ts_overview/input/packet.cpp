#include "mpeg_ts_overview/input/packet.h"

#include "mpeg12_ts/bytes.h"
#include "mpeg12_ts/packet.h"

namespace {

constexpr unsigned header_size = 4;
constexpr unsigned clock_reference_size = 6;

/// The 33-bit base, 6 reserved bits and 9-bit extension at p, in 27 MHz ticks.
uint64_t clock_reference(const uint8_t *p)
{
    const uint64_t base = (uint64_t{big_endian_32(p)} << 1) | (p[4] >> 7);
    const unsigned extension = big_endian_16(p + 4) & 0x1FFu;
    return base * 300 + extension;
}

/// The flags of the adaptation field whose length byte is at p.
void read_adaptation_field(ts_packet &packet, const uint8_t *p, unsigned adaptation_field_length)
{
    if (adaptation_field_length == 0) return;
    packet.discontinuity_indicator = (p[1] & 0x80) != 0;
    packet.random_access_indicator = (p[1] & 0x40) != 0;
    const bool PCR_flag = (p[1] & 0x10) != 0;
    if (PCR_flag && adaptation_field_length >= 1 + clock_reference_size) packet.PCR = clock_reference(p + 2);
}

} // namespace

ts_packet read_packet(const uint8_t *start)
{
    ts_packet packet;
    const uint8_t *const packet_fence = start + mpeg_ts_packet_size;
    const uint8_t *p = start + header_size;

    packet.start = start;
    packet.transport_error_indicator = (start[1] & 0x80) != 0;
    packet.payload_unit_start_indicator = (start[1] & 0x40) != 0;
    packet.pid = big_endian_16(start + 1) & 0x1FFF;
    packet.transport_scrambling_control = start[3] >> 6;
    packet.adaptation_field_control = (start[3] >> 4) & 3;
    packet.continuity_counter = start[3] & 0xF;
    packet.payload = packet.fence = packet_fence;

    if (packet.adaptation_field_control & 2) {
        const unsigned adaptation_field_length = p[0];
        if (p + 1 + adaptation_field_length > packet_fence) return packet;
        read_adaptation_field(packet, p, adaptation_field_length);
        p += 1 + adaptation_field_length;
    }
    if (packet.adaptation_field_control & 1) packet.payload = p;
    return packet;
}
