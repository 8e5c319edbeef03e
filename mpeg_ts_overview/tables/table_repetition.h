// How often tables of one kind come: each section_number from 0 to the last_section_number is waited for by
// itself. A new version goes on with the clocks of the old one, and numbers above its last are forgotten.
#pragma once

#include "mpeg_ts_overview/tables/repetition_watch.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/table_key.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

/// So many sections of the tables of one kind are watched, each section_number by itself.
constexpr uint64_t repetition_clock_limit = 262144;

/// Since when a section is waited for.
enum class wait_begins {
    with_the_recording,  ///< the table has to be there
    with_the_table,      ///< from the first section of the table on
    with_its_own_arrival ///< not every number up to the last is there
};

class table_repetition {
public:
    table_repetition(const time_stretches &times, wait_begins since) : watch(times), begins(since) {}

    void add_limit(std::optional<int64_t> ticks, bool is_tolerant) { watch.add_limit(ticks, is_tolerant); }

    /// A current section of a table of that kind arrives. The key tells tables apart, but for one that has to
    /// be there: of that kind there is one, whatever its sections call it.
    void on_section(const table_section &section, const table_key &of_table);

    /// The recording ends; awaited is what never came where the wait begins with the recording.
    void finish(const moment &end, const watched_thing &awaited);

    /// True when a section came.
    bool came() const { return !tables.empty(); }

    const repetition_limit &limit(size_t number) const { return watch.limit(number); }
    uint64_t sections_not_kept() const { return not_kept; }

private:
    using table_clocks = std::map<uint8_t, repetition_clock>; ///< by section_number

    table_clocks *clocks_of(const table_section &section, const table_key &of_table);
    bool make_room(table_clocks &clocks, const table_section &section);
    void forget_above(uint8_t last, const table_key &of_table, table_clocks &clocks, const moment &at);

    repetition_watch watch;
    wait_begins begins;
    std::map<table_key, table_clocks> tables;
    uint64_t clock_count = 0;
    uint64_t not_kept = 0;
};
