// The extended text table, ATSC A/65:2009 6.6.
#pragma once

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints an extended_text_table_section; pkt is the packet that completed it.
void on_ts_ATSC_ETT_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                          const mpeg_ts_packet *pkt, const uint8_t *p, const uint8_t *fence);
