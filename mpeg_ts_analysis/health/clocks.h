// The table of program clocks, by program number. It owns them.
#pragma once

#include "mpeg_ts_analysis/state/program_clock.h"

#include <cstdint>

/// base_time of a clock that is not locked, seconds.
constexpr double unlocked_base_time = -9999999999999.0;

/// The clock of a program, or null.
program_clock *program_clock_get(uint16_t program_number);

/// The clock of a program, made unlocked and without a PCR PID when there is none yet. Returns null when
/// memory is short.
program_clock *program_clock_create(uint16_t program_number, uint16_t pmt_pid);

/// Frees the clock of a program, if there is one.
void program_clock_free(uint16_t program_number);

/// Frees all clocks.
void program_clock_free_all();
