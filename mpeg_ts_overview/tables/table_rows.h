// One row a table: how many sections, how often, which versions.
#pragma once

#include "mpeg_ts_overview/model/table_facts.h"
#include "mpeg_ts_overview/model/violation_log.h"
#include "mpeg_ts_overview/tables/flat_map.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/table_key.h"

#include <cstdint>
#include <optional>
#include <utility>

constexpr uint64_t table_row_limit = 65536;
constexpr uint64_t section_record_limit = 262144; ///< of one section_number each, of all rows together

class table_rows {
public:
    /// Takes every section whose CRC_32 is right. of_table is its key.
    void on_section(const table_section &section, const table_key &of_table);

    /// Fetches what is remembered of a section that comes soon. of_table is its key.
    void fetch(const table_section &section, const table_key &of_table);

    /// The rows so far, in order of first arrival.
    const tables_facts &facts() const { return tables; }

    /// Gives the rows away: there is room for them once.
    tables_facts take_facts() { return std::exchange(tables, {{}, tables.not_kept}); }

    /// Sections that differ though their version is that of the last one of the same number.
    const violation_log &changed_under_same_version() const { return changed; }

private:
    /// The last arrival of a section_number.
    struct section_record {
        std::optional<int64_t> ticks;
        int64_t stretch = -1;
        uint32_t crc_32 = 0;
        uint8_t version_number = 0;
    };

    static uint64_t number_of(uint32_t row, const table_section &section);
    void note_version(table_facts &row, const table_section &section);
    void compare(table_facts &row, const section_record &before, const table_section &section);

    tables_facts tables;
    violation_log changed;
    struct number_hash {
        size_t operator()(uint64_t number) const;
    };

    flat_map<table_key, uint32_t, table_key_hash> row_of; ///< its number, from 1 on
    /// By number of the row * 256 + section_number.
    flat_map<uint64_t, section_record, number_hash> records;
};
