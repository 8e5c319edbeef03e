// The master guide table, ATSC A/65 6.2.
#pragma once

#include "mpeg_ts_overview/tables/byte_range.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <vector>

struct mgt_table {
    uint16_t table_type = 0;
    uint16_t table_type_PID = 0;
    uint8_t table_type_version_number = 0; ///< 0 to 31
    uint32_t number_bytes = 0;
    byte_range descriptors;
};

/// The tables that the section lists, as far as they fit; none of another protocol_version than 0.
std::vector<mgt_table> read_mgt(const table_section &section);
