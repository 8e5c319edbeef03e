// How often the tables of ATSC A/65 come, 7.1.
#pragma once

#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/table_repetition.h"

#include <cstdint>
#include <optional>

class psip_watch {
public:
    explicit psip_watch(const time_stretches &times);

    /// Takes current PSIP sections on their own PIDs, whose CRC_32 is right.
    void on_section(const table_section &section, const table_key &of_table);

    /// The recording ends.
    void finish(const moment &end);

    // After the end. These have to be there.
    const table_repetition &mgt() const { return mgts; }
    const table_repetition &tvct() const { return tvcts; }
    const table_repetition &stt() const { return stts; }
    /// Where it is present.
    const table_repetition &rrt() const { return rrts; }
    /// Without a limit.
    const table_repetition &eit_0() const { return eits; }

    uint64_t not_kept() const { return rrts.sections_not_kept() + eits.sections_not_kept(); }

private:
    table_repetition mgts;
    table_repetition tvcts;
    table_repetition stts;
    table_repetition rrts;
    table_repetition eits;
    std::optional<uint16_t> eit_0_pid; ///< as the last MGT says
};
