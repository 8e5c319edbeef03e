// The master guide table, ATSC A/65:2009 6.2.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// The name of a table_type (16 bits), or null when it has none. Names with a number stay until the next
/// call.
const char *atsc_mgt_table_type_name(unsigned table_type);

/// Prints a master_guide_table_section and starts the tracking of the event and extended text PIDs that it
/// announces.
void desc_atsc_A65_2009_6_2_master_guide_table_section(mpeg_ts_pid_tracking *psip,
                                                       const mpeg_ts_pat_main_header *h, const uint8_t *p,
                                                       const uint8_t *fence);
