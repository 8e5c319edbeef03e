// One transport packet: the four-byte header and the adaptation field, ISO/IEC 13818-1 2.4.3.2 and 2.4.3.4.
// Nothing is copied: every pointer of the record points into the caller's buffer.
#pragma once

#include <cstdint>

constexpr unsigned mpeg_ts_packet_size = 188;
/// A packet as recorded on Blu-ray and AVCHD media: a four-byte arrival time, then 188 bytes.
constexpr unsigned mpeg_ts_m2ts_packet_size = 192;
constexpr uint8_t mpeg_ts_sync_byte = 0x47;
constexpr unsigned mpeg_ts_pid_count = 0x2000;
constexpr uint16_t mpeg_ts_padding_pid = 0x1FFF;

struct mpeg_ts_packet {
    uint32_t arrival_time;                 ///< the prefix of a 192-byte packet, all 32 bits; 0 without one
    uint16_t pid;                          ///< 0 to 0x1FFF
    uint8_t continuity_counter;            ///< 0 to 15
    uint8_t transport_error_indicator;     ///< 0 or 1
    uint8_t payload_unit_start_indicator;  ///< 0 or 1
    uint8_t transport_priority;            ///< 0 or 1
    uint8_t transport_scrambling_control;  ///< 0 to 3
    uint8_t adaptation_field_control;      ///< bit 1: adaptation field present, bit 0: payload present
    const uint8_t *adaptation_field_fence; ///< one past the adaptation field, where a payload begins
    const uint8_t *adaptation_field;       ///< the adaptation_field_length byte, or null
    const uint8_t *payload;                ///< first payload byte, or null
    const uint8_t *fence;                  ///< one past the packet's last byte
    const uint8_t *packet;                 ///< first byte of the buffer: the prefix of a 192-byte packet

    // The adaptation field's flags, 0 or 1, in the standard's order. All are 0 when there is no flag byte.
    uint8_t discontinuity_indicator;
    uint8_t random_access_indicator;
    uint8_t elementary_stream_priority_indicator;
    uint8_t PCR_flag;
    uint8_t OPCR_flag;
    uint8_t splicing_point_flag;
    uint8_t transport_private_data_flag;
    uint8_t adaptation_field_extension_flag;

    // The optional fields, 0 or null when absent or when they do not fit in the adaptation field.
    unsigned long long PCR;                ///< base * 300 + extension, 27 MHz ticks
    unsigned long long OPCR;               ///< the same of the original stream
    uint8_t splice_countdown;              ///< the raw byte; a two's-complement count in the standard
    uint8_t transport_private_data_length; ///< bytes; kept even when the data it announces does not fit
    const uint8_t *transport_private_data;
    const uint8_t *adaptation_field_extension;
    uint8_t adaptation_field_extension_length; ///< bytes; kept even when the extension does not fit
};

/// Decodes the size bytes (188 or 192) at buffer. Returns non-zero when the packet was decoded, 0 when it was
/// rejected: another size, no sync byte, or an adaptation field that passes the packet's end.
int mpeg_ts_decode(mpeg_ts_packet *packet, const unsigned char *buffer, unsigned long size);
