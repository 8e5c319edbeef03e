// The checksum by carry-less multiplication. A block of 128 bits, seen as a polynomial, is congruent to its
// two halves multiplied by powers of x modulo the CRC polynomial; so blocks fold onto those that follow them
// until 16 bytes are left.
#include "mpeg12_ts/crc32.h"

#if defined(__x86_64__)

#include <immintrin.h>

namespace {

/// x to the power of n modulo the CRC polynomial.
constexpr uint32_t power_of_x(unsigned n)
{
    uint32_t remainder = 1;
    for (unsigned i = 0; i < n; ++i)
        remainder = (remainder << 1) ^ ((remainder & 0x80000000) != 0 ? 0x04C11DB7u : 0u);
    return remainder;
}

constexpr long block_size = 16;
constexpr long step_size = 4 * block_size;

/// Sixteen bytes as a polynomial, the first byte with the highest powers.
__attribute__((target("pclmul,ssse3"))) __m128i load(const uint8_t *p)
{
    const __m128i first_byte_highest = _mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i *>(p)), first_byte_highest);
}

/// What a block becomes when it moves on by the distance of the powers (of its high and its low half) onto
/// another.
__attribute__((target("pclmul,ssse3"))) __m128i fold(__m128i block, __m128i powers, __m128i onto)
{
    const __m128i high = _mm_clmulepi64_si128(block, powers, 0x11);
    const __m128i low = _mm_clmulepi64_si128(block, powers, 0x00);
    return _mm_xor_si128(_mm_xor_si128(high, low), onto);
}

} // namespace

bool mpeg_ts_crc32_can_fold()
{
    return __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("ssse3");
}

__attribute__((target("pclmul,ssse3"))) uint32_t mpeg_ts_crc32_by_folding(uint32_t crc, const uint8_t *start,
                                                                          const uint8_t *fence)
{
    const uint8_t *p = start;
    if (fence - p < step_size) return mpeg_ts_crc32_by_tables(crc, p, fence);

    const __m128i by_step = _mm_set_epi64x(power_of_x(8 * step_size + 64), power_of_x(8 * step_size));
    const __m128i by_block = _mm_set_epi64x(power_of_x(8 * block_size + 64), power_of_x(8 * block_size));

    // The CRC so far stands before the first 32 bits.
    __m128i a = _mm_xor_si128(load(p), _mm_set_epi32(static_cast<int>(crc), 0, 0, 0));
    __m128i b = load(p + block_size);
    __m128i c = load(p + 2 * block_size);
    __m128i d = load(p + 3 * block_size);
    for (p += step_size; fence - p >= step_size; p += step_size) {
        a = fold(a, by_step, load(p));
        b = fold(b, by_step, load(p + block_size));
        c = fold(c, by_step, load(p + 2 * block_size));
        d = fold(d, by_step, load(p + 3 * block_size));
    }
    a = fold(fold(fold(a, by_block, b), by_block, c), by_block, d);
    for (; fence - p >= block_size; p += block_size) a = fold(a, by_block, load(p));

    uint8_t rest[block_size];
    const __m128i first_byte_highest = _mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    _mm_storeu_si128(reinterpret_cast<__m128i *>(rest), _mm_shuffle_epi8(a, first_byte_highest));
    return mpeg_ts_crc32_by_tables(mpeg_ts_crc32_by_tables(0, rest, rest + block_size), p, fence);
}

#else

bool mpeg_ts_crc32_can_fold()
{
    return false;
}

uint32_t mpeg_ts_crc32_by_folding(uint32_t crc, const uint8_t *start, const uint8_t *fence)
{
    return mpeg_ts_crc32_by_tables(crc, start, fence);
}

#endif
