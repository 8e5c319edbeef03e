#include "mpeg_ts_analysis/health/tracking.h"

#include "mpeg_ts_analysis/report/invariant.h"
#include "mpeg_ts_analysis/state/process_state.h"

#include <bit>
#include <cstddef>
#include <iterator>

namespace {

constexpr uint16_t pat_pid = 0x0000;
constexpr uint16_t sdt_pid = 0x0011;
constexpr uint16_t eit_pid = 0x0012;
constexpr uint16_t atsc_base_pid = 0x1FFB;
constexpr unsigned first_pmt_pid = 0x0010;
constexpr unsigned last_pmt_pid = 0x1FFE;

void note_pmt(uint16_t pid, bool is_pmt)
{
    const uint64_t bit = uint64_t{1} << (pid % 64);
    tracked_pmts[pid / 64] = is_pmt ? tracked_pmts[pid / 64] | bit : tracked_pmts[pid / 64] & ~bit;
}

void start_fixed(uint16_t pid, uint16_t type, unsigned long storage)
{
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_start(pid, type, 0);
    invariant(t != NULL);
    mpeg_ts_table_assembly_init(&t->tbl_asm, storage);
}

} // namespace

void mpeg_ts_pid_tracking_init_tracking()
{
    mpeg_ts_pid_tracking_free_all();
    start_fixed(pat_pid, TRACK_PAT, program_section_storage);
    start_fixed(default_nit_pid, TRACK_NIT, private_section_storage);
    start_fixed(sdt_pid, TRACK_SDT, private_section_storage);
    start_fixed(eit_pid, TRACK_EIT, private_section_storage);
    start_fixed(atsc_base_pid, TRACK_ATSC_PSIP, private_section_storage);
}

mpeg_ts_pid_tracking *mpeg_ts_pid_tracking_get(uint16_t pid)
{
    if (pid >= mpeg_ts_pid_count || pid_tracking[pid].type == TRACK_NONE) return nullptr;
    return &pid_tracking[pid];
}

mpeg_ts_pid_tracking *mpeg_ts_pid_tracking_start(uint16_t pid, uint16_t type, uint16_t program_number)
{
    if (pid >= mpeg_ts_pid_count) return nullptr;
    mpeg_ts_pid_tracking *const t = &pid_tracking[pid];
    if (t->type != TRACK_NONE && t->type != type) return nullptr;

    mpeg_ts_table_assembly_init(&t->tbl_asm, 0);
    t->private_data_specifier = settings.assume_country;
    t->program_number = program_number;
    t->last_version = no_last_version;
    t->type = type;
    note_pmt(pid, type == TRACK_PMT);
    return t;
}

void mpeg_ts_pid_tracking_stop(uint16_t pid)
{
    if (pid >= mpeg_ts_pid_count) return;
    mpeg_ts_table_assembly_init(&pid_tracking[pid].tbl_asm, 0);
    pid_tracking[pid] = mpeg_ts_pid_tracking{};
    note_pmt(pid, false);
}

void mpeg_ts_pid_tracking_stop_pmts()
{
    for (unsigned word = 0; word < std::size(tracked_pmts); ++word) {
        for (uint64_t pmts = tracked_pmts[word]; pmts != 0; pmts &= pmts - 1) {
            const unsigned pid = 64 * word + static_cast<unsigned>(std::countr_zero(pmts));
            if (pid >= first_pmt_pid && pid <= last_pmt_pid)
                mpeg_ts_pid_tracking_stop(static_cast<uint16_t>(pid));
        }
    }
}

void mpeg_ts_pid_tracking_free_all()
{
    for (uint16_t pid = 0; pid < mpeg_ts_pid_count; ++pid) mpeg_ts_pid_tracking_stop(pid);
}
