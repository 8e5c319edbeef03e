// The characters of teletext rows, ETSI EN 300 706 15.6 and 15.7: the Latin G0 set with its national
// options, and block mosaics.
#pragma once

#include <array>
#include <cstdint>
#include <string>

constexpr unsigned teletext_column_count = 40;

/// Stands in a row where a byte came with wrong parity.
constexpr uint8_t teletext_wrong_parity = 0x80;

/// The bytes of a row without their parity bits.
using teletext_row = std::array<uint8_t, teletext_column_count>;

/// The row as UTF-8, 40 characters. national_option is C12 to C14, 0 to 7 (7 is reserved and shown as 0).
/// Spacing attributes are blanks; a block mosaic is the nearest of the characters that divide their cell in
/// four, which fonts have more often than those that divide it in six; wrong parity is U+FFFD.
std::string teletext_row_text(const teletext_row &row, unsigned national_option);
