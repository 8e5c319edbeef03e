#include "mpeg_ts_overview/tables/stream_tables.h"

#include "mpeg_ts_overview/tables/conditional_access.h"
#include "mpeg_ts_overview/tables/mgt.h"
#include "mpeg_ts_overview/tables/psip.h"
#include "mpeg_ts_overview/tables/standard_limits.h"
#include "mpeg_ts_overview/tables/table_home.h"
#include "mpeg_ts_overview/tables/tdt.h"

#include <algorithm>

namespace {

constexpr watched_thing cat = {cat_pid, cat_table_id, std::nullopt, std::nullopt};

/// No stretch that is shorter can break a limit.
int64_t shortest_limit(const limits &values)
{
    int64_t shortest = std::min(atsc_pat_interval_ticks, mgt_interval_ticks);
    for (const std::optional<int64_t> &other :
         {values.pat_interval_ticks, values.pmt_interval_ticks, values.sdt_interval_ticks,
          values.nit_interval_ticks, values.pid_absence_ticks, values.eit_schedule_ticks,
          values.pcr_interval_ticks, values.pts_interval_ticks})
        shortest = std::min(shortest, other.value_or(shortest));
    return shortest;
}

} // namespace

stream_tables::stream_tables(const limits &values, bool is_whole_multiplex, std::optional<bool> atsc)
    : stretches(shortest_limit(values)), router(directory), map(directory), detection(directory, atsc),
      psi_repetition(stretches, values, is_whole_multiplex), si_repetition(stretches, values),
      present_following(stretches, is_whole_multiplex), psip_repetition(stretches),
      si_gaps(values.si_minimum_gap_ticks), misplaced_sections(directory), cat_wait(stretches)
{
    cat_wait.add_limit(cat_absence_ticks, false);
}

void stream_tables::on_packet(const ts_packet &packet, const packet_sequence &sequence,
                              section_consumer &others)
{
    stretches.see(packet.at);
    consumer = &others;
    router.on_packet(packet, sequence, *this);
    consumer = nullptr;
    map.settle_roles();
}

void stream_tables::on_section(const table_section &section)
{
    const table_key key = key_of(section);
    map.on_section(section);
    take_names(section);
    detection.on_section(section);
    table_list.on_section(section, key);
    if (is_current(section)) {
        misplaced_sections.on_section(section);
        watch(section, key);
    }
    consumer->on_section(section);
}

void stream_tables::on_section_begun(const table_section &section)
{
    const table_key key = key_of(section);
    consumer->on_section_begun(section); // first: nothing there waits for what it fetches
    table_list.fetch(section, key);
    si_repetition.fetch(section, key);
}

void stream_tables::on_bad_section(const table_section &section)
{
    misplaced_sections.on_bad_section(section);
    consumer->on_bad_section(section);
}

void stream_tables::on_scrambled_packet(uint16_t pid, const moment &at)
{
    misplaced_sections.on_scrambled_packet(pid, at);
    consumer->on_scrambled_packet(pid, at);
}

/// CAT and MGT name PIDs.
void stream_tables::take_names(const table_section &section)
{
    if (!is_long(section) || !is_current(section)) return;
    const bool is_cat = section.pid == cat_pid && section.header.table_id == cat_table_id;
    const bool is_mgt = section.pid == psip_base_pid && section.header.table_id == mgt_table_id;
    if (!is_cat && !is_mgt) return;
    cat_came |= is_cat;

    section_lists<uint16_t> &names = is_cat ? cat_names : mgt_names;
    if (names.holds(section)) return;
    const pid_use use = is_cat ? pid_use::conditional_access : pid_use::psip;
    std::vector<uint16_t> pids;
    if (is_cat)
        for (const ca_descriptor &ca : read_cat(section)) pids.push_back(ca.CA_PID);
    else
        for (const mgt_table &table : read_mgt(section)) pids.push_back(table.table_type_PID);
    names.replace(
        section, std::move(pids), [&](uint16_t pid) { directory.add(pid, use); },
        [&](uint16_t pid) { directory.remove(pid, use); });
}

void stream_tables::watch(const table_section &section, const table_key &key)
{
    const auto has_packets = [this](uint16_t pid) { return router.has_seen(pid); };
    psi_repetition.on_section(section, key, map, has_packets);
    if (!cat_needed && map.has_conditional_access()) {
        cat_needed = true;
        cat_clock = cat_wait.started(section.at);
    }
    const uint8_t table_id = section.header.table_id;
    if (!is_on_own_pid(directory, section.pid, table_id)) return;
    const bool may_be_short = section.pid == tdt_pid || section.pid == rst_pid;
    if (!is_long(section) && !may_be_short) return;
    present_following.on_section(section, key, map);
    si_repetition.on_section(section, key);
    si_gaps.on_section(section, key);
    psip_repetition.on_section(section, key);
}

void stream_tables::finish(const moment &end, const std::function<bool(uint16_t pid)> &has_packets)
{
    stretches.see(end);
    psi_repetition.finish(end, has_packets);
    si_repetition.finish(end);
    present_following.finish(end);
    psip_repetition.finish(end);
    if (cat_needed && !cat_came) cat_wait.end_absent(cat_clock, end, cat);
}

void stream_tables::add_to(std::vector<limit_reached> &reached) const
{
    const auto add = [&](const char *what, uint64_t limit, uint64_t dropped) {
        if (dropped > 0) reached.push_back({what, limit, dropped});
    };
    add("tables", table_row_limit, table_list.facts().not_kept);
    add("streams of programs", mapped_stream_limit, map.streams_not_kept());
    add("tables whose intervals are judged", repetition_clock_limit,
        si_repetition.not_kept() + psip_repetition.not_kept() + present_following.not_kept());
    add("tables whose gaps are judged", gap_table_limit, si_gaps.not_kept());
}
