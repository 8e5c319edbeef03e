#include "mpeg_ts_analysis/tables/table_print.h"

#include "mpeg_ts_analysis/descriptors/descriptor_loop.h"
#include "mpeg_ts_analysis/report/report.h"

void report_table_heading(const char *heading, const mpeg_ts_pat_main_header *h)
{
    report_printf("%s%s\n", heading, h->current_next_indicator ? "" : " [next]");
}

void report_version_and_section(const mpeg_ts_pat_main_header *h)
{
    report_printf("    Version:                          %u\n", h->version_number);
    report_printf("    Section:                          %u / %u\n", h->section_number,
                  h->last_section_number);
}

void report_nested_version_and_section(const mpeg_ts_pat_main_header *h)
{
    report_printf("        Version:                          %u\n", h->version_number);
    report_printf("        Section:                          %u / %u\n", h->section_number,
                  h->last_section_number);
}

void report_descriptors_and_empty_line(mpeg_ts_pid_tracking *t, bit_reader &in, unsigned length)
{
    if (length == 0) return;
    const uint8_t *const descriptors = in.position();
    in.skip(length);
    descriptor_loop(t, descriptors, in.position());
    report_line("");
}
