// The clock of each program: the last PCR of its PCR PID and the time since. ISO/IEC 13818-1 2.4.2.1.
#pragma once

#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/model/pid_array.h"
#include "mpeg_ts_overview/model/sequence.h"

#include <cstdint>
#include <optional>
#include <vector>

class program_clocks {
public:
    /// Takes each packet that has a PCR or the discontinuity_indicator, in order. A copy, a packet with
    /// transport error and the null PID, which stands for no clock, say nothing.
    void on_packet(const ts_packet &packet, const packet_sequence &sequence);

    /// The program clock at a moment, 27 MHz, 0 to 2^33 * 300 - 1. Nothing before the first PCR of the PID,
    /// from a discontinuity to the next PCR, over a time break, and where times are not known but in the
    /// packet of the PCR itself.
    std::optional<int64_t> at(uint16_t pcr_pid, const moment &when) const;

    /// How often the clock was discontinuous since its first PCR: by the indicator, or by a leap of more than
    /// 100 ms. 0 of no clock.
    uint64_t discontinuities_of(std::optional<uint16_t> pcr_pid) const;

private:
    struct reference {
        int64_t PCR = 0;
        moment at;
        bool valid = false; ///< no discontinuity behind it
        uint64_t discontinuities = 0;
    };

    pid_array<uint16_t> number_of; ///< 1 + place in references; 0: none
    std::vector<reference> references;
};
