// The time and date section and the time offset section, EN 300 468 5.2.5 and 5.2.6.
#pragma once

#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <optional>

constexpr uint8_t tdt_table_id = 0x70;
constexpr uint8_t tot_table_id = 0x73;
constexpr uint16_t tdt_pid = 0x0014;

/// The UTC_time of a TDT or a TOT in seconds since 1970-01-01T00:00:00Z; nothing when it is none.
std::optional<int64_t> read_tdt(const table_section &section);
