// The program association section, ISO/IEC 13818-1 2.4.4.3.
#pragma once

#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <vector>

constexpr uint8_t pat_table_id = 0x00;
constexpr uint16_t pat_pid = 0x0000;

struct pat_entry {
    uint16_t program_number = 0; ///< 0: the PID is the network PID
    uint16_t PID = 0;
};

/// The entries of the section, as far as they fit.
std::vector<pat_entry> read_pat(const table_section &section);
