#include "mpeg_ts_overview/tables/misplaced_tables.h"

#include "mpeg_ts_overview/tables/log_violation.h"
#include "mpeg_ts_overview/tables/pat.h"
#include "mpeg_ts_overview/tables/table_home.h"
#include "mpeg_ts_overview/tables/table_name.h"
#include "mpeg_ts_overview/tables/tdt.h"

void misplaced_tables::on_section(const table_section &section)
{
    if (!is_misplaced(directory, section.pid, section.header.table_id)) return;
    log_violation(by_pid[section.pid], section.at, section.pid,
                  [&] { return table_name(section.header.table_id) + " on a PID of other tables"; });
}

void misplaced_tables::on_bad_section(const table_section &section)
{
    const uint8_t table_id = section.header.table_id;
    const bool has_crc = table_id != rst_table_id && table_id != tdt_table_id;
    if (!has_crc || !is_on_own_pid(directory, section.pid, table_id)) return;
    log_violation(crc_log, section.at, section.pid,
                  [&] { return "wrong CRC_32 of " + table_name(table_id); });
}

void misplaced_tables::on_scrambled_packet(uint16_t pid, const moment &at)
{
    const auto text = [] { return "a scrambled packet"; };
    if (pid == pat_pid) log_violation(pat_log, at, pid, text);
    if (directory.is(pid, pid_use::map)) log_violation(pmt_log, at, pid, text);
}

const violation_log &misplaced_tables::on_pid(uint16_t pid) const
{
    static const violation_log none;
    const auto found = by_pid.find(pid);
    return found != by_pid.end() ? found->second : none;
}
