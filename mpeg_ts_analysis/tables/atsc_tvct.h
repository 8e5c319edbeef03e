// The terrestrial virtual channel table, ATSC A/65:2009 6.3.1.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints a terrestrial_virtual_channel_table_section. The word of the additional descriptors is read from
/// the assembly's storage, also past the section's fence.
void atsc_terrestrial_virtual_channel_table_section(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                                    const uint8_t *p, const uint8_t *fence);
