// Who gets the sections of a recording.
#pragma once

#include "mpeg_ts_overview/model/moment.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>

class section_consumer {
public:
    virtual ~section_consumer() = default;

    /// A whole section. Where it has a CRC_32 that is looked at, that is right.
    virtual void on_section(const table_section &section) = 0;

    /// A section has begun that goes on in further packets; its body is what is there so far. A good time to
    /// fetch what is remembered of it, but nothing is known of its CRC_32.
    virtual void on_section_begun(const table_section &) {}

    /// A whole section whose CRC_32 is wrong or missing.
    virtual void on_bad_section(const table_section &) {}

    /// A scrambled packet, without transport error, of a PID whose sections are collected.
    virtual void on_scrambled_packet(uint16_t /*pid*/, const moment &) {}
};
