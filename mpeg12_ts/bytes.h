// Big-endian reads at fixed places, for sizes that have been tested once: the packet header, the adaptation
// field, the section header. Everything inside a table or a descriptor goes through bit_reader instead.
#pragma once

#include <cstdint>

/// The 16-bit number in the two bytes at p, most significant first.
inline uint16_t big_endian_16(const uint8_t *p)
{
    return static_cast<uint16_t>((p[0] << 8) | p[1]);
}

/// The 32-bit number in the four bytes at p, most significant first.
inline uint32_t big_endian_32(const uint8_t *p)
{
    return (static_cast<uint32_t>(big_endian_16(p)) << 16) | big_endian_16(p + 2);
}

/// The 64-bit number in the eight bytes at p, most significant first.
inline uint64_t big_endian_64(const uint8_t *p)
{
    return (static_cast<uint64_t>(big_endian_32(p)) << 32) | big_endian_32(p + 4);
}
