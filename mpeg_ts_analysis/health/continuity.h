// Continuity_count_error, a first-priority check of ETSI TR 101 290 (1.4) on every PID, tracked or not.
#pragma once

#include "mpeg12_ts/packet.h"

#include <cstdint>

/// Compares the packet's continuity_counter with the last one of its PID. An error is counted and printed,
/// the check goes on from the packet's counter, and a section that is being collected on the PID is dropped.
void p1_continuity_tracking(const mpeg_ts_packet *tsp);

/// Does what the check does for the packets at p that need nothing else: whole packets of packet_size bytes
/// before fence that are clear, in sequence and without a PCR, on PIDs whose content is not followed. Padding
/// is passed over. Returns the first packet that needs the long way, or the first that is not whole. Packets
/// must not be dumped.
const uint8_t *p1_continuity_skip_uneventful(const uint8_t *p, const uint8_t *fence, unsigned packet_size);
