// Sections as the overview's tables get them.
#pragma once

#include "tests/support/hex.h"

#include "mpeg12_ts/section_collector.h"
#include "mpeg_ts_overview/tables/section.h"

#include <memory>

/// The moment of a packet, at so many seconds.
inline moment at_packet(uint64_t packet, double seconds = 0.0)
{
    moment at;
    at.packet = packet;
    at.byte = packet * 188;
    at.ticks = static_cast<int64_t>(seconds * ticks_per_second);
    return at;
}

/// Owns the bytes of a section.
class offered_section {
public:
    offered_section(unsigned pid, const bytes &data, const moment &at)
        : payload(join({hex("00"), data})), collector(std::make_unique<mpeg_ts_section_collector>())
    {
        mpeg_ts_section found;
        mpeg_ts_section_collector_packet(collector.get(), payload.data(), payload.data() + payload.size(),
                                         true, at.packet);
        whole = mpeg_ts_section_collector_next(collector.get(), &found) && !found.CRC_error;
        section.pid = static_cast<uint16_t>(pid);
        section.header = found.header;
        section.start = found.start;
        section.fence = found.fence;
        section.body = found.body;
        section.body_fence = found.body_fence;
        section.crc_32 = found.CRC_32;
        section.begun = section.at = at;
    }

    /// False when the bytes are no section, or one with a wrong CRC_32.
    bool is_whole() const { return whole; }
    const table_section &operator*() const { return section; }

private:
    bytes payload;
    std::unique_ptr<mpeg_ts_section_collector> collector;
    bool whole = false;
    table_section section;
};
