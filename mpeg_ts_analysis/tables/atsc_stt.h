// The system time table, ATSC A/65:2009 6.1.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints a system_time_table_section and keeps its GPS_UTC_offset for the event times.
void atsc_system_time_table_section(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                    const uint8_t *p, const uint8_t *fence);
