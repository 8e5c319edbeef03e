// The splice information sections of a recording, ANSI/SCTE 35, each once with its count.
#pragma once

#include "mpeg_ts_overview/meters/program_clock.h"
#include "mpeg_ts_overview/model/cue_facts.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/stream_role.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

constexpr size_t cue_limit = 5000;

class cue_list {
public:
    /// Takes any section of a PID of stream_type 0x86 whose CRC_32 is right, and what the PID is; looks at
    /// those with table_id 0xFC. The same bytes on the same PID are one cue. clocks has taken the packet in
    /// which the section ends.
    void on_section(const table_section &section, const stream_role &role, const program_clocks &clocks);

    /// The cues in order of first arrival; not_kept counts sections.
    cues_facts finish();

private:
    /// A section of a PID. In a tree, which no choice of bytes makes slow as it may a hash map.
    struct known_section {
        uint16_t pid = 0;
        const uint8_t *start = nullptr;
        size_t size = 0;

        bool operator<(const known_section &other) const;
    };

    cues_facts facts;
    std::vector<std::vector<uint8_t>> sections; ///< the bytes of each cue
    std::map<known_section, size_t> places;     ///< in both
};
