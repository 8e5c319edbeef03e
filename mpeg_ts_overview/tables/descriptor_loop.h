// The descriptors of a loop, ISO/IEC 13818-1 2.6.1.
#pragma once

#include "mpeg_ts_overview/tables/byte_range.h"

#include <cstdint>

struct descriptor {
    uint8_t tag = 0;
    byte_range body;
};

/// Gives one descriptor after the other; one that does not fit ends the loop.
class descriptor_loop {
public:
    explicit descriptor_loop(byte_range loop) : in(loop.reader()) {}

    /// The next descriptor; false at the end.
    bool next(descriptor &found)
    {
        if (!in.has(2)) return false;
        found.tag = static_cast<uint8_t>(in.bits(8));
        const unsigned descriptor_length = in.bits(8);
        const std::optional<byte_range> body = take_range(in, descriptor_length);
        if (!body) return false;
        found.body = *body;
        return true;
    }

private:
    bit_reader in;
};
