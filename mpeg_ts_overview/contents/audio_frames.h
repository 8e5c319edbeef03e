// Finding the first frame in a piece of an audio elementary stream, which may begin anywhere in one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

/// The first frame header in [start, fence) that is confirmed by another one where its frame ends, or a frame
/// header at start when the data ends before that. header_at reads a header, which has a frame_bytes above 0,
/// at its first argument; confirms tells whether the second header may follow the first. next, if there was
/// room for one, is the header that confirmed.
template <typename header>
struct found_frame {
    header first;
    std::optional<header> next;
};

template <typename header>
std::optional<found_frame<header>>
first_frame(const uint8_t *start, const uint8_t *fence, size_t header_bytes,
            std::optional<header> (*header_at)(const uint8_t *, const uint8_t *),
            bool (*confirms)(const header &, const header &))
{
    for (const uint8_t *p = start; p < fence; ++p) {
        const auto first = header_at(p, fence);
        if (!first) continue;
        const bool has_room = static_cast<size_t>(fence - p) >= first->frame_bytes + header_bytes;
        if (!has_room && p == start) return found_frame<header>{*first, {}};
        if (!has_room) continue;
        const auto next = header_at(p + first->frame_bytes, fence);
        if (next && confirms(*first, *next)) return found_frame<header>{*first, next};
    }
    return {};
}
