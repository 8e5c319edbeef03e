// The rating region table, ATSC A/65:2009 6.4.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints a rating_region_table_section.
void atsc_rating_region_table_section(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                      const uint8_t *p, const uint8_t *fence);
