// The walk over a descriptor loop, ISO/IEC 13818-1 2.6: every table hands its loops to it.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints the descriptors in [p, fence), each followed by its bytes in the raw dump mode. A
/// private_data_specifier is kept in the tracking record of the PID: with the ATSC mode it decides what the
/// private tags mean.
void descriptor_loop(mpeg_ts_pid_tracking *t, const uint8_t *p, const uint8_t *fence);
