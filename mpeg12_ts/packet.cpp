#include "mpeg12_ts/packet.h"

#include "mpeg12_ts/bytes.h"

namespace {

/// The 33-bit base, 6 reserved bits and 9-bit extension at p, in 27 MHz ticks.
unsigned long long clock_reference(const uint8_t *p)
{
    const unsigned long long base = (static_cast<unsigned long long>(big_endian_32(p)) << 1) | (p[4] >> 7);
    const unsigned extension = big_endian_16(p + 4) & 0x1FFu;
    return base * 300 + extension;
}

/// The fields behind the flag byte, in the standard's order. The first that does not fit ends the reading.
void decode_optional_fields(mpeg_ts_packet *packet, const uint8_t *p)
{
    const uint8_t *const fence = packet->adaptation_field_fence;

    if (packet->PCR_flag) {
        if (fence - p < 6) return;
        packet->PCR = clock_reference(p);
        p += 6;
    }
    if (packet->OPCR_flag) {
        if (fence - p < 6) return;
        packet->OPCR = clock_reference(p);
        p += 6;
    }
    if (packet->splicing_point_flag) {
        if (fence - p < 1) return;
        packet->splice_countdown = *p++;
    }
    if (packet->transport_private_data_flag) {
        if (fence - p < 1) return;
        packet->transport_private_data_length = *p++;
        if (fence - p < packet->transport_private_data_length) return;
        packet->transport_private_data = p;
        p += packet->transport_private_data_length;
    }
    if (packet->adaptation_field_extension_flag) {
        if (fence - p < 1) return;
        packet->adaptation_field_extension_length = *p++;
        if (fence - p < packet->adaptation_field_extension_length) return;
        packet->adaptation_field_extension = p;
    }
}

/// Returns false when the field passes the packet's end.
bool decode_adaptation_field(mpeg_ts_packet *packet, const uint8_t *p)
{
    const unsigned adaptation_field_length = p[0];
    if (packet->fence - p < 1 + static_cast<int>(adaptation_field_length)) return false;

    packet->adaptation_field = p;
    packet->adaptation_field_fence = p + 1 + adaptation_field_length;
    if (adaptation_field_length == 0) return true;

    const uint8_t flags = p[1];
    packet->discontinuity_indicator = (flags >> 7) & 1;
    packet->random_access_indicator = (flags >> 6) & 1;
    packet->elementary_stream_priority_indicator = (flags >> 5) & 1;
    packet->PCR_flag = (flags >> 4) & 1;
    packet->OPCR_flag = (flags >> 3) & 1;
    packet->splicing_point_flag = (flags >> 2) & 1;
    packet->transport_private_data_flag = (flags >> 1) & 1;
    packet->adaptation_field_extension_flag = flags & 1;
    decode_optional_fields(packet, p + 2);
    return true;
}

} // namespace

int mpeg_ts_decode(mpeg_ts_packet *packet, const unsigned char *buffer, unsigned long size)
{
    *packet = mpeg_ts_packet{};
    if (size != mpeg_ts_packet_size && size != mpeg_ts_m2ts_packet_size) return 0;

    const uint8_t *const p = buffer + (size - mpeg_ts_packet_size);
    if (p[0] != mpeg_ts_sync_byte) return 0;

    if (size == mpeg_ts_m2ts_packet_size) packet->arrival_time = big_endian_32(buffer);
    packet->transport_error_indicator = p[1] >> 7;
    packet->payload_unit_start_indicator = (p[1] >> 6) & 1;
    packet->transport_priority = (p[1] >> 5) & 1;
    packet->pid = big_endian_16(p + 1) & 0x1FFF;
    packet->transport_scrambling_control = p[3] >> 6;
    packet->adaptation_field_control = (p[3] >> 4) & 3;
    packet->continuity_counter = p[3] & 0xF;
    packet->packet = buffer;
    packet->fence = buffer + size;

    packet->adaptation_field_fence = p + 4;
    if (packet->adaptation_field_control & 2) {
        if (!decode_adaptation_field(packet, p + 4)) {
            *packet = mpeg_ts_packet{};
            return 0;
        }
    }
    if ((packet->adaptation_field_control & 1) && packet->adaptation_field_fence < packet->fence)
        packet->payload = packet->adaptation_field_fence;
    return 1;
}
