// The software clock of one program, which predicts its next PCR.
#pragma once

#include <cstdint>

struct program_clock {
    uint16_t program_number = 0;
    uint16_t pmt_pid = 0;       ///< from the PAT
    uint16_t pcr_pid = 0;       ///< from the PMT, 0x1FFF as it stands; 0 until a current PMT was seen
    double last_pcr_time = 0.0; ///< packet time of the previous PCR, seconds
    double base_time = 0.0; ///< packet time that base_pcr belongs to, seconds; hugely negative when unlocked
    unsigned long long base_pcr = 0; ///< the PCR at the last lock, 27 MHz ticks
};
