// Bytes written as people write them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

using bytes = std::vector<uint8_t>;

/// The bytes of hexadecimal digits; anything that is no digit is passed over: hex("47 1F FF 10").
bytes hex(std::string_view digits);

/// The bytes of a text, without a terminating zero.
bytes text_bytes(std::string_view text);

/// One after the other.
bytes join(std::initializer_list<bytes> parts);

/// count times the same byte.
bytes repeated(uint8_t byte, size_t count);

/// A number as size big-endian bytes.
bytes big_endian(unsigned long long number, unsigned size);
