#include "mpeg_ts_overview/tables/psi_watch.h"

#include "mpeg_ts_overview/tables/pat.h"
#include "mpeg_ts_overview/tables/pmt.h"
#include "mpeg_ts_overview/tables/standard_limits.h"

namespace {

watched_thing pmt_of(uint16_t program_number, uint16_t pmt_pid)
{
    return {pmt_pid, pmt_table_id, program_number, std::nullopt};
}

} // namespace

psi_watch::psi_watch(const time_stretches &times, const limits &values, bool is_whole_multiplex)
    : whole_multiplex(is_whole_multiplex), pat_sections(times, awaited_sections::of_one_table), pmts(times)
{
    pat_sections.add_limit(values.pat_interval_ticks.value_or(pat_interval_ticks), false);
    pat_sections.add_limit(atsc_pat_interval_ticks, true);
    pmts.add_limit(values.pmt_interval_ticks.value_or(pmt_interval_ticks), false);
    pmts.add_limit(atsc_pmt_interval_ticks, true);
}

void psi_watch::on_section(const table_section &section, const table_key &of_table,
                           const program_map &programs, const std::function<bool(uint16_t pid)> &has_packets)
{
    if (!is_long(section) || !is_current(section)) return;
    if (section.pid == pat_pid && section.header.table_id == pat_table_id)
        pat_sections.on_section(section, of_table);

    for (const program_map::listing_change &change : programs.listing_changes()) {
        if (change.is_listed) {
            clocks[change.program_number] = {change.pmt_pid, pmts.started(section.at)};
            continue;
        }
        const auto gone = clocks.extract(change.program_number);
        if (!gone.empty()) end(gone.key(), gone.mapped(), section.at, !has_packets(change.pmt_pid));
    }

    if (section.header.table_id != pmt_table_id) return;
    const auto found = clocks.find(section.header.table_id_extension);
    if (found == clocks.end() || found->second.pmt_pid != section.pid) return;
    pmts.arrive(found->second.clock, section.at, pmt_of(found->first, section.pid));
}

void psi_watch::end(uint16_t program_number, program_clock of_program, const moment &at, bool is_absent)
{
    if (is_absent && !whole_multiplex) return;
    watched_program = true;
    const watched_thing pmt = pmt_of(program_number, of_program.pmt_pid);
    if (is_absent)
        pmts.end_absent(of_program.clock, at, pmt);
    else
        pmts.end(of_program.clock, at, pmt);
}

void psi_watch::finish(const moment &end_of_recording, const std::function<bool(uint16_t pid)> &has_packets)
{
    pat_sections.finish(end_of_recording, {pat_pid, pat_table_id, std::nullopt, std::nullopt});
    for (const auto &[program_number, of_program] : clocks)
        end(program_number, of_program, end_of_recording, !has_packets(of_program.pmt_pid));
}
