#include "mpeg_ts_analysis/tables/pat.h"

#include "mpeg12_ts/bytes.h"
#include "mpeg_ts_analysis/health/clocks.h"
#include "mpeg_ts_analysis/health/tracking.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"
#include "mpeg_ts_analysis/tables/table_print.h"

#include <cstdlib>

namespace {

constexpr unsigned entry_size = 4;
constexpr uint32_t reserved_bits = 0xE000;

/// Keeps the clock of a program in step with the PAT. Without memory for a new one the program stops.
void follow_program(uint16_t program_number, uint16_t pmt_pid)
{
    program_clock *const clock = program_clock_get(program_number);
    if (clock != nullptr) {
        if (clock->pmt_pid == pmt_pid) return;
        // kept: one blank less than its neighbours.
        report_printf("     Program 0x%04x changed PMT PID from 0x%04x to 0x%04x\n", program_number,
                      clock->pmt_pid, pmt_pid);
        clock->pmt_pid = pmt_pid;
    } else if (program_clock_create(program_number, pmt_pid) != nullptr) {
        report_printf("        First aware of, tracking program 0x%04x\n", program_number);
    } else {
        report_printf("!!! Not tracking program 0x%04x, cannot start\n", program_number);
        report_flush();
        std::abort();
    }
}

void track_pmt(uint16_t program_number, uint16_t pmt_pid)
{
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_start(pmt_pid, TRACK_PMT, program_number);
    if (t == nullptr) {
        report_line("!!! Unable to begin tracking the PMT");
        return;
    }
    mpeg_ts_pid_tracking_give_storage(t, program_section_storage);
}

void track_nit(uint16_t nit_pid)
{
    if (nit_pid == current_nit_pid) return;
    const mpeg_ts_pid_tracking *const current = mpeg_ts_pid_tracking_get(current_nit_pid);
    if (current != nullptr && current->type == TRACK_NIT) mpeg_ts_pid_tracking_stop(current_nit_pid);
    report_printf("      Changed NIT tracking to PID 0x%04x\n", nit_pid);
    current_nit_pid = nit_pid;

    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_start(nit_pid, TRACK_NIT, 0);
    if (t == nullptr) {
        report_line("!!! Unable to begin tracking the NIT");
        return;
    }
    mpeg_ts_pid_tracking_give_storage(t, private_section_storage);
}

} // namespace

void on_ts_program_association_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                     const uint8_t *base, const uint8_t *fence)
{
    const bool current = h->current_next_indicator != 0;
    bool has_nit_entry = false;
    uint16_t nit_pid = default_nit_pid; // kept: each section without an NIT entry moves the tracking back

    report_table_heading("* Program Association Table", h);
    report_printf("    Transport stream ID:              0x%04x\n", h->table_id_extension);
    report_version_and_section(h);
    if (current) mpeg_ts_pid_tracking_stop_pmts();

    for (const uint8_t *p = base; fence - p >= static_cast<long>(entry_size); p += entry_size) {
        const uint32_t entry = big_endian_32(p);
        const auto program_number = static_cast<uint16_t>(entry >> 16);
        const uint16_t pid = entry & 0x1FFF;

        if ((entry & reserved_bits) != reserved_bits)
            report_printf("!!! PAT entry reserved bits contain a 0 bit [in 0x%08x]\n", entry);
        if (program_number == 0) {
            report_printf("      Network Info Table PID is 0x%04x\n", pid);
            if (has_nit_entry) report_line("!!! PAT has more than one entry for the NIT");
            has_nit_entry = true;
            nit_pid = pid;
        } else {
            report_printf("      Program 0x%04x: PMT PID is 0x%04x\n", program_number, pid);
            if (!current) continue;
            follow_program(program_number, pid);
            track_pmt(program_number, pid);
        }
    }

    if (!current) return;
    t->last_version = h->version_number;
    track_nit(nit_pid);
}
