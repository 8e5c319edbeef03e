#include "mpeg_ts_analysis/tables/atsc_ett.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/descriptors/multiple_string.h"
#include "mpeg_ts_analysis/tables/table_print.h"

void on_ts_ATSC_ETT_table(mpeg_ts_pid_tracking *, const mpeg_ts_pat_main_header *h, const mpeg_ts_packet *pkt,
                          const uint8_t *p, const uint8_t *fence)
{
    bit_reader in(p, fence);

    show("* extended_text_table_section() [ATSC A/65:2009 6.6] PID 0x%04x\n", pkt->pid);
    if (!in.has(5)) return;
    report_printf("    ETT_table_id_extension:           0x%04x\n", h->table_id_extension);
    report_version_and_section(h);
    report_printf("    protocol_version=%u\n", in.bits(8));
    const unsigned ETM_id = in.bits(32);
    report_printf("    ETM_id=0x%08x (source_id=0x%04x,event_id=0x%04x)\n", ETM_id, ETM_id >> 16,
                  ETM_id & 0xFFFF);
    report_line("    extended_text_message:");
    desc_atsc_A65_2009_6_39_multiple_string_structure(in.position(), static_cast<unsigned>(in.bytes_left()),
                                                      8);
}
