// Which standard a recording follows, told by the tables that only one of them has.
#pragma once

#include "mpeg_ts_overview/model/pid_array.h"
#include "mpeg_ts_overview/tables/pid_directory.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <optional>

class standard_detection {
public:
    /// atsc: whether it is ATSC, where somebody knows.
    standard_detection(const pid_directory &uses, std::optional<bool> atsc) : directory(uses), told_atsc(atsc)
    {
    }

    /// Takes every section whose CRC_32 is right, once the directory knows what it says.
    void on_section(const table_section &section);

    /// "ATSC", "ISDB", "partial", "DVB" or "MPEG".
    const char *name() const;

private:
    void look_at_network(const table_section &section);
    void look_at_map(const table_section &section);

    const pid_directory &directory;
    std::optional<bool> told_atsc;
    bool is_atsc = false;
    bool is_isdb = false;
    bool is_partial = false;
    bool is_dvb = false;
    pid_array<std::optional<uint32_t>> last_map; ///< CRC_32 of the PMT that was looked at last
};
