// Recordings in memory and what is found in them.
#pragma once

#include "mpeg_ts_overview/driver/overview_of.h"
#include "tests/overview_input/memory_source.h"

#include <algorithm>

/// Gives the overview of a recording in memory, read in pieces of at most that size.
inline overview found_in(const bytes &recording, const overview_request &request = {},
                         size_t piece = size_t{1} << 30)
{
    overview found;
    overview_of(source_of(recording, piece), request, found);
    return found;
}

/// The row of a PID, or one without packets.
inline pid_facts pid_row(const overview &found, uint16_t pid)
{
    const auto row = std::find_if(found.pids.begin(), found.pids.end(),
                                  [&](const pid_facts &facts) { return facts.pid == pid; });
    return row == found.pids.end() ? pid_facts() : *row;
}

/// The result of a check, or one without a name.
inline check_result check_row(const overview &found, const std::string &id)
{
    const auto row = std::find_if(found.checks.begin(), found.checks.end(),
                                  [&](const check_result &check) { return check.id == id; });
    return row == found.checks.end() ? check_result() : *row;
}
