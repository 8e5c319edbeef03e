#include "mpeg_ts_analysis/health/continuity.h"

#include "mpeg_ts_analysis/health/tracking.h"
#include "mpeg_ts_analysis/report/invariant.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"

namespace {

void on_continuity_error(const mpeg_ts_packet *tsp, unsigned expected)
{
    errors.priority1_errors++;
    errors.continuity_errors++;
    report_printf(
        "!!! ALARM: TS continuity counter error in PID 0x%04x (expect=%u cur=%u) adap=%u payload=%u\n",
        tsp->pid, expected, tsp->continuity_counter, tsp->adaptation_field_control >> 1,
        tsp->adaptation_field_control & 1);

    last_continuity_counter[tsp->pid] = tsp->continuity_counter;
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(tsp->pid);
    if (t != nullptr && carries_sections(t->type)) mpeg_ts_table_assembly_discard(&t->tbl_asm);
}

} // namespace

// kept: neither the discontinuity_indicator nor the one duplicate that the standard allows is honoured.
void p1_continuity_tracking(const mpeg_ts_packet *tsp)
{
    invariant(tsp->pid <= 0x1FFF);
    uint8_t &last = last_continuity_counter[tsp->pid];

    if (last == no_continuity_counter) {
        last = tsp->continuity_counter;
        return;
    }
    if (tsp->adaptation_field_control & 1) last = (last + 1) & 0xF;
    if (tsp->continuity_counter != last) on_continuity_error(tsp, last);
}
