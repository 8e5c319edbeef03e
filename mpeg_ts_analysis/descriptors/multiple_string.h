// Text of ATSC A/65: the multiple_string_structure, 6.10 of the standard, printed under the clause 6.39.
#pragma once

#include <cstddef>
#include <cstdint>

/// Prints the structure in the length bytes at p. Its heading, which obeys the dump mode, is indented by
/// indent blanks, its strings by 4 more, their segments by 8 and their texts by 12. Text comes out as UTF-8.
void desc_atsc_A65_2009_6_39_multiple_string_structure(const uint8_t *p, unsigned length, int indent);

/// Converts one segment to zero-terminated UTF-8, as much as fits in dest_size bytes. A compression or a mode
/// that is not supported is reported and gives an empty text. With dest_size 0 it does nothing.
void atsc_multiple_string_segment_to_utf8(char *dest, size_t dest_size, const uint8_t *bytes,
                                          unsigned number_bytes, unsigned compression_type, unsigned mode);
