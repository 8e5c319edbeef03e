// The body of a TS_program_map_section, ISO/IEC 13818-1 2.4.4.8.
#pragma once

#include <cstdint>

constexpr unsigned mpeg_ts_pat_map_stream_limit = 16;

struct mpeg_ts_pat_map_stream {
    uint8_t stream_type = 0;
    uint16_t elementary_PID = 0; ///< 13 bits
    uint16_t ES_info_length = 0; ///< bytes, 12 bits
    const uint8_t *ES_info = nullptr;
};

/// Its pointers point into the section.
struct mpeg_ts_pat_map_header {
    mpeg_ts_pat_map_stream streams[mpeg_ts_pat_map_stream_limit];
    const uint8_t *program_info = nullptr;
    uint16_t program_info_length = 0; ///< bytes, 12 bits
    uint16_t PCR_PID = 0;             ///< 13 bits
    uint16_t stream_count = 0;        ///< entries of streams that are filled
};

/// Parses the body [p, f). Returns 0 when it is below 4 bytes or program_info runs past f. Streams beyond the
/// 16th are left out; a stream that does not fit ends the list.
int mpeg_ts_pat_map_header_decode(mpeg_ts_pat_map_header *map, const uint8_t *p, const uint8_t *f);
