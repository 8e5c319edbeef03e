// Whose PID is this? What the current PAT and PMTs say, ISO/IEC 13818-1 2.4.4.3 and 2.4.4.8.
#pragma once

#include "mpeg_ts_overview/model/program_facts.h"
#include "mpeg_ts_overview/tables/pid_directory.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/stream_role.h"

#include <cstdint>
#include <vector>

class program_map {
public:
    explicit program_map(pid_directory &uses);

    /// Takes every section whose CRC_32 is right, and looks at PAT and PMTs.
    void on_section(const table_section &section);

    /// What the PID is to the first program of the PAT whose current PMT lists it.
    const stream_role &role_of(uint16_t pid) const { return roles[pid]; }

    /// True while a program with a current PMT has its PCRs on the PID.
    bool is_program_clock(uint16_t pid) const { return directory.is(pid, pid_use::clock); }

    /// Goes up when a role or a clock changes.
    uint64_t changes() const { return change_count; }

    /// Every program that any current PAT named, in that order, with what its last PMT said: number, PIDs, CA
    /// systems, streams. What comes from elsewhere is left out.
    std::vector<program_facts> facts() const;

private:
    pid_directory &directory;
    std::vector<stream_role> roles;
    uint64_t change_count = 0;
};
