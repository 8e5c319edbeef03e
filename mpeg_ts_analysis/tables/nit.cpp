#include "mpeg_ts_analysis/tables/nit.h"

#include "mpeg12_ts/network_information.h"
#include "mpeg_ts_analysis/descriptors/descriptor_loop.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"
#include "mpeg_ts_analysis/tables/table_print.h"

namespace {

void on_transport_stream(mpeg_ts_pid_tracking *t, const mpeg_ts_nit_entry &entry)
{
    if (settings.dump_ts_mode != dump_ts_off) {
        report_printf("      * transport_stream_id=0x%04x\n", entry.transport_stream_id);
        report_printf("        original_network_id=0x%04x\n", entry.original_network_id);
        report_printf("        transport_descriptor_length=%u\n", entry.transport_descriptors_length);
    }
    descriptor_loop(t, entry.transport_descriptors, entry.transport_descriptors_fence);
}

} // namespace

void on_ts_network_information_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                     const uint8_t *base, const uint8_t *fence)
{
    mpeg_ts_nit_header nit;

    if (mpeg_ts_decode_nit_header(&nit, base, fence)) {
        report_table_heading("* Network Information Table", h);
        if (settings.dump_tables) {
            report_printf(
                "        network_id:                       0x%04x (in place of Transport Stream ID field)\n",
                h->table_id_extension);
            report_nested_version_and_section(h);
        }
        if (settings.dump_ts_mode != dump_ts_off) {
            report_printf("    network_descriptors_length: %u\n", nit.network_descriptors_length);
            report_printf("    transport_stream_loop_length: %u\n", nit.transport_stream_loop_length);
        }
        descriptor_loop(t, nit.network_descriptors, nit.network_descriptors_fence);

        mpeg_ts_nit_entry entry;
        int decoded = mpeg_ts_decode_nit_first_entry(&entry, nit.transport_stream_loop,
                                                     nit.transport_stream_loop_fence);
        for (; decoded; decoded = mpeg_ts_decode_nit_next_entry(&entry)) on_transport_stream(t, entry);
    } else {
        report_line("!!! NIT decoding error");
    }
    if (h->current_next_indicator) t->last_version = h->version_number;
}
