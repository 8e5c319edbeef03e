// PES packets that carry EBU Teletext, ETSI EN 300 472 4.
#pragma once

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_analysis/state/pid_tracking.h"

/// Checks the PES packet that starts in a transport packet and, when it lies whole in it, prints its data
/// units.
void on_teletext_packet(const mpeg_ts_pid_tracking *t, const mpeg_ts_packet *packet);
