// The splice information sections of a recording, ANSI/SCTE 35, each once with its count.
#pragma once

#include "mpeg_ts_overview/meters/program_clock.h"
#include "mpeg_ts_overview/model/cue_facts.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/stream_role.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

constexpr size_t cue_limit = 5000;

class cue_list {
public:
    /// Takes any section whose CRC_32 is right, and what its PID is; looks at those with table_id 0xFC. The
    /// same bytes on the same PID are one cue. clocks has taken the packet in which the section ends.
    void on_section(const table_section &section, const stream_role &role, const program_clocks &clocks);

    /// The cues in order of first arrival; not_kept counts sections.
    cues_facts finish();

private:
    using section_bytes = std::vector<uint8_t>;

    /// The cue of these bytes, or null.
    cue *known(uint64_t hash, const table_section &section);

    cues_facts facts;
    std::vector<section_bytes> sections;                 ///< of each cue
    std::unordered_multimap<uint64_t, size_t> with_hash; ///< places in both
};
