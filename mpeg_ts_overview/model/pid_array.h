// An array by PID. Of programs whose PIDs are 0x100 apart, as they often are, entries in the order of PIDs
// would share a few sets of the processor's first cache; here each program has its own.
// There is one entry more, that of mpeg_ts_pid_count, which is no PID.
#pragma once

#include "mpeg12_ts/packet.h"

#include <array>
#include <cstddef>
#include <cstdint>

template <typename value>
class pid_array {
public:
    value &operator[](uint16_t pid) { return values[place_of(pid)]; }
    const value &operator[](uint16_t pid) const { return values[place_of(pid)]; }

    // All values, in no order that matters.
    auto begin() { return values.begin(); }
    auto end() { return values.end(); }

private:
    /// Each PID has its place: the upper bits are kept, and take the lower ones to another line of the cache.
    static size_t place_of(uint16_t pid) { return pid ^ (pid >> 5 & 0xF8u); }

    std::array<value, mpeg_ts_pid_count + 1> values = {};
};
