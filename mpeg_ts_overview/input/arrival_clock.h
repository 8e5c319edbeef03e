// Arrival times of 192-byte packets, unwrapped: the low 30 bits of the stamp count 27 MHz ticks.
#pragma once

#include <cstdint>

class arrival_clock {
public:
    /// Takes the stamp of the next packet. Returns false when it does not follow the last one: time then goes
    /// on by the last good step.
    bool add(uint32_t stamp)
    {
        const uint32_t time = stamp & mask;
        const uint32_t step = (time - last_stamp) & mask;
        const bool follows = !has_stamp || step < longest_step;
        if (has_stamp) {
            if (follows) good_step = step;
            now += good_step;
        }
        last_stamp = time;
        has_stamp = true;
        return follows;
    }

    /// Ticks since the first stamp.
    int64_t ticks() const { return now; }

    /// Ticks of the last step that was no break; 0 before there was one.
    int64_t last_good_step() const { return good_step; }

private:
    static constexpr uint32_t mask = 0x3FFFFFFF;
    static constexpr uint32_t longest_step = 0x20000000;

    int64_t now = 0;
    int64_t good_step = 0;
    uint32_t last_stamp = 0;
    bool has_stamp = false;
};
