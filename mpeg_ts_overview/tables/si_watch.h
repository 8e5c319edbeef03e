// How often the tables of EN 300 468 come but for EIT of the actual stream, ETSI TR 101
// 290 3.1a, 3.2, 3.5a, 3.8.
#pragma once

#include "mpeg_ts_overview/model/limits.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/table_repetition.h"

#include <array>

class si_watch {
public:
    si_watch(const time_stretches &times, const limits &values);

    /// Takes current sections of DVB tables on their own PIDs, whose CRC_32 is right.
    void on_section(const table_section &section, const table_key &of_table);

    /// Fetches the clock of a section that comes soon.
    void fetch(const table_section &section, const table_key &of_table);

    /// The recording ends.
    void finish(const moment &end);

    // After the end. These have to be there.
    const table_repetition &nit() const { return nits; }
    const table_repetition &sdt() const { return sdts; }
    const table_repetition &tdt() const { return tdts; }

    /// Where they are present: BAT, NIT and SDT of others, EIT present and following of others, TOT.
    std::array<const table_repetition *, 5> optional_tables() const
    {
        return {&bats, &other_nits, &other_sdts, &other_eits, &tots};
    }
    /// EIT schedule, without a limit unless one is asked for.
    const table_repetition &eit_schedule() const { return schedules; }

    uint64_t not_kept() const;

private:
    table_repetition *watch_of(uint8_t table_id);

    table_repetition nits;
    table_repetition sdts;
    table_repetition tdts;
    table_repetition bats;
    table_repetition other_nits;
    table_repetition other_sdts;
    table_repetition other_eits;
    table_repetition tots;
    table_repetition schedules;
};
