// The time of day that the recording tells: TDT and TOT, EN 300 468 5.2.5 and 5.2.6, and STT, A/65 6.1.
#pragma once

#include "mpeg_ts_overview/model/clock_facts.h"
#include "mpeg_ts_overview/tables/section.h"

class day_clock {
public:
    /// Takes any current section of a table on its own PID whose CRC_32, if it has one, is right.
    void on_section(const table_section &section);

    const clock_facts &facts() const { return readings; }

private:
    clock_facts readings;
};
