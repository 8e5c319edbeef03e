// The checksum by carry-less multiplication. A block of 128 bits, seen as a polynomial, is congruent to its
// two halves multiplied by powers of x modulo the CRC polynomial; so blocks fold onto those that follow them
// until 16 bytes are left. Bytes that fill no block stand in front, where zeros before them change nothing.
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

constexpr uint64_t crc_polynomial = 0x104C11DB7;

/// The quotient of x to the power of 64 and the CRC polynomial.
constexpr uint64_t quotient_of_x_64()
{
    uint64_t quotient = 0;
    uint64_t remainder = uint64_t{1} << 32;
    for (int bit = 32; bit >= 0; --bit) {
        const uint64_t digit = remainder >> 32;
        quotient = quotient << 1 | digit;
        remainder = (remainder ^ (digit != 0 ? crc_polynomial : 0)) << 1;
    }
    return quotient;
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

/// A block moved on by count bytes (1 to 15), which drop out, zeros in front.
__attribute__((target("pclmul,ssse3"))) __m128i without_last_bytes(__m128i block, unsigned count)
{
    alignas(16) static constexpr uint8_t places[2 * block_size] = {
        0,    1,    2,    3,    4,    5,    6,    7,    8,    9,    10,   11,   12,   13,   14,   15,
        0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80};
    return _mm_shuffle_epi8(block, _mm_loadu_si128(reinterpret_cast<const __m128i *>(places + count)));
}

/// A block multiplied by x to the power of 32, modulo the CRC polynomial.
__attribute__((target("pclmul,ssse3"))) uint32_t remainder_of(__m128i block)
{
    const __m128i powers = _mm_set_epi64x(power_of_x(64), power_of_x(96));
    const __m128i barrett = _mm_set_epi64x(crc_polynomial, quotient_of_x_64());

    const __m128i of_96_bits =
        _mm_xor_si128(_mm_clmulepi64_si128(block, powers, 0x01), _mm_slli_si128(_mm_move_epi64(block), 4));
    const __m128i of_64_bits =
        _mm_xor_si128(_mm_clmulepi64_si128(of_96_bits, powers, 0x11), _mm_move_epi64(of_96_bits));
    const __m128i quotient =
        _mm_srli_epi64(_mm_clmulepi64_si128(_mm_srli_epi64(of_64_bits, 32), barrett, 0x00), 32);
    const __m128i remainder = _mm_xor_si128(_mm_clmulepi64_si128(quotient, barrett, 0x10), of_64_bits);
    return static_cast<uint32_t>(_mm_cvtsi128_si32(remainder));
}

/// The 32 bits as the first four bytes of a block.
__attribute__((target("pclmul,ssse3"))) __m128i first_bytes(uint32_t bits)
{
    return _mm_set_epi32(static_cast<int>(bits), 0, 0, 0);
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
    if (fence - p < block_size) return mpeg_ts_crc32_by_tables(crc, p, fence);

    const __m128i by_step = _mm_set_epi64x(power_of_x(8 * step_size + 64), power_of_x(8 * step_size));
    const __m128i by_block = _mm_set_epi64x(power_of_x(8 * block_size + 64), power_of_x(8 * block_size));

    // The CRC so far stands before the first 32 bits, which the bytes in front may have only a part of.
    __m128i a = _mm_xor_si128(load(p), first_bytes(crc));
    const auto in_front = static_cast<unsigned>((fence - p) % block_size);
    if (in_front != 0) {
        p += in_front;
        const __m128i next = _mm_xor_si128(load(p), first_bytes(in_front < 4 ? crc << 8 * in_front : 0));
        a = fold(without_last_bytes(a, block_size - in_front), by_block, next);
    }
    p += block_size;

    if (fence - p >= step_size + 3 * block_size) {
        __m128i b = load(p);
        __m128i c = load(p + block_size);
        __m128i d = load(p + 2 * block_size);
        for (p += 3 * block_size; fence - p >= step_size; p += step_size) {
            a = fold(a, by_step, load(p));
            b = fold(b, by_step, load(p + block_size));
            c = fold(c, by_step, load(p + 2 * block_size));
            d = fold(d, by_step, load(p + 3 * block_size));
        }
        a = fold(fold(fold(a, by_block, b), by_block, c), by_block, d);
    }
    for (; p < fence; p += block_size) a = fold(a, by_block, load(p));
    return remainder_of(a);
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
