// The splice_info_section, ANSI/SCTE-35 2016 9.2.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Prints a splice_info_section in every dump mode. Its fields are read from the start of the assembly's
/// storage, and the splice command may be read on past the fence, inside the storage.
void on_ts_scte_35(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h, const uint8_t *base,
                   const uint8_t *fence);
