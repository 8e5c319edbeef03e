// The terrestrial virtual channel table, ATSC A/65 6.3.1, and the cable one, 6.3.2, as far as they are alike.
#pragma once

#include "mpeg_ts_overview/tables/byte_range.h"
#include "mpeg_ts_overview/tables/section.h"

#include <array>
#include <cstdint>
#include <vector>

struct tvct_channel {
    std::array<uint16_t, 7> short_name = {}; ///< UTF-16 code units, zeros behind the name
    uint16_t major_channel_number = 0;       ///< 10 bits
    uint16_t minor_channel_number = 0;       ///< 10 bits
    uint8_t modulation_mode = 0;
    uint16_t channel_TSID = 0;
    uint16_t program_number = 0;
    uint8_t ETM_location = 0; ///< 0 to 3
    bool access_controlled = false;
    bool hidden = false;
    bool hide_guide = false;
    uint8_t service_type = 0; ///< 0 to 63
    uint16_t source_id = 0;
    byte_range descriptors;
};

/// The channels of the section, as far as they fit; none of another protocol_version than 0.
std::vector<tvct_channel> read_tvct(const table_section &section);
