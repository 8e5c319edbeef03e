#include "mpeg_ts_analysis/tables/atsc_base.h"

#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/tables/atsc_mgt.h"
#include "mpeg_ts_analysis/tables/atsc_rrt.h"
#include "mpeg_ts_analysis/tables/atsc_stt.h"
#include "mpeg_ts_analysis/tables/atsc_tvct.h"

void on_ts_ATSC_base_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h, const uint8_t *p,
                           const uint8_t *fence)
{
    report_line("* ATSC 0x1FFB");
    switch (h->table_id) {
    case 0xC7:
        desc_atsc_A65_2009_6_2_master_guide_table_section(t, h, p, fence);
        break;
    case 0xC8:
        atsc_terrestrial_virtual_channel_table_section(t, h, p, fence);
        break;
    case 0xCA:
        atsc_rating_region_table_section(t, h, p, fence);
        break;
    case 0xCD:
        atsc_system_time_table_section(t, h, p, fence);
        break;
    default:
        report_printf("    ATSC 0x1FFB unknown table %02x\n", h->table_id);
        break;
    }
}
