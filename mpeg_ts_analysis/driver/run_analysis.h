// The run: start-up, the loop over all packets, the closing summary.
#pragma once

#include "mpeg_ts_analysis/driver/packet_file.h"

/// Analyses the file at path by the settings and prints the report. Returns the exit status: 0 after a
/// completed scan, 1 when the file cannot be opened. The report is the same whatever the block size, in
/// bytes.
int run_analysis(const char *path, size_t block_size = packet_file_block_size);
