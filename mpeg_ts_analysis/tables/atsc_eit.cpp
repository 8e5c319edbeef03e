#include "mpeg_ts_analysis/tables/atsc_eit.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/descriptors/multiple_string.h"
#include "mpeg_ts_analysis/tables/atsc_time.h"
#include "mpeg_ts_analysis/tables/table_print.h"

namespace {

constexpr unsigned event_header_size = 10;

void check_reserved_11(bit_reader &in)
{
    if (in.bits(2) != 0x3) report_line("!!! event_information_table_section() reserved bits are not '11'");
}

void print_times(unsigned start_time, unsigned length_in_seconds)
{
    if (atsc_gps_utc_offset < 0) {
        report_line(
            "     ! not showing start-end times, I do not yet have the GPS to UTC offset from the ATSC system time table");
        return;
    }
    const long long starts_at = unix_time_of_gps(start_time, atsc_gps_utc_offset);
    const long long ends_at =
        unix_time_of_gps(static_cast<long long>(start_time) + length_in_seconds, atsc_gps_utc_offset);
    const struct tm start = local_time_of(starts_at);
    const struct tm end = local_time_of(ends_at);
    report_printf("        starts at: %04u-%02u-%02u %02u:%02u:%02u (+%llu)\n", start.tm_year + 1900,
                  start.tm_mon + 1, start.tm_mday, start.tm_hour, start.tm_min, start.tm_sec, starts_at);
    report_printf("        ends at:   %04u-%02u-%02u %02u:%02u:%02u (+%llu)\n", end.tm_year + 1900,
                  end.tm_mon + 1, end.tm_mday, end.tm_hour, end.tm_min, end.tm_sec, ends_at);
}

/// One event, its fixed bytes known to be there. Returns false when the section ends inside it.
bool on_event(mpeg_ts_pid_tracking *t, bit_reader &in, unsigned number)
{
    check_reserved_11(in);
    const unsigned event_id = in.bits(14);
    const unsigned start_time = in.bits(32);
    check_reserved_11(in);
    const unsigned ETM_location = in.bits(2);
    const unsigned length_in_seconds = in.bits(20);
    const unsigned title_length = in.bits(8);
    report_printf(
        "    event #%d: event_id=0x%04x start_time=%u length_in_seconds=%u ETM_location=%u title_length=%u\n",
        number, event_id, start_time, length_in_seconds, ETM_location, title_length);
    print_times(start_time, length_in_seconds);

    if (!in.has(title_length)) return false;
    if (title_length != 0) {
        report_line("        title:");
        desc_atsc_A65_2009_6_39_multiple_string_structure(in.position(), title_length, 12);
        in.skip(title_length);
    }

    if (!in.has(2)) return false;
    if (in.bits(4) != 0xF) report_line("!!! event_information_table_section() reserved bits are not '1111'");
    const unsigned descriptors_length = in.bits(12);
    if (!in.has(descriptors_length)) return false;
    report_descriptors_and_empty_line(t, in, descriptors_length);
    return true;
}

} // namespace

void atsc_event_information_table_section(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                          const uint8_t *p, const uint8_t *fence)
{
    bit_reader in(p, fence);

    show("* event_information_table_section() [ATSC A/65:2009 6.5]\n");
    if (!in.has(2)) return;
    report_printf("    Source ID:                        0x%04x\n", h->table_id_extension);
    report_version_and_section(h);
    report_printf("    protocol_version=%u\n", in.bits(8));
    const unsigned num_events_in_section = in.bits(8);
    report_printf("    num_events_in_section=%u\n", num_events_in_section);
    for (unsigned event = 1; event <= num_events_in_section && in.has(event_header_size); ++event)
        if (!on_event(t, in, event)) return;
}
