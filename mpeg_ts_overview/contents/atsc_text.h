// Text of ATSC program and system information: the multiple_string_structure, ATSC A/65 6.10, as UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct atsc_string {
    std::string language; // ISO_639_language_code
    std::string text;     // its segments, joined
};

/// The strings of the structure in [start, fence), as far as it goes. A segment that is compressed or of a
/// mode above 0x3F reads "(compressed)"; each byte of a reserved mode up to 0x3F is U+FFFD. A segment that
/// its structure cuts gives what is there of it and ends the strings.
std::vector<atsc_string> atsc_strings(const uint8_t *start, const uint8_t *fence);
