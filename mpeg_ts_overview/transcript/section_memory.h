// What each table said last, section by section: to know a repetition without looking into it.
#pragma once

#include "mpeg_ts_overview/tables/flat_map.h"
#include "mpeg_ts_overview/tables/section.h"

#include <compare>
#include <cstddef>
#include <cstdint>

constexpr size_t section_memory_limit = 262144;

/// The last reception of one section of a table.
struct section_record {
    uint64_t fingerprint = 0; ///< of its bytes
    uint32_t text = 0;        ///< the number of what was printed for it
};

/// Tells the bytes of sections of one table apart: by size and CRC_32, where there is one.
uint64_t fingerprint_of(const table_section &section);

class section_memory {
public:
    /// The record of the same section_number of the same table, or null when none was added. Records move
    /// when one is added.
    section_record *find(const table_section &section);

    /// Fetches the record of a section that comes soon.
    void fetch(const table_section &section) const { records.fetch(key_of(section)); }

    /// The record, added where there is none; null when there is no room.
    section_record *find_or_add(const table_section &section);

private:
    /// A table is what differs in one of these, EN 300 468 5.1.1 and ATSC A/65 6.
    struct key {
        uint64_t pid_table_and_section = 0; ///< PID, table_id, extension, number, current or next
        uint32_t identifiers = 0;           ///< stream and network identifiers in the body, or ETM_id

        auto operator<=>(const key &) const = default;
    };
    struct key_hash {
        size_t operator()(const key &of) const;
    };
    static key key_of(const table_section &section);

    flat_map<key, section_record, key_hash> records;
};
