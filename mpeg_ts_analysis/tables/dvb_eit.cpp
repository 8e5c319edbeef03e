#include "mpeg_ts_analysis/tables/dvb_eit.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_loop.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/tables/dvb_time.h"
#include "mpeg_ts_analysis/tables/table_print.h"

namespace {

constexpr unsigned event_header_size = 12;
constexpr uint8_t last_present_following = 0x4F;

void print_heading(const mpeg_ts_pat_main_header *h, unsigned length)
{
    const char *const prefix = h->table_id > last_present_following ? "Scheduled " : "";

    if (h->current_next_indicator)
        report_printf("* %sEvent Information Section(0x%02x) len=%u\n", prefix, h->table_id, length);
    else
        report_printf("* %sEvent Information Section(0x%02x) [next]\n", prefix, h->table_id);
    report_printf("    Service ID:                       0x%04x\n", h->table_id_extension);
    report_version_and_section(h);
}

/// MJD and six BCD digits, which are printed as hexadecimal ones.
void print_start_time(unsigned long long start_time)
{
    const dvb_date date = dvb_date_of_mjd(static_cast<unsigned>(start_time >> 24));

    report_printf("      start_time:               0x%010llx %02u/%02u/%02u %02x:%02x:%02x UTC\n", start_time,
                  date.year, date.month, date.day, static_cast<unsigned>(start_time >> 16) & 0xFF,
                  static_cast<unsigned>(start_time >> 8) & 0xFF, static_cast<unsigned>(start_time) & 0xFF);
}

/// One event, its fixed bytes known to be there. Returns false when its descriptors run past the section.
bool on_event(mpeg_ts_pid_tracking *t, bit_reader &in)
{
    report_printf("    - event_id:                 0x%04x\n", in.bits(16));
    print_start_time(in.bits64(40));
    const unsigned duration = in.bits(24);
    report_printf("      duration:                 0x%06x %02x:%02x:%02x\n", duration, duration >> 16,
                  (duration >> 8) & 0xFF, duration & 0xFF);
    report_printf("      running_status:           %u\n", in.bits(3));
    report_printf("      free_CA_mode:             %u\n", in.bits(1));
    const unsigned descriptors_loop_length = in.bits(12);
    report_printf("      descriptors_loop_length:  %u\n", descriptors_loop_length);

    if (!in.has(descriptors_loop_length)) {
        report_printf("!!! Descriptor extends past table by %u bytes\n",
                      descriptors_loop_length - static_cast<unsigned>(in.bytes_left()));
        return false;
    }
    const uint8_t *const descriptors = in.position();
    in.skip(descriptors_loop_length);
    descriptor_loop(t, descriptors, in.position());
    return true;
}

} // namespace

// kept: unlike its neighbours it stores no version.
void on_ts_event_information_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                   const uint8_t *base, const uint8_t *fence)
{
    bit_reader in(base, fence);

    print_heading(h, static_cast<unsigned>(fence - base));
    if (!in.has(6)) return;
    report_printf("    Transport stream ID:              0x%04x\n", in.bits(16));
    report_printf("    Original network ID:              0x%04x\n", in.bits(16));
    report_printf("    Segment last section number:      %u\n", in.bits(8));
    report_printf("    Last table ID:                    0x%02x\n", in.bits(8));
    while (in.has(event_header_size))
        if (!on_event(t, in)) return;
}
