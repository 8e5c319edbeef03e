// Where and when something is in a recording.
#pragma once

#include <cstdint>
#include <optional>

/// Ticks of a second: the system clock, ISO/IEC 13818-1 2.4.2.1.
constexpr int64_t ticks_per_second = 27000000;

struct moment {
    uint64_t packet = 0;          ///< index of the packet, counted from the first in sync
    uint64_t byte = 0;            ///< offset of the packet in the recording
    std::optional<int64_t> ticks; ///< 27 MHz, 0 at packet 0; none where the time is not known
    /// Number of the stretch without a time break that it lies in; below 0 inside a break.
    int64_t stretch = 0;
    /// Before the first clock point or behind the last: the time is right where the bit rate is constant.
    bool extrapolated = false;
};

/// The ticks from one moment to a later one, or nothing when a time is not known or a time break lies
/// between.
inline std::optional<int64_t> interval_between(const moment &from, const moment &to)
{
    if (!from.ticks || !to.ticks || from.stretch < 0 || from.stretch != to.stretch) return std::nullopt;
    return *to.ticks - *from.ticks;
}
