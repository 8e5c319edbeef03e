// The program association table, ISO/IEC 13818-1 2.4.4.3.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints a program_association_section. A current one starts the tracking of its PMTs anew and moves that of
/// the NIT.
void on_ts_program_association_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                     const uint8_t *base, const uint8_t *fence);
