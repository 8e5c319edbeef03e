// Every style of byte row in the report, side by side. Digits come from a table.
#pragma once

#include <cstdint>

/// Rows of 16 bytes: four blanks, then "%02x " each. The packet dump's adaptation field and its parts.
void report_hex_rows(const uint8_t *p, const uint8_t *fence);

/// The same, and a full row is followed by its bytes as text. The packet dump's payload.
void report_hex_and_text_rows(const uint8_t *p, const uint8_t *fence);

/// Rows of 16 columns: three blanks, "%02x " each, two blanks, the bytes as text; columns past the end are
/// blank. The raw contents of a table. Byte 0x7F counts as text.
void report_table_rows(const uint8_t *p, const uint8_t *fence);

/// Rows of 16 bytes: twelve blanks, then "0x%02x " each. The raw bytes of a descriptor.
void report_descriptor_rows(const uint8_t *p, const uint8_t *fence);

/// "%02x " each, in one row without a line end.
void report_hex_bytes(const uint8_t *p, const uint8_t *fence);

/// "0x%02x" each, with single blanks between, in one row without a line end.
void report_hex_list(const uint8_t *p, const uint8_t *fence);
