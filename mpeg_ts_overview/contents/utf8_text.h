// Unicode text, RFC 3629: what no decoder can take becomes U+FFFD, so that every text of the model is valid
// UTF-8.
#pragma once

#include <cstdint>
#include <string>

/// Stands for what cannot be converted.
constexpr unsigned replacement_character = 0xFFFD;

/// Appends a code point as UTF-8; surrogates and values above 0x10FFFF become U+FFFD.
void append_code_point(std::string &text, unsigned code);

/// Reads the code point of UTF-16, high byte first, at *position, which is below fence, and moves *position
/// behind it. A surrogate without its other half and a single byte at the end are U+FFFD.
unsigned next_utf16_code_point(const uint8_t **position, const uint8_t *fence);

/// The text of UTF-16 code units, high byte first; zeros become U+0000.
std::string utf16_text(const uint8_t *start, const uint8_t *fence);

/// The text of ISO/IEC 8859-1 bytes, which are the first 256 code points: language and country codes.
std::string latin_1_text(const uint8_t *start, const uint8_t *fence);
