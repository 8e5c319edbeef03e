#include "mpeg_ts_overview/checks/check_rows.h"
#include "mpeg_ts_overview/tables/conditional_access.h"

#include <algorithm>

namespace {

constexpr double pcr_accuracy_ns = 500;

/// A clause of PCRs of programs; false, and why, when there were none.
bool has_program_clock(check_builder &row)
{
    const check_sources &from = row.from();
    if (from.pcr.program_clock_measured()) return true;
    if (!from.tables.psi().had_pat())
        row.add_unmeasured("no PAT");
    else if (!from.tables.programs().had_map())
        row.add_unmeasured("no PMT");
    else
        row.add_unmeasured("no PCR");
    return false;
}

} // namespace

void look_at_transport_errors(check_builder &row)
{
    row.set_limit_of_counts();
    row.add_faults(row.from().faults.transport_errors());
}

void look_at_crcs(check_builder &row)
{
    row.set_limit_of_counts();
    row.add_faults(row.from().tables.misplaced().crc_errors());
}

void look_at_pcr_intervals(check_builder &row)
{
    const check_sources &from = row.from();
    row.set_limit(in_seconds(*from.pcr.intervals().ticks()), "s");
    has_program_clock(row);
    row.add_intervals(from.pcr.intervals());
}

void look_at_pcr_leaps(check_builder &row)
{
    row.set_limit_of_counts();
    row.add_faults(row.from().pcr.unflagged());
    has_program_clock(row);
}

void look_at_pcr_accuracy(check_builder &row)
{
    const check_sources &from = row.from();
    row.set_limit(from.other_limits.pcr_accuracy_ns.value_or(pcr_accuracy_ns), "ns");
    if (!from.end.constant_bitrate) {
        row.add_unmeasured("variable bitrate");
        return;
    }
    row.add_faults(from.pcr.residuals());
    row.show(from.pcr.residuals().worst);
    if (!from.pcr.residuals().worst) row.add_unmeasured("too few PCRs");
}

void look_at_pts_intervals(check_builder &row)
{
    const check_sources &from = row.from();
    const auto has_pts = [](const time_stamp_facts &facts) { return facts.pts.count > 0; };
    row.set_limit(in_seconds(*from.time_stamps.pts_intervals().ticks()), "s");
    if (std::none_of(from.facts.time_stamps.begin(), from.facts.time_stamps.end(), has_pts))
        row.add_unmeasured("no PTS");
    row.add_intervals(from.time_stamps.pts_intervals());
}

void look_at_cat(check_builder &row)
{
    const check_sources &from = row.from();
    row.add_faults(from.tables.misplaced().on_pid(cat_pid));
    if (!from.whole_multiplex || from.tables.had_cat() || !from.tables.needs_cat()) return;
    const repetition_limit &absence = from.tables.cat_absence();
    row.add_faults(absence.findings(from.sure_times_only()).log);
    if (!from.has_times())
        row.add_unmeasured("no times");
    else if (!absence.is_measured(from.sure_times_only()))
        row.add_unmeasured("recording shorter than the limit");
}
