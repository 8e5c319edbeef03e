// Continuity_count_error, a first-priority check of ETSI TR 101 290 (1.4) on every PID, tracked or not.
#pragma once

#include "mpeg12_ts/packet.h"

/// Compares the packet's continuity_counter with the last one of its PID. An error is counted and printed,
/// the check goes on from the packet's counter, and a section that is being collected on the PID is dropped.
void p1_continuity_tracking(const mpeg_ts_packet *tsp);
