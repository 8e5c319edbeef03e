#include "mpeg_ts_overview/checks/check_rows.h"
#include "mpeg_ts_overview/tables/eit.h"
#include "mpeg_ts_overview/tables/nit.h"
#include "mpeg_ts_overview/tables/sdt.h"
#include "mpeg_ts_overview/tables/standard_limits.h"
#include "mpeg_ts_overview/tables/table_home.h"
#include "mpeg_ts_overview/tables/tdt.h"

#include <algorithm>

namespace {

const violation_log &misplaced_on(const check_builder &row, uint16_t pid)
{
    return row.from().tables.misplaced().on_pid(pid);
}

/// Takes the longest interval of a table that has no limit; false when there was none.
bool show_intervals(check_builder &row, const table_repetition &table)
{
    const auto &longest = table.limit(0).findings(row.from().sure_times_only()).longest_ticks;
    if (longest) row.show(in_seconds(*longest));
    return longest.has_value();
}

} // namespace

void look_at_nit(check_builder &row)
{
    const table_repetition &nit = row.from().tables.si().nit();
    row.set_limit(in_seconds(*nit.limit(0).ticks()), "s");
    row.add_faults(misplaced_on(row, nit_pid));
    row.add_table(nit, "NIT");
}

void look_at_si_repetition(check_builder &row)
{
    const check_sources &from = row.from();
    const table_repetition &schedule = from.tables.si().eit_schedule();
    bool any = false;
    row.set_seconds();
    for (const table_repetition *table : from.tables.si().optional_tables()) {
        if (!table->came()) continue;
        any = true;
        row.add_intervals(table->limit(0));
    }
    if (schedule.limit(0).ticks() && schedule.came()) {
        row.add_intervals(schedule.limit(0));
        return;
    }
    const bool shown = show_intervals(row, schedule);
    if (any || shown) return;
    row.add_unmeasured(schedule.came() ? "recording shorter than the limit" : "no SI table in the recording");
}

void look_at_si_gaps(check_builder &row)
{
    const check_sources &from = row.from();
    const section_gaps &gaps = from.tables.gaps();
    const auto shortest = gaps.shortest(from.sure_times_only());
    row.set_limit(in_seconds(from.other_limits.si_minimum_gap_ticks.value_or(si_minimum_gap_ticks)), "s");
    row.add_faults(gaps.log(from.sure_times_only()));
    if (shortest)
        row.show(in_seconds(*shortest));
    else
        row.add_unmeasured(gaps.came() ? "recording shorter than the limit" : "no SI table in the recording");
}

void look_at_sdt(check_builder &row)
{
    const table_repetition &sdt = row.from().tables.si().sdt();
    row.set_limit(in_seconds(*sdt.limit(0).ticks()), "s");
    row.add_faults(misplaced_on(row, sdt_pid));
    row.add_table(sdt, "SDT");
}

void look_at_eit(check_builder &row)
{
    const eit_watch &eit = row.from().tables.eit();
    row.set_limit(in_seconds(*eit.repetition().ticks()), "s");
    row.add_faults(misplaced_on(row, eit_pid));
    if (eit.had_service())
        row.add_intervals(eit.repetition());
    else
        row.add_unmeasured("no EIT p/f");
}

void look_at_eit_halves(check_builder &row)
{
    const check_sources &from = row.from();
    row.add_faults(from.tables.eit().incomplete(from.sure_times_only()));
    if (!from.tables.eit().came())
        row.add_unmeasured("no EIT p/f");
    else if (!from.tables.eit().is_completeness_measured(from.sure_times_only()))
        row.add_unmeasured("recording shorter than the limit");
}

void look_at_rst(check_builder &row)
{
    row.add_faults(misplaced_on(row, rst_pid));
}

void look_at_tdt(check_builder &row)
{
    const table_repetition &tdt = row.from().tables.si().tdt();
    row.set_limit(in_seconds(*tdt.limit(0).ticks()), "s");
    row.add_faults(misplaced_on(row, tdt_pid));
    row.add_table(tdt, "TDT");
}

void look_at_decoder_model(check_builder &row)
{
    row.add_unmeasured("needs the decoder model");
}
