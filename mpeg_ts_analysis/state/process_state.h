// Everything that the program remembers between two packets, and the function that resets it.
#pragma once

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_analysis/state/error_counters.h"
#include "mpeg_ts_analysis/state/pid_set.h"
#include "mpeg_ts_analysis/state/pid_tracking.h"
#include "mpeg_ts_analysis/state/program_clock.h"
#include "mpeg_ts_analysis/state/settings.h"
#include "mpeg_ts_analysis/state/spare_storage.h"

#include <cstdint>

constexpr unsigned program_count = 0x10000;
constexpr uint8_t no_continuity_counter = 0xFF;
constexpr uint16_t default_nit_pid = 0x0010;
constexpr int32_t unknown_gps_utc_offset = -1;

/// Written by the command line; packet size and bitrate by the start-up; the three modes also by the main
/// loop and the PMT handler.
extern analysis_settings settings;

/// Written by the continuity check and the packet dump.
extern error_counters errors;

/// By PID. Written by health; private_data_specifier also by the descriptor loop, last_version by the table
/// handlers.
extern mpeg_ts_pid_tracking pid_tracking[mpeg_ts_pid_count];

/// The PIDs whose type is TRACK_PMT: a PAT finds them without looking at every record. Written by health.
extern pid_set tracked_pmts;

/// Owned storage for sections, by its size: of PAT and PMT PIDs, of any other. Written by health.
extern spare_storage spare_program_storage;
extern spare_storage spare_private_storage;

/// By PID: the counter of the last packet, no_continuity_counter before the first. Written by the continuity
/// check.
extern uint8_t last_continuity_counter[mpeg_ts_pid_count];

/// By program number: owned clocks, null where there is none. Written by the clocks.
extern program_clock *program_table[program_count];

/// The PID whose NIT is followed. Written by the PAT handler.
extern uint16_t current_nit_pid;

/// Seconds that GPS time is ahead of UTC, negative while unknown. Written by the STT handler.
extern int32_t atsc_gps_utc_offset;

/// Frees what is owned and gives every variable above its initial value.
void process_state_reset();
