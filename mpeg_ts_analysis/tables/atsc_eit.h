// The event information table of ATSC, A/65:2009 6.5.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints an event_information_table_section. Times are shown once a system time table has given the GPS-UTC
/// offset.
void atsc_event_information_table_section(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                          const uint8_t *p, const uint8_t *fence);
