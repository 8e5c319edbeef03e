#include "mpeg_ts_overview/tables/psip_watch.h"

#include "mpeg_ts_overview/tables/mgt.h"
#include "mpeg_ts_overview/tables/psip.h"
#include "mpeg_ts_overview/tables/standard_limits.h"

namespace {

constexpr uint16_t eit_0_table_type = 0x0100; // A/65 Table 6.3

} // namespace

psip_watch::psip_watch(const time_stretches &times)
    : mgts(times, awaited_sections::of_one_table), tvcts(times, awaited_sections::of_one_table),
      stts(times, awaited_sections::of_one_table), rrts(times, awaited_sections::of_each_table),
      eits(times, awaited_sections::that_have_come)
{
    mgts.add_limit(mgt_interval_ticks, true);
    tvcts.add_limit(tvct_interval_ticks, true);
    stts.add_limit(stt_interval_ticks, true);
    rrts.add_limit(rrt_interval_ticks, true);
    eits.add_limit(std::nullopt, true);
}

void psip_watch::on_section(const table_section &section, const table_key &of_table)
{
    switch (section.header.table_id) {
    case mgt_table_id:
        mgts.on_section(section, of_table);
        for (const mgt_table &table : read_mgt(section))
            if (table.table_type == eit_0_table_type) eit_0_pid = table.table_type_PID;
        break;
    case tvct_table_id:
        tvcts.on_section(section, of_table);
        break;
    case stt_table_id:
        stts.on_section(section, of_table);
        break;
    case rrt_table_id:
        rrts.on_section(section, of_table);
        break;
    case atsc_eit_table_id:
        if (eit_0_pid == section.pid) eits.on_section(section, of_table);
        break;
    default:
        break;
    }
}

void psip_watch::finish(const moment &end)
{
    mgts.finish(end, {psip_base_pid, mgt_table_id, std::nullopt, std::nullopt});
    tvcts.finish(end, {psip_base_pid, tvct_table_id, std::nullopt, std::nullopt});
    stts.finish(end, {psip_base_pid, stt_table_id, std::nullopt, std::nullopt});
    rrts.finish(end, {});
    eits.finish(end, {});
}
