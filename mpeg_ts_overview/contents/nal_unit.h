// NAL units in a byte stream, ISO/IEC 14496-10 Annex B and 23008-2 Annex B, and reading what is in them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "mpeg12_ts/bit_reader.h"

/// The bytes of a NAL unit from its header on, without the zeros behind it.
struct nal_unit {
    const uint8_t *start;
    const uint8_t *fence;
};

/// Finds the next NAL unit at or behind *position that has a start code before and behind it, and moves
/// *position behind the NAL unit. False when there is none in the data.
bool next_nal_unit(const uint8_t **position, const uint8_t *fence, nal_unit *found);

/// Reads a raw byte sequence payload by the descriptors of the standards. Past its end it reads zeros.
class rbsp_reader {
public:
    /// Takes the emulation prevention bytes out of [start, fence): a NAL unit's bytes behind its header. Only
    /// the first 1024 bytes are kept, so that a longer payload never ends well.
    rbsp_reader(const uint8_t *start, const uint8_t *fence);
    rbsp_reader(const rbsp_reader &) = delete;
    rbsp_reader &operator=(const rbsp_reader &) = delete;

    /// An unsigned number of 0 to 32 bits.
    unsigned u(unsigned width);

    /// One bit.
    bool flag() { return u(1) != 0; }

    /// An unsigned Exp-Golomb number. One of more than 32 bits, which no field has, breaks the payload.
    unsigned ue();

    /// A signed Exp-Golomb number.
    int se();

    void skip(unsigned bits);

    /// True while all that was read was there and was a number.
    bool is_good() const { return !is_broken && bits_read <= 8 * size; }

    /// True when nothing but the rbsp_trailing_bits is left, and all before was good.
    bool ends_well();

private:
    static constexpr size_t capacity = 1024;

    uint8_t payload[capacity];
    size_t size;
    bit_reader in;
    size_t bits_read = 0;
    bool is_broken = false;
};
