// The tables on the ATSC base PID 0x1FFB, ATSC A/65:2009 6.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Announces a section of the base PID and hands it to the handler of its table_id.
void on_ts_ATSC_base_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h, const uint8_t *p,
                           const uint8_t *fence);
