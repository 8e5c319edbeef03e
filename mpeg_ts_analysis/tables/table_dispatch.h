// From packets to sections, and from sections to the handler of their table.
#pragma once

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Takes a packet of a PID that carries sections into the PID's assembly and handles each section that
/// becomes ready.
void on_ts_table_packet(mpeg_ts_pid_tracking *t, const mpeg_ts_packet *pkt);

/// Takes the section in hand, if it is ready, and handles it. Corrupt sections are reported and dropped; one
/// that misses bytes is so only when report_incomplete is set, and otherwise stays in collection.
void take_ready_section(mpeg_ts_pid_tracking *t, const mpeg_ts_packet *pkt, bool report_incomplete);

/// Dumps a section, if tables are dumped, and hands its body [base, fence) to the handler of its table.
void on_ts_table_section(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h, const mpeg_ts_packet *pkt,
                         const uint8_t *base, const uint8_t *fence);
