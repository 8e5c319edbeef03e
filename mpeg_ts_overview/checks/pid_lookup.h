// The facts of one PID among those of all.
#pragma once

#include "mpeg_ts_overview/model/pid_facts.h"

#include <algorithm>
#include <cstdint>
#include <vector>

/// True when a packet of the PID came.
inline bool has_packets(const std::vector<pid_facts> &pids, uint16_t pid)
{
    return std::any_of(pids.begin(), pids.end(), [&](const pid_facts &facts) { return facts.pid == pid; });
}
