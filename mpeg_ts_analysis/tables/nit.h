// The network information table, EN 300 468 5.2.1.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints a network_information_section of the actual network, or that it cannot be decoded. Its own fields
/// are shown with the table and packet dumps. The version of a current one is stored in any case.
void on_ts_network_information_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                     const uint8_t *base, const uint8_t *fence);
