#include "mpeg_ts_analysis/tables/atsc_stt.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_loop.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/tables/atsc_time.h"
#include "mpeg_ts_analysis/tables/table_print.h"

void atsc_system_time_table_section(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                    const uint8_t *p, const uint8_t *fence)
{
    bit_reader in(p, fence);

    show("    system_time_table_section() [ATSC A/65:2009 6.1]\n");
    report_printf("        Table ID extension:               0x%04x\n", h->table_id_extension);
    report_nested_version_and_section(h);
    if (!in.has(8)) return;
    const unsigned protocol_version = in.bits(8);
    const unsigned system_time = in.bits(32);
    const unsigned GPS_UTC_offset = in.bits(8);
    const unsigned daylight_saving = in.bits(16);
    atsc_gps_utc_offset = static_cast<int32_t>(GPS_UTC_offset);

    report_printf("        protocol_version=%u\n", protocol_version);
    // kept: "NTS".
    report_printf("        system_time=%u (NTS: This is GPS seconds not UTC time)\n", system_time);
    report_printf("        GPS_UTC_offset=%u\n", GPS_UTC_offset);
    report_printf("        daylight_saving=0x%04x\n", daylight_saving);
    const struct tm local = local_time_of(unix_time_of_gps(system_time, atsc_gps_utc_offset));
    report_printf("        The current local time is: %04u-%02u-%02u %02u:%02u:%02u\n", local.tm_year + 1900,
                  local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    descriptor_loop(t, in.position(), fence);
    report_line("");
}
