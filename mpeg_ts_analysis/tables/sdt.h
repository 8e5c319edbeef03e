// The service description table, EN 300 468 5.2.3.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints a service_description_section of the actual transport stream, or that it cannot be decoded. The
/// fields of its services are shown with the packet dump. The version of a current one is stored in any case.
void on_ts_service_description_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                     const uint8_t *base, const uint8_t *fence);
