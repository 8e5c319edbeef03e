#include "mpeg_ts_analysis/tables/sdt.h"

#include "mpeg12_ts/service_description.h"
#include "mpeg_ts_analysis/descriptors/descriptor_loop.h"
#include "mpeg_ts_analysis/report/names.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"
#include "mpeg_ts_analysis/tables/table_print.h"

namespace {

constexpr const char *running_status_names[] = {nullptr,   "Not running", "Starts in a few seconds",
                                                "Pausing", "Running",     "Service off-air"};
constexpr const char *free_CA_mode_names[] = {"Not scrambled", "At least one elementary stream is scrambled"};

void on_service(mpeg_ts_pid_tracking *t, const mpeg_ts_service_description_section &s)
{
    const bool with_fields = settings.dump_ts_mode != dump_ts_off;

    if (settings.dump_descriptors_mode != dump_descriptors_none)
        report_printf("      - service_id=0x%04x\n", s.service_id);
    if (with_fields) {
        report_printf("        EIT_schedule_flag=%u\n", s.EIT_schedule_flag);
        report_printf("        EIT_present_following_flag=%u\n", s.EIT_present_following_flag);
        report_printf("        running_status=%u %s\n", s.running_status,
                      name_of(running_status_names, s.running_status));
        report_printf("        free_CA_mode=%u %s\n", s.free_CA_mode,
                      name_of(free_CA_mode_names, s.free_CA_mode));
    }
    descriptor_loop(t, s.descriptors, s.descriptors_fence);
    if (with_fields) report_line("");
}

} // namespace

void on_ts_service_description_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                     const uint8_t *base, const uint8_t *fence)
{
    mpeg_ts_service_description_section s;

    if (mpeg_ts_decode_service_description_section(&s, base, fence)) {
        report_table_heading("* Service Description Section", h);
        if (settings.dump_ts_mode != dump_ts_off || settings.dump_descriptors_mode != dump_descriptors_none)
            report_printf("    original_network_id=0x%04x\n", s.original_network_id);
        while (mpeg_ts_decode_service_description_section_entry(&s)) on_service(t, s);
    } else {
        report_line("!!! SDS decoding error");
    }
    if (h->current_next_indicator) t->last_version = h->version_number;
}
