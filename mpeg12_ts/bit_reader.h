// Sequential reads by width from a byte range. Past its fence the range reads as endless zeros, and the
// position counts on: nothing is ever read from memory outside the range, and a structure that lies about its
// length can still be measured by how far it got.
#pragma once

#include "mpeg12_ts/bytes.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

class bit_reader {
public:
    /// Reads [first, fence); a fence below first is an empty range.
    bit_reader(const uint8_t *first, const uint8_t *fence)
        : start(first), size(fence > first ? static_cast<size_t>(fence - first) : 0)
    {
    }

    /// The next width bits (1 to 32), most significant first.
    [[gnu::always_inline]] unsigned bits(unsigned width) { return static_cast<unsigned>(bits64(width)); }

    /// The next width bits (1 to 56), most significant first.
    [[gnu::always_inline]] unsigned long long bits64(unsigned width)
    {
        const size_t first_byte = position_in_bits / 8;
        const size_t first_bit = position_in_bits % 8;
        position_in_bits += width;
        const uint64_t value =
            first_byte + 8 <= size ? big_endian_64(start + first_byte) : last_bytes(start, size, first_byte);
        return (value << first_bit) >> (64 - width);
    }

    /// The next capacity - 1 bytes (a fixed code, such as a language) as zero-terminated text.
    template <size_t capacity>
    void text(char (&buffer)[capacity])
    {
        text(buffer, capacity - 1);
    }

    /// The next length bytes as zero-terminated text; the buffer holds at least length + 1 bytes.
    void text(char *buffer, size_t length)
    {
        if (length > 0 && position_in_bits % 8 == 0 && has(length)) {
            std::memcpy(buffer, position(), length);
            skip(length);
        } else {
            for (size_t i = 0; i < length; ++i) buffer[i] = static_cast<char>(bits(8));
        }
        buffer[length] = '\0';
    }

    void skip(size_t count) { position_in_bits += 8 * count; }

    /// True when this many whole bytes are left before the fence.
    bool has(size_t count) const { return count <= bytes_left(); }

    /// Whole bytes left before the fence.
    size_t bytes_left() const { return bytes_read() < size ? size - bytes_read() : 0; }

    /// Bytes touched so far, those past the fence included.
    size_t bytes_read() const { return (position_in_bits + 7) / 8; }

    /// The next byte not yet touched, or the fence when all are.
    const uint8_t *position() const { return start + (bytes_read() < size ? bytes_read() : size); }

private:
    /// The eight bytes from first_byte on as a number, zeros behind the last of the range.
    [[gnu::noinline]] static uint64_t last_bytes(const uint8_t *start, size_t size, size_t first_byte)
    {
        if (first_byte >= size) return 0;
        uint64_t value = 0;
        for (size_t i = first_byte; i < size; ++i) value = (value << 8) | start[i];
        return value << 8 * (8 - (size - first_byte));
    }

    const uint8_t *start;
    size_t size;
    size_t position_in_bits = 0;
};
