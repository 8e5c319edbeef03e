// One EBU Teletext data unit, ETSI EN 300 472 4.3 table 2.
#pragma once

#include <cstdint>

constexpr unsigned teletext_data_unit_length = 44;

/// Prints the 44 data bytes at d: line, address, data and, for the rows of a page, their text. Coding faults
/// are printed in every dump mode.
void teletext_decode_data_unit(const uint8_t *d);
