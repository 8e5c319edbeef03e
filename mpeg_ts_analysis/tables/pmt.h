// The program map table, ISO/IEC 13818-1 2.4.4.8.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints a TS_program_map_section. A current one starts the tracking of its streams and of its PCR PID,
/// which the program's clock learns.
void on_ts_program_map_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h, const uint8_t *base,
                             const uint8_t *fence);
