// CRC_32 of a section, ISO/IEC 13818-1 Annex A: polynomial 0x04C11DB7, initial value 0xFFFFFFFF, no
// reflection, no final inversion.
#pragma once

#include <cstdint>

/// The CRC of the bytes [start, fence). Over a whole section, its CRC_32 field included, the result is 0 when
/// the section is intact.
uint32_t mpeg_ts_crc32(const uint8_t *start, const uint8_t *fence);
