// Bits as the syntax tables of the standards write them, the reverse of a reader.
#pragma once

#include "tests/support/hex.h"

class bit_writer {
public:
    bit_writer &u(unsigned long long value, unsigned width)
    {
        while (width > 0) bits.push_back((value >> --width & 1) != 0);
        return *this;
    }

    /// Some flags or numbers of fixed width: "1 0 0110".
    bit_writer &flags(std::string_view digits)
    {
        for (const char digit : digits)
            if (digit != ' ') bits.push_back(digit == '1');
        return *this;
    }

    bit_writer &ue(unsigned value)
    {
        unsigned width = 0;
        while ((value + 1ull) >> (width + 1) != 0) ++width;
        return u(0, width).u(value + 1ull, width + 1);
    }

    bit_writer &se(int value)
    {
        return ue(value > 0 ? 2 * static_cast<unsigned>(value) - 1 : 2 * static_cast<unsigned>(-value));
    }

    bit_writer &append(const bit_writer &other)
    {
        bits.insert(bits.end(), other.bits.begin(), other.bits.end());
        return *this;
    }

    /// All so far with zeros up to a byte.
    bytes padded() const
    {
        bytes result((bits.size() + 7) / 8);
        for (size_t i = 0; i < bits.size(); ++i)
            if (bits[i]) result[i / 8] = static_cast<uint8_t>(result[i / 8] | 0x80 >> i % 8);
        return result;
    }

    /// A NAL unit between start codes: its header bytes, all so far with the rbsp_trailing_bits, escaped.
    bytes nal_unit(const bytes &header) const
    {
        bit_writer whole = *this;
        whole.u(1, 1);
        bytes result = join({hex("000001"), header});
        unsigned zeros = 0;
        for (const uint8_t byte : whole.padded()) {
            if (zeros == 2 && byte <= 3) {
                result.push_back(3);
                zeros = 0;
            }
            zeros = byte == 0 ? zeros + 1 : 0;
            result.push_back(byte);
        }
        return join({result, hex("000001")});
    }

private:
    std::vector<bool> bits;
};
