#include "mpeg_ts_analysis/tables/table_dispatch.h"

#include "mpeg_ts_analysis/report/hex_dump.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"
#include "mpeg_ts_analysis/tables/atsc_base.h"
#include "mpeg_ts_analysis/tables/atsc_eit.h"
#include "mpeg_ts_analysis/tables/atsc_ett.h"
#include "mpeg_ts_analysis/tables/dvb_eit.h"
#include "mpeg_ts_analysis/tables/nit.h"
#include "mpeg_ts_analysis/tables/pat.h"
#include "mpeg_ts_analysis/tables/pmt.h"
#include "mpeg_ts_analysis/tables/scte_35.h"
#include "mpeg_ts_analysis/tables/sdt.h"

namespace {

// Values of table_id.
constexpr uint8_t program_association_section = 0x00;
constexpr uint8_t program_map_section = 0x02;
constexpr uint8_t network_information_actual = 0x40;
constexpr uint8_t service_description_actual = 0x42;
constexpr uint8_t event_present_following_actual = 0x4E;
constexpr uint8_t first_event_schedule_actual = 0x50;
constexpr uint8_t last_event_schedule_actual = 0x5F;
constexpr uint8_t first_atsc_section = 0xC7;
constexpr uint8_t atsc_event_information = 0xCB;
constexpr uint8_t atsc_extended_text = 0xCC;

void dump_raw_contents(const mpeg_ts_pat_main_header *h, uint16_t pid, const uint8_t *base,
                       const uint8_t *fence)
{
    // kept: "0x0", then the PID in a field of 4 that is filled with blanks.
    report_printf("PID 0x0%4X TABLE raw contents. length=%u table_id=0x%02x priv=%u syntax=%u:\n", pid,
                  static_cast<unsigned>(fence - base), h->table_id, h->private_indicator,
                  h->section_syntax_indicator);
    report_table_rows(base, fence);
}

bool has_mpeg_syntax(const mpeg_ts_pat_main_header *h)
{
    return h->section_syntax_indicator == 1 && h->private_indicator == 0;
}

void on_pat_pid_section(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h, uint16_t pid,
                        const uint8_t *base, const uint8_t *fence)
{
    if (h->table_id != program_association_section)
        report_printf("!!! PID 0x%04x table error: table_id not 0x00\n", pid);
    else if (!has_mpeg_syntax(h))
        report_printf("!!! PID 0x%04x table error: table_id 0x00 but syntax=%u private=%u\n", pid,
                      h->section_syntax_indicator, h->private_indicator);
    else
        on_ts_program_association_table(t, h, base, fence);
}

bool is_event_section(uint8_t table_id)
{
    return table_id == event_present_following_actual ||
           (table_id >= first_event_schedule_actual && table_id <= last_event_schedule_actual);
}

} // namespace

void on_ts_table_packet(mpeg_ts_pid_tracking *t, const mpeg_ts_packet *pkt)
{
    if (pkt->payload_unit_start_indicator) {
        // kept: one section at most is taken of a packet, and the bytes ahead of its start complete none.
        mpeg_ts_table_assembly_complete(&t->tbl_asm);
        take_ready_section(t, pkt, true);
        mpeg_ts_table_assembly_begin(&t->tbl_asm, nullptr, pkt);
        take_ready_section(t, pkt, false);
    } else {
        if (t->tbl_asm.buffer == nullptr || t->tbl_asm.write == t->tbl_asm.buffer) return;
        mpeg_ts_table_assembly_add(&t->tbl_asm, pkt);
        take_ready_section(t, pkt, false);
    }
}

void take_ready_section(mpeg_ts_pid_tracking *t, const mpeg_ts_packet *pkt, bool report_incomplete)
{
    if (t->tbl_asm.buffer != nullptr && t->tbl_asm.buffer < t->tbl_asm.write) {
        const mpeg_ts_pat_main_header *h = nullptr;
        const uint8_t *base = nullptr;
        const uint8_t *fence = nullptr;
        switch (mpeg_ts_table_assembly_take_ready(&t->tbl_asm, &h, &base, &fence)) {
        case 1:
            on_ts_table_section(t, h, pkt, base, fence);
            break;
        case 0:
            if (!report_incomplete) return;
            report_printf("!!! PID 0x%04x table error: table incomplete\n", pkt->pid);
            break;
        case -1:
            report_printf("!!! PID 0x%04x table error: checksum failed\n", pkt->pid);
            break;
        default:
            break;
        }
    }
    mpeg_ts_table_assembly_discard(&t->tbl_asm);
}

void on_ts_table_section(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h, const mpeg_ts_packet *pkt,
                         const uint8_t *base, const uint8_t *fence)
{
    if (settings.dump_tables) dump_raw_contents(h, pkt->pid, base, fence);

    switch (t->type) {
    case TRACK_PAT:
        on_pat_pid_section(t, h, pkt->pid, base, fence);
        break;
    case TRACK_PMT:
        if (h->table_id == program_map_section && has_mpeg_syntax(h))
            on_ts_program_map_table(t, h, base, fence);
        break;
    case TRACK_NIT:
    case TRACK_SDT:
        // The kind says only which PID it is; either PID may carry either table.
        if (h->table_id == network_information_actual) on_ts_network_information_table(t, h, base, fence);
        if (h->table_id == service_description_actual) on_ts_service_description_table(t, h, base, fence);
        break;
    case TRACK_EIT:
        if (is_event_section(h->table_id)) on_ts_event_information_table(t, h, base, fence);
        break;
    case TRACK_ATSC_PSIP:
        if (settings.atsc_mode > 0 && h->table_id >= first_atsc_section)
            on_ts_ATSC_base_table(t, h, base, fence);
        break;
    case TRACK_ATSC_ETT:
        if (h->table_id == atsc_extended_text) on_ts_ATSC_ETT_table(t, h, pkt, base, fence);
        break;
    case TRACK_ATSC_EIT:
        if (h->table_id == atsc_event_information) atsc_event_information_table_section(t, h, base, fence);
        break;
    case TRACK_SCTE35:
        on_ts_scte_35(t, h, base, fence);
        break;
    default:
        break;
    }
}
