// One whole section of a PID, as the tables and the contents get it. ISO/IEC 13818-1 2.4.4.
#pragma once

#include "mpeg12_ts/table_assembly.h"
#include "mpeg_ts_overview/model/moment.h"

#include <cstdint>

/// The pointers are valid during the call that hands the section over.
struct table_section {
    uint16_t pid = 0;
    mpeg_ts_pat_main_header header;      ///< of a short section everything behind section_length is 0
    const uint8_t *start = nullptr;      ///< the table_id
    const uint8_t *fence = nullptr;      ///< one past the section, its CRC_32 included
    const uint8_t *body = nullptr;       ///< behind the header
    const uint8_t *body_fence = nullptr; ///< before the CRC_32 of a long section; else the section's end
    uint32_t crc_32 = 0;                 ///< the last four bytes of a long section; else 0
    moment begun;                        ///< of the packet in which it begins
    moment at;                           ///< of the packet in which it ends
};
