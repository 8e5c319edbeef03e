#include "mpeg_ts_overview/checks/check_rows.h"
#include "mpeg_ts_overview/checks/pid_lookup.h"
#include "mpeg_ts_overview/tables/pat.h"
#include "mpeg_ts_overview/tables/standard_limits.h"

void look_at_sync_loss(check_builder &row)
{
    row.set_limit_of_counts();
    row.add_faults(row.from().faults.sync_losses());
}

void look_at_sync_bytes(check_builder &row)
{
    row.set_limit_of_counts();
    row.add_faults(row.from().faults.sync_byte_errors());
}

void look_at_pat(check_builder &row)
{
    const check_sources &from = row.from();
    row.set_limit(in_seconds(*from.tables.psi().pat().ticks()), "s");
    row.add_faults(from.tables.misplaced().on_pid(pat_pid));
    row.add_faults(from.tables.misplaced().scrambled_pat());
    if (has_packets(from.facts.pids, pat_pid) || from.whole_multiplex)
        row.add_intervals(from.tables.psi().pat());
    else
        row.add_unmeasured("no PAT");
}

void look_at_continuity(check_builder &row)
{
    row.set_limit_of_counts();
    row.add_faults(row.from().continuity.errors());
}

void look_at_pmts(check_builder &row)
{
    const check_sources &from = row.from();
    row.set_limit(in_seconds(*from.tables.psi().pmt().ticks()), "s");
    row.add_faults(from.tables.misplaced().scrambled_pmt());
    if (from.tables.psi().had_program())
        row.add_intervals(from.tables.psi().pmt());
    else
        row.add_unmeasured(from.tables.psi().had_pat() ? "no PMT" : "no PAT");
}

void look_at_absent_pids(check_builder &row)
{
    const check_sources &from = row.from();
    row.set_limit(in_seconds(*from.absence.limit().ticks()), "s");
    row.add_faults(from.absence.never_there());
    if (!from.tables.psi().had_pat())
        row.add_unmeasured("no PAT");
    else if (!from.tables.programs().had_map())
        row.add_unmeasured("no PMT");
    else
        row.add_intervals(from.absence.limit());
}
