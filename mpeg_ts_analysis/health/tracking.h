// Which PIDs are followed, and as what.
#pragma once

#include "mpeg_ts_analysis/state/pid_tracking.h"

#include <cstdint>

/// Storage for the sections of a PAT or PMT PID, bytes.
constexpr unsigned long program_section_storage = 16384;
/// Storage for the sections of any other PID, bytes.
constexpr unsigned long private_section_storage = 32768;

/// Forgets all tracking and starts the PIDs that are followed from the first packet on: PAT, NIT, SDT, EIT,
/// ATSC base.
void mpeg_ts_pid_tracking_init_tracking();

/// The record of a PID, or null when the PID is above 0x1FFF or not tracked.
mpeg_ts_pid_tracking *mpeg_ts_pid_tracking_get(uint16_t pid);

/// Starts or restarts the tracking of a PID. Returns its record, without storage for sections, or null when
/// the PID is above 0x1FFF or tracked as another type.
mpeg_ts_pid_tracking *mpeg_ts_pid_tracking_start(uint16_t pid, uint16_t type, uint16_t program_number);

/// Gives a record zero-filled storage for sections: program_section_storage or private_section_storage bytes.
/// When memory is short it has none.
void mpeg_ts_pid_tracking_give_storage(mpeg_ts_pid_tracking *t, unsigned long size);

/// Releases the record of a PID; above 0x1FFF it does nothing.
void mpeg_ts_pid_tracking_stop(uint16_t pid);

/// Stops every PMT among PIDs 0x0010 to 0x1FFE.
void mpeg_ts_pid_tracking_stop_pmts();

/// Releases all records.
void mpeg_ts_pid_tracking_free_all();
