#include "mpeg_ts_overview/tables/si_watch.h"

#include "mpeg_ts_overview/tables/eit.h"
#include "mpeg_ts_overview/tables/nit.h"
#include "mpeg_ts_overview/tables/sdt.h"
#include "mpeg_ts_overview/tables/standard_limits.h"
#include "mpeg_ts_overview/tables/tdt.h"

si_watch::si_watch(const time_stretches &times, const limits &values)
    : nits(times, awaited_sections::of_one_table), sdts(times, awaited_sections::of_one_table),
      tdts(times, awaited_sections::of_one_table), bats(times, awaited_sections::of_each_table),
      other_nits(times, awaited_sections::of_each_table), other_sdts(times, awaited_sections::of_each_table),
      other_eits(times, awaited_sections::of_each_table), tots(times, awaited_sections::of_each_table),
      schedules(times, awaited_sections::that_have_come)
{
    nits.add_limit(values.nit_interval_ticks.value_or(nit_interval_ticks), true);
    sdts.add_limit(values.sdt_interval_ticks.value_or(sdt_interval_ticks), true);
    tdts.add_limit(tdt_interval_ticks, true);
    bats.add_limit(bat_interval_ticks, true);
    other_nits.add_limit(nit_other_interval_ticks, true);
    other_sdts.add_limit(sdt_other_interval_ticks, true);
    other_eits.add_limit(eit_present_following_other_interval_ticks, true);
    tots.add_limit(tot_interval_ticks, true);
    schedules.add_limit(values.eit_schedule_ticks, true);
}

void si_watch::on_section(const table_section &section, const table_key &of_table)
{
    if (table_repetition *const watch = watch_of(section.header.table_id))
        watch->on_section(section, of_table);
}

void si_watch::fetch(const table_section &section, const table_key &of_table)
{
    if (table_repetition *const watch = watch_of(section.header.table_id)) watch->fetch(section, of_table);
}

table_repetition *si_watch::watch_of(uint8_t table_id)
{
    switch (table_id) {
    case nit_actual_table_id:
        return &nits;
    case nit_other_table_id:
        return &other_nits;
    case sdt_actual_table_id:
        return &sdts;
    case sdt_other_table_id:
        return &other_sdts;
    case bat_table_id:
        return &bats;
    case eit_present_following_other_table_id:
        return &other_eits;
    case tdt_table_id:
        return &tdts;
    case tot_table_id:
        return &tots;
    default:
        return is_eit_schedule(table_id) ? &schedules : nullptr;
    }
}

void si_watch::finish(const moment &end)
{
    nits.finish(end, {nit_pid, nit_actual_table_id, std::nullopt, std::nullopt});
    sdts.finish(end, {sdt_pid, sdt_actual_table_id, std::nullopt, std::nullopt});
    tdts.finish(end, {tdt_pid, tdt_table_id, std::nullopt, std::nullopt});
    for (table_repetition *watch : {&bats, &other_nits, &other_sdts, &other_eits, &tots, &schedules})
        watch->finish(end, {});
}

uint64_t si_watch::not_kept() const
{
    uint64_t sections = schedules.sections_not_kept();
    for (const table_repetition *watch : optional_tables()) sections += watch->sections_not_kept();
    return sections;
}
