// Lines that several tables share.
#pragma once

#include "mpeg12_ts/table_assembly.h"

/// Prints a table's heading line, with " [next]" behind it for a section that is not current yet.
void report_table_heading(const char *heading, const mpeg_ts_pat_main_header *h);

/// The version and section lines, indented 4 blanks.
void report_version_and_section(const mpeg_ts_pat_main_header *h);

/// The same, indented 8 blanks.
void report_nested_version_and_section(const mpeg_ts_pat_main_header *h);
