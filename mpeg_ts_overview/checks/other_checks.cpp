#include "mpeg_ts_overview/checks/check_rows.h"

#include <algorithm>

namespace {

bool has_stamps(const time_stamp_facts &facts)
{
    return facts.pts.count > 0 || facts.dts.count > 0;
}

} // namespace

void look_at_psip(check_builder &row)
{
    const check_sources &from = row.from();
    const psip_watch &psip = from.tables.psip();
    row.set_seconds();
    if (!psip.tvct().came()) return row.add_unmeasured("no TVCT in the recording");
    row.add_table(psip.mgt(), "MGT");
    row.add_table(psip.tvct(), "TVCT");
    row.add_table(psip.stt(), "STT");
    if (psip.rrt().came()) row.add_intervals(psip.rrt().limit(0));
    const auto &longest = psip.eit_0().limit(0).findings(from.sure_times_only()).longest_ticks;
    if (longest) row.show(in_seconds(*longest));
}

void look_at_atsc_psi(check_builder &row)
{
    const check_sources &from = row.from();
    const psi_watch &psi = from.tables.psi();
    row.set_seconds();
    if (psi.had_pat() || from.whole_multiplex)
        row.add_intervals(psi.atsc_pat());
    else
        row.add_unmeasured("no PAT");
    if (psi.had_program())
        row.add_intervals(psi.atsc_pmt());
    else
        row.add_unmeasured("no PMT");
}

void look_at_late_time_stamps(check_builder &row)
{
    const check_sources &from = row.from();
    const std::vector<time_stamp_facts> &stamps = from.facts.time_stamps;
    row.set_limit_of_counts();
    row.add_faults(from.time_stamps.late());
    if (std::none_of(stamps.begin(), stamps.end(), has_stamps))
        row.add_unmeasured("no PTS");
    else if (std::none_of(stamps.begin(), stamps.end(),
                          [](const time_stamp_facts &facts) { return facts.has_margins(); }))
        row.add_unmeasured("no PCR");
}

void look_at_unchanged_versions(check_builder &row)
{
    row.set_limit_of_counts();
    row.add_faults(row.from().tables.rows().changed_under_same_version());
}

void look_at_decoding_order(check_builder &row)
{
    const check_sources &from = row.from();
    row.set_limit_of_counts();
    row.add_faults(from.time_stamps.decoding_order());
    if (!from.time_stamps.decoding_order_measured()) row.add_unmeasured("no DTS");
}
