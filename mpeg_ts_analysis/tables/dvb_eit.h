// The event information table of DVB, EN 300 468 5.2.4.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints an event_information_section, present/following or schedule, of the actual transport stream, as far
/// as it goes. Stores nothing.
void on_ts_event_information_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                   const uint8_t *base, const uint8_t *fence);
