// The sections of one table: a PID, a table_id, an extension.
#pragma once

#include "mpeg_ts_overview/model/extent.h"
#include "mpeg_ts_overview/model/moment.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

/// Small, because a recording may have 32 of them of each of 65536 tables.
struct table_version {
    uint64_t version : 8;       ///< 0 to 31
    uint64_t first_packet : 56; ///< index
    int64_t first_ticks;        ///< 27 MHz, or no_ticks
    static constexpr int64_t no_ticks = std::numeric_limits<int64_t>::min();

    table_version(uint8_t version_number, const moment &first)
        : version(version_number), first_packet(first.packet & 0xFFFFFFFFFFFFFF),
          first_ticks(first.ticks.value_or(no_ticks))
    {
    }
};

struct table_facts {
    uint16_t pid = 0;
    uint8_t table_id = 0;
    std::optional<uint16_t> table_id_extension; ///< none of a short section
    std::optional<uint16_t> transport_stream_id;
    std::optional<uint16_t> original_network_id;
    std::optional<uint32_t> ETM_id;
    std::string name;
    uint64_t sections = 0;
    extent interval_ticks; ///< between arrivals of the same section_number, 27 MHz
    std::vector<table_version> versions;
    uint64_t changed_under_same_version = 0;
};

struct tables_facts {
    std::vector<table_facts> rows; ///< in order of first arrival
    uint64_t not_kept = 0;
};
