// The body of a network_information_section, EN 300 468 5.2.1: its header and an iterator over its transport
// streams. The pointers point into the section.
#pragma once

#include <cstdint>

struct mpeg_ts_nit_header {
    uint16_t network_descriptors_length = 0; ///< bytes, 12 bits
    const uint8_t *network_descriptors = nullptr;
    const uint8_t *network_descriptors_fence = nullptr;
    uint16_t transport_stream_loop_length = 0; ///< bytes, 12 bits
    const uint8_t *transport_stream_loop = nullptr;
    const uint8_t *transport_stream_loop_fence = nullptr;
};

struct mpeg_ts_nit_entry {
    uint16_t transport_stream_id = 0;
    uint16_t original_network_id = 0;
    uint16_t transport_descriptors_length = 0; ///< bytes, 12 bits
    const uint8_t *transport_descriptors = nullptr;
    const uint8_t *transport_descriptors_fence = nullptr;
    const uint8_t *next = nullptr; ///< where the following entry begins
    const uint8_t *loop_fence = nullptr;
};

/// Parses the fixed part of the body [p, f). Returns 0 when a length field does not fit or runs past f.
int mpeg_ts_decode_nit_header(mpeg_ts_nit_header *header, const uint8_t *p, const uint8_t *f);

/// Decodes the first entry of the transport stream loop [p, f). Returns 0 when there is none or it does not
/// fit.
int mpeg_ts_decode_nit_first_entry(mpeg_ts_nit_entry *entry, const uint8_t *p, const uint8_t *f);

/// Decodes the entry after this one in place. Returns 0 at the loop's end or when the next entry does not
/// fit.
int mpeg_ts_decode_nit_next_entry(mpeg_ts_nit_entry *entry);
