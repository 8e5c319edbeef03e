// Dates and times of DVB tables, EN 300 468 Annex C: a Modified Julian Date of 16 bits, and six or eight BCD
// digits.
#pragma once

#include "mpeg12_ts/bit_reader.h"

#include <cstdint>
#include <optional>

/// The UTC time of the next 40 bits in seconds since 1970-01-01T00:00:00Z; nothing when the digits are no
/// time of day, as when all bits are 1 for "undefined".
std::optional<int64_t> read_utc_time(bit_reader &in);

/// The duration of the next 24 bits in seconds; nothing when the digits are none.
std::optional<uint32_t> read_bcd_duration(bit_reader &in);
