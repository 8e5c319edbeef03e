// How often tables of one kind come: each section_number from 0 to the last_section_number is waited for by
// itself. A new version goes on with the clocks of the old one, and numbers above its last are forgotten.
#pragma once

#include "mpeg_ts_overview/tables/flat_map.h"
#include "mpeg_ts_overview/tables/repetition_watch.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/table_key.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// So many sections of the tables of one kind are watched, each section_number by itself; more of those of
/// which not every number is waited for.
constexpr uint64_t repetition_clock_limit = 16384;
constexpr uint64_t arrival_clock_limit = 131072;
/// They are those of so many tables.
constexpr size_t repetition_table_limit = 65536;

/// Which sections are waited for: those of a table's first version from the start on, further ones of a new
/// version from then on.
enum class awaited_sections {
    of_one_table,   ///< it has to be there, and is the same whatever its sections call it
    of_each_table,  ///< of each that is present
    that_have_come, ///< not every number up to the last has to be there
};

class table_repetition {
public:
    table_repetition(const time_stretches &times, awaited_sections which) : watch(times), awaited(which) {}

    void add_limit(std::optional<int64_t> ticks, bool is_tolerant) { watch.add_limit(ticks, is_tolerant); }

    /// A current section of a table of that kind arrives; the key tells tables apart.
    void on_section(const table_section &section, const table_key &of_table);

    /// Fetches the clock of a section that comes soon.
    void fetch(const table_section &section, const table_key &of_table);

    /// The recording ends. Where a table that has to be there never came, it is that thing.
    void finish(const moment &end, const watched_thing &missing);

    /// True when a section came.
    bool came() const { return !tables.empty(); }

    const repetition_limit &limit(size_t number) const { return watch.limit(number); }
    uint64_t sections_not_kept() const { return not_kept; }

private:
    /// Of one table; numbers stand by themselves, so that a search stays in one line of the cache.
    struct table_clocks {
        table_key key;
        std::vector<uint8_t> numbers;         ///< of the sections that are watched, in order
        std::vector<repetition_clock> clocks; ///< of each of them
        uint8_t first_version = 0;
        bool has_other_versions = false;

        /// The place of the section_number, or else of the next.
        size_t first_from(size_t section_number) const;
        bool holds(uint8_t section_number) const;
        void add(size_t first, size_t fence, const repetition_clock &clock);
    };

    table_clocks *known_table(const table_key &of_table);
    table_clocks *clocks_of(const table_section &section, const table_key &of_table);
    void forget_above(uint8_t last, table_clocks &table, const moment &at);

    repetition_watch watch;
    awaited_sections awaited;
    std::vector<table_clocks> tables;                        ///< in order of first arrival
    flat_map<table_key, uint32_t, table_key_hash> places_of; ///< in tables, unless there is only one
    uint64_t clock_count = 0;
    uint64_t not_kept = 0;
};
