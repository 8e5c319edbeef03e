// From floating point to 64 bits, defined for every value.
#pragma once

/// Truncation to 64 bits. Values from 2^63 on keep their top bit apart, negative ones give the
/// two's-complement pattern of their signed value, and those that no 64-bit number holds give what x86-64
/// gives.
inline unsigned long long truncate_to_64_bits(double value)
{
    constexpr double two_to_63 = 9223372036854775808.0;
    constexpr unsigned long long top_bit = 1ull << 63;

    if (value >= two_to_63) {
        const double rest = value - two_to_63;
        return rest < two_to_63 ? static_cast<unsigned long long>(rest) ^ top_bit : 0;
    }
    return value > -two_to_63 ? static_cast<unsigned long long>(static_cast<long long>(value)) : top_bit;
}
