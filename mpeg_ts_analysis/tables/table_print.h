// Lines that several tables share.
#pragma once

#include "mpeg12_ts/bit_reader.h"
#include "mpeg12_ts/table_assembly.h"
#include "mpeg_ts_analysis/state/pid_tracking.h"

/// Prints a table's heading line, with " [next]" behind it for a section that is not current yet.
void report_table_heading(const char *heading, const mpeg_ts_pat_main_header *h);

/// The version and section lines, indented 4 blanks.
void report_version_and_section(const mpeg_ts_pat_main_header *h);

/// The same, indented 8 blanks.
void report_nested_version_and_section(const mpeg_ts_pat_main_header *h);

/// Takes the length bytes of descriptors at the reader, known to be there, prints them and an empty line
/// behind them; nothing when length is 0. So do the ATSC tables.
void report_descriptors_and_empty_line(mpeg_ts_pid_tracking *t, bit_reader &in, unsigned length);
