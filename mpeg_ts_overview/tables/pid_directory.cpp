#include "mpeg_ts_overview/tables/pid_directory.h"

namespace {

constexpr uint16_t network_pid = 0x10;
constexpr uint16_t broadcaster_pid = 0x24;        // ARIB STD-B10
constexpr uint8_t broadcaster_information = 0xC4; // ARIB STD-B10

bool is_reserved_for_dvb(uint16_t pid)
{
    return pid >= network_pid && pid <= 0x14;
}

} // namespace

pid_directory::pid_directory() : of_pid(mpeg_ts_pid_count)
{
    for (unsigned pid = 0; pid < mpeg_ts_pid_count; ++pid) decide(static_cast<uint16_t>(pid));
}

void pid_directory::add(uint16_t pid, pid_use use)
{
    uses &here = of_pid[pid & pid_mask];
    ++here.named[static_cast<size_t>(use)];
    here.ever_named = true;
    decide(pid & pid_mask);
}

void pid_directory::remove(uint16_t pid, pid_use use)
{
    --of_pid[pid & pid_mask].named[static_cast<size_t>(use)];
    decide(pid & pid_mask);
}

bool pid_directory::has_fixed_meaning(uint16_t pid) const
{
    if (pid == 0x00 || pid == 0x01 || pid == 0x1F || pid == broadcaster_pid || pid == 0x1FFB) return true;
    if (!is_reserved_for_dvb(pid)) return false;
    if (is(pid, pid_use::network) && pid != network_pid) return false;
    return !is(pid, pid_use::map) && !is(pid, pid_use::clock) && !is(pid, pid_use::stream) &&
           !is(pid, pid_use::conditional_access);
}

bool pid_directory::is_named_for_sections(uint16_t pid) const
{
    return is(pid, pid_use::network) || is(pid, pid_use::map) || is(pid, pid_use::sections) ||
           is(pid, pid_use::splices) || is(pid, pid_use::psip);
}

bool pid_directory::collects(uint16_t pid, uint8_t table_id) const
{
    if (!collects(pid)) return false;
    return pid != broadcaster_pid || table_id == broadcaster_information || is_named_for_sections(pid);
}

void pid_directory::decide(uint16_t pid)
{
    const bool collects_now = has_fixed_meaning(pid) || is_named_for_sections(pid);
    if (collects_now && !collected[pid]) ++of_pid[pid].collections;
    collected[pid] = collects_now;
}
