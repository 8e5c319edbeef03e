#include "mpeg_ts_analysis/health/tracking.h"

#include "mpeg_ts_analysis/report/invariant.h"
#include "mpeg_ts_analysis/state/process_state.h"

#include <cstddef>

namespace {

constexpr uint16_t pat_pid = 0x0000;
constexpr uint16_t sdt_pid = 0x0011;
constexpr uint16_t eit_pid = 0x0012;
constexpr uint16_t atsc_base_pid = 0x1FFB;
constexpr unsigned first_pmt_pid = 0x0010;
constexpr unsigned last_pmt_pid = 0x1FFE;

/// Where storage of this size is kept, or null when it is not.
spare_storage *spares_of(unsigned long size)
{
    if (size == program_section_storage) return &spare_program_storage;
    return size == private_section_storage ? &spare_private_storage : nullptr;
}

/// A PAT stops and restarts every PMT: their storage is kept, and only what was written in it is zeroed.
void give_up_storage(mpeg_ts_table_assembly *assembly)
{
    if (assembly->buffer == nullptr) return;
    const auto storage = static_cast<unsigned long>(assembly->fence - assembly->buffer);
    spare_storage *const spares = spares_of(storage - mpeg_ts_table_assembly_reserve);

    if (spares != nullptr && spares->count < spare_storage_limit)
        mpeg_ts_table_assembly_move(assembly, &spares->assemblies[spares->count++]);
    else
        mpeg_ts_table_assembly_init(assembly, 0);
}

void start_fixed(uint16_t pid, uint16_t type, unsigned long storage)
{
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_start(pid, type, 0);
    invariant(t != NULL);
    mpeg_ts_pid_tracking_give_storage(t, storage);
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

    give_up_storage(&t->tbl_asm);
    t->private_data_specifier = settings.assume_country;
    t->program_number = program_number;
    t->last_version = no_last_version;
    t->type = type;
    if (type == TRACK_PMT) tracked_pmts.insert(pid);
    return t;
}

void mpeg_ts_pid_tracking_give_storage(mpeg_ts_pid_tracking *t, unsigned long size)
{
    spare_storage *const spares = spares_of(size);

    if (spares != nullptr && spares->count > 0)
        mpeg_ts_table_assembly_move(&spares->assemblies[--spares->count], &t->tbl_asm);
    else
        mpeg_ts_table_assembly_init(&t->tbl_asm, size);
}

void mpeg_ts_pid_tracking_stop(uint16_t pid)
{
    if (pid >= mpeg_ts_pid_count) return;
    give_up_storage(&pid_tracking[pid].tbl_asm);
    pid_tracking[pid] = mpeg_ts_pid_tracking{};
    tracked_pmts.erase(pid);
}

void mpeg_ts_pid_tracking_stop_pmts()
{
    for (unsigned pid = tracked_pmts.first_from(first_pmt_pid); pid <= last_pmt_pid;
         pid = tracked_pmts.first_from(pid + 1))
        mpeg_ts_pid_tracking_stop(static_cast<uint16_t>(pid));
}

void mpeg_ts_pid_tracking_free_all()
{
    for (uint16_t pid = 0; pid < mpeg_ts_pid_count; ++pid) mpeg_ts_pid_tracking_stop(pid);
    spare_storage_free(&spare_program_storage);
    spare_storage_free(&spare_private_storage);
}
