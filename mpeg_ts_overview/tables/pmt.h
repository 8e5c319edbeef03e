// The program map section, ISO/IEC 13818-1 2.4.4.8.
#pragma once

#include "mpeg_ts_overview/tables/byte_range.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <optional>
#include <vector>

constexpr uint8_t pmt_table_id = 0x02;

/// A PCR_PID that says that the program has no PCR.
constexpr uint16_t no_pcr_pid = 0x1FFF;

struct pmt_entry {
    uint8_t stream_type = 0;
    uint16_t elementary_PID = 0;
    byte_range ES_info; ///< descriptors
};

struct pmt {
    uint16_t program_number = 0;
    uint16_t PCR_PID = 0;
    byte_range program_info; ///< descriptors
    std::vector<pmt_entry> streams;
};

/// The section, its streams as far as they fit; nothing when program_info does not fit.
std::optional<pmt> read_pmt(const table_section &section);
