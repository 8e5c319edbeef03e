#include "mpeg_ts_overview/tables/misplaced_tables.h"

#include "mpeg_ts_overview/tables/pat.h"
#include "mpeg_ts_overview/tables/table_home.h"
#include "mpeg_ts_overview/tables/table_name.h"

void misplaced_tables::on_section(const table_section &section)
{
    if (!is_misplaced(directory, section.pid, section.header.table_id)) return;
    const std::string text = table_name(section.header.table_id) + " on a PID of other tables";
    by_pid[section.pid].add(section.at, section.pid, text.c_str());
}

void misplaced_tables::on_bad_section(const table_section &section)
{
    if (!is_on_own_pid(directory, section.pid, section.header.table_id)) return;
    const std::string text = "wrong CRC_32 of " + table_name(section.header.table_id);
    crc_log.add(section.at, section.pid, text.c_str());
}

void misplaced_tables::on_scrambled_packet(uint16_t pid, const moment &at)
{
    if (pid == pat_pid) pat_log.add(at, pid, "a scrambled packet");
    if (directory.is(pid, pid_use::map)) pmt_log.add(at, pid, "a scrambled packet");
}

const violation_log &misplaced_tables::on_pid(uint16_t pid) const
{
    static const violation_log none;
    const auto found = by_pid.find(pid);
    return found != by_pid.end() ? found->second : none;
}
