#include "mpeg12_ts/crc32.h"

#include "mpeg12_ts/bytes.h"

#include <array>
#include <cstddef>

namespace {

using crc_tables = std::array<std::array<uint32_t, 256>, 8>;

/// tables[k][b] is the remainder of byte b followed by k zero bytes, so that eight bytes go in one step.
constexpr crc_tables make_tables()
{
    crc_tables tables{};
    for (uint32_t b = 0; b < 256; ++b) {
        uint32_t crc = b << 24;
        for (int bit = 0; bit < 8; ++bit) crc = (crc << 1) ^ ((crc & 0x80000000) != 0 ? 0x04C11DB7u : 0u);
        tables[0][b] = crc;
    }
    for (size_t k = 1; k < 8; ++k)
        for (size_t b = 0; b < 256; ++b)
            tables[k][b] = (tables[k - 1][b] << 8) ^ tables[0][tables[k - 1][b] >> 24];
    return tables;
}

constexpr crc_tables tables = make_tables();

} // namespace

uint32_t mpeg_ts_crc32_by_tables(uint32_t crc, const uint8_t *start, const uint8_t *fence)
{
    const uint8_t *p = start;

    for (; fence - p >= 8; p += 8) {
        const uint32_t a = crc ^ big_endian_32(p);
        const uint32_t b = big_endian_32(p + 4);
        crc = tables[7][a >> 24] ^ tables[6][(a >> 16) & 0xFF] ^ tables[5][(a >> 8) & 0xFF] ^
              tables[4][a & 0xFF] ^ tables[3][b >> 24] ^ tables[2][(b >> 16) & 0xFF] ^
              tables[1][(b >> 8) & 0xFF] ^ tables[0][b & 0xFF];
    }
    for (; p < fence; ++p) crc = (crc << 8) ^ tables[0][(crc >> 24) ^ *p];
    return crc;
}

uint32_t mpeg_ts_crc32(const uint8_t *start, const uint8_t *fence)
{
    constexpr uint32_t initial = 0xFFFFFFFF;
    static const bool can_fold = mpeg_ts_crc32_can_fold();

    return can_fold ? mpeg_ts_crc32_by_folding(initial, start, fence)
                    : mpeg_ts_crc32_by_tables(initial, start, fence);
}
