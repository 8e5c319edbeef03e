// A part of a section that another reader looks into: a descriptor loop, a text.
#pragma once

#include "mpeg12_ts/bit_reader.h"

#include <cstddef>
#include <cstdint>
#include <optional>

struct byte_range {
    const uint8_t *start = nullptr;
    const uint8_t *fence = nullptr; ///< one past its last byte

    size_t size() const { return static_cast<size_t>(fence - start); }
    bit_reader reader() const { return bit_reader(start, fence); }
};

/// The next length bytes, which the reader passes over; nothing when there are fewer.
inline std::optional<byte_range> take_range(bit_reader &in, size_t length)
{
    if (!in.has(length)) return std::nullopt;
    const uint8_t *const start = in.position();
    in.skip(length);
    return byte_range{start, start + length};
}

/// What is left, which the reader passes over.
inline byte_range take_rest(bit_reader &in)
{
    return *take_range(in, in.bytes_left());
}
