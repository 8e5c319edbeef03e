// CRC_32 of a section, ISO/IEC 13818-1 Annex A: polynomial 0x04C11DB7, initial value 0xFFFFFFFF, no
// reflection, no final inversion.
#pragma once

#include <cstdint>

/// The CRC of the bytes [start, fence). Over a whole section, its CRC_32 field included, the result is 0 when
/// the section is intact.
uint32_t mpeg_ts_crc32(const uint8_t *start, const uint8_t *fence);

/// Goes on from crc over the bytes [start, fence) by tables, eight bytes a step. Works on every machine.
uint32_t mpeg_ts_crc32_by_tables(uint32_t crc, const uint8_t *start, const uint8_t *fence);

/// True when this machine multiplies without carries, so that mpeg_ts_crc32_by_folding works.
bool mpeg_ts_crc32_can_fold();

/// The same as mpeg_ts_crc32_by_tables by carry-less multiplication, 64 bytes a step; only where that can be
/// done.
uint32_t mpeg_ts_crc32_by_folding(uint32_t crc, const uint8_t *start, const uint8_t *fence);
