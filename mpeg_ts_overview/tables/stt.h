// The system time table, ATSC A/65 6.1.
#pragma once

#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <optional>

/// The seconds from 1970-01-01T00:00:00Z to that of GPS, 1980-01-06T00:00:00Z.
constexpr int64_t gps_epoch_utc_s = 315964800;

struct stt {
    uint32_t system_time = 0;   ///< seconds since the epoch of GPS
    uint8_t GPS_UTC_offset = 0; ///< seconds by which GPS is ahead of UTC

    int64_t utc_s() const { return gps_epoch_utc_s + int64_t{system_time} - int64_t{GPS_UTC_offset}; }
};

/// The section; nothing when it is shorter than its fixed part, or of another protocol_version than 0.
std::optional<stt> read_stt(const table_section &section);
