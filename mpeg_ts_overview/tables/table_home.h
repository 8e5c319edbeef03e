// Where tables stand: which PID is whose, ISO/IEC 13818-1 Table 2-3, EN 300 468 Table 1, ATSC A/65 Table 4.1.
#pragma once

#include "mpeg_ts_overview/tables/pid_directory.h"

#include <cstdint>

constexpr uint16_t rst_pid = 0x0013;
constexpr uint8_t rst_table_id = 0x71;

/// True when the table is one of PSI, SI or PSIP, and the PID is one on which it belongs.
bool is_on_own_pid(const pid_directory &directory, uint16_t pid, uint8_t table_id);

/// True when the PID is 0x00, 0x01 or one of 0x10 to 0x14, carries what it is reserved for, and the table has
/// no business there.
bool is_misplaced(const pid_directory &directory, uint16_t pid, uint8_t table_id);
