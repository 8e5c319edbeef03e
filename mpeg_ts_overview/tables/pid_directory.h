// What PAT, CAT, PMTs and MGT name each PID for, and so whose sections are collected.
#pragma once

#include "mpeg12_ts/packet.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <vector>

enum class pid_use : uint8_t {
    network,            ///< the PAT: program_number 0
    map,                ///< the PAT: a PMT
    clock,              ///< a PMT: PCR_PID
    stream,             ///< a PMT: a stream of another type than 0x05
    sections,           ///< a PMT: stream_type 0x05
    splices,            ///< a PMT: stream_type 0x86 where it is SCTE 35
    conditional_access, ///< CAT or PMT: a CA_PID
    psip,               ///< the MGT
    count
};

class pid_directory {
public:
    pid_directory();

    /// A table begins, or ceases, to name the PID; once for each time that it stands in the table.
    void add(uint16_t pid, pid_use use);
    void remove(uint16_t pid, pid_use use);

    /// True while a table names the PID for that.
    bool is(uint16_t pid, pid_use use) const { return uses_of(pid).named[static_cast<size_t>(use)] > 0; }

    /// True once any table has named the PID.
    bool ever_named(uint16_t pid) const { return uses_of(pid).ever_named; }

    /// True when the sections of the PID are collected.
    bool collects(uint16_t pid) const { return collected[pid & pid_mask]; }

    /// True when sections of that table_id are collected on it: on 0x24 others than 0xC4 come from another
    /// world.
    bool collects(uint16_t pid, uint8_t table_id) const;

    /// True for a PID of 0x00, 0x01, 0x10 to 0x14, 0x1F, 0x24 and 0x1FFB that carries what it is reserved
    /// for.
    bool has_fixed_meaning(uint16_t pid) const;

    /// How often the collection of the PID's sections has begun: what was begun before is of no use.
    uint32_t collections_of(uint16_t pid) const { return uses_of(pid).collections; }

private:
    static constexpr uint16_t pid_mask = mpeg_ts_pid_count - 1;

    struct uses {
        std::array<uint32_t, static_cast<size_t>(pid_use::count)> named = {};
        uint32_t collections = 0;
        bool ever_named = false;
    };

    const uses &uses_of(uint16_t pid) const { return of_pid[pid & pid_mask]; }
    bool is_named_for_sections(uint16_t pid) const;
    void decide(uint16_t pid);

    std::vector<uses> of_pid;
    std::bitset<mpeg_ts_pid_count> collected;
};
