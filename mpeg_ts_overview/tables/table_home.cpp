#include "mpeg_ts_overview/tables/table_home.h"

#include "mpeg_ts_overview/tables/conditional_access.h"
#include "mpeg_ts_overview/tables/eit.h"
#include "mpeg_ts_overview/tables/nit.h"
#include "mpeg_ts_overview/tables/pat.h"
#include "mpeg_ts_overview/tables/pmt.h"
#include "mpeg_ts_overview/tables/psip.h"
#include "mpeg_ts_overview/tables/sdt.h"
#include "mpeg_ts_overview/tables/tdt.h"

namespace {

constexpr uint8_t stuffing_table_id = 0x72;
constexpr uint8_t related_content_table_id = 0x77;

bool is_nit(uint8_t table_id)
{
    return table_id == nit_actual_table_id || table_id == nit_other_table_id;
}

/// True when the PID is reserved for the table.
bool belongs(uint16_t pid, uint8_t table_id)
{
    switch (pid) {
    case pat_pid:
        return table_id == pat_table_id;
    case cat_pid:
        return table_id == cat_table_id;
    case nit_pid:
        return is_nit(table_id);
    case sdt_pid:
        return table_id == sdt_actual_table_id || table_id == sdt_other_table_id || table_id == bat_table_id;
    case eit_pid:
        return is_eit(table_id);
    case rst_pid:
        return table_id == rst_table_id;
    case tdt_pid:
        return table_id == tdt_table_id || table_id == tot_table_id;
    case psip_base_pid:
        return is_psip(table_id);
    default:
        return false;
    }
}

} // namespace

bool is_on_own_pid(const pid_directory &directory, uint16_t pid, uint8_t table_id)
{
    if (directory.has_fixed_meaning(pid) && belongs(pid, table_id)) return true;
    if (table_id == pmt_table_id) return directory.is(pid, pid_use::map);
    if (is_nit(table_id)) return directory.is(pid, pid_use::network);
    return is_psip(table_id) && directory.is(pid, pid_use::psip);
}

bool is_misplaced(const pid_directory &directory, uint16_t pid, uint8_t table_id)
{
    const bool is_psi_pid = pid == pat_pid || pid == cat_pid;
    const bool is_si_pid = pid >= nit_pid && pid <= tdt_pid && directory.has_fixed_meaning(pid);
    if ((!is_psi_pid && !is_si_pid) || belongs(pid, table_id)) return false;
    if (is_psi_pid) return true;
    return table_id != stuffing_table_id && !(pid == eit_pid && table_id == related_content_table_id);
}
