// The bitrate of a stream, from two PCRs of one PID about 30 seconds apart.
#pragma once

#include "mpeg_ts_analysis/driver/packet_file.h"

/// Returns bits per second, rounded, and says the estimate on standard error. Returns 0 when the stream has
/// no such PCRs, packet_size is neither 188 nor 192, or the input cannot seek. The file is at its start
/// afterwards.
unsigned long long estimate_ts_bitrate(packet_file *file, unsigned packet_size);
