#include "mpeg_ts_overview/tables/table_repetition.h"

#include <algorithm>
#include <map>

namespace {

watched_thing thing_of(const table_key &key, uint8_t section_number)
{
    watched_thing thing;
    thing.pid = key.pid;
    thing.table_id = key.table_id;
    thing.extension = key.table_id_extension;
    if (key.table_id_extension) thing.section_number = section_number;
    return thing;
}

uint8_t last_of(const table_section &section)
{
    return std::max(section.header.section_number, section.header.last_section_number);
}

} // namespace

void table_repetition::on_section(const table_section &section, const table_key &of_table)
{
    const bool is_the_only_one = awaited == awaited_sections::of_one_table && !tables.empty();
    const table_key &key = is_the_only_one ? tables.begin()->first : of_table;
    const uint8_t number = section.header.section_number;

    table_clocks *const clocks = clocks_of(section, key);
    if (clocks == nullptr) return;
    forget_above(last_of(section), key, *clocks, section.at);
    const auto place = first_from(*clocks, number);
    if (place != clocks->end() && place->section_number == number)
        watch.arrive(place->clock, section.at, thing_of(key, number));
}

/// The clock of the section_number, or else of the next.
table_repetition::table_clocks::iterator table_repetition::first_from(table_clocks &clocks,
                                                                      size_t section_number)
{
    return std::lower_bound(
        clocks.begin(), clocks.end(), section_number,
        [](const numbered_clock &one, size_t number) { return one.section_number < number; });
}

/// The clocks of a table, among them those of all its sections that are waited for; null when there is no
/// room.
table_repetition::table_clocks *table_repetition::clocks_of(const table_section &section,
                                                            const table_key &key)
{
    const auto known = tables.find(key);
    const bool is_new = known == tables.end();
    const uint8_t version = section.header.version_number;
    if (!is_new) known->second.has_other_versions |= version != known->second.first_version;
    // Of a table all of whose numbers are waited for, those from 0 on are held.
    size_t first = is_new ? 0 : known->second.size();
    size_t fence = last_of(section) + size_t{1};
    if (awaited == awaited_sections::that_have_come) {
        first = section.header.section_number;
        const auto here = is_new ? table_clocks::iterator() : first_from(known->second, first);
        const bool is_held = !is_new && here != known->second.end() && here->section_number == first;
        fence = first + (is_held ? 0 : 1);
    }
    if (first >= fence) return &known->second;
    const bool only_arrivals = awaited == awaited_sections::that_have_come;
    const uint64_t limit = only_arrivals ? arrival_clock_limit : repetition_clock_limit;
    if (clock_count + (fence - first) > limit || (is_new && tables.size() == repetition_table_limit)) {
        ++not_kept;
        return is_new ? nullptr : &known->second;
    }

    clock_count += fence - first;
    table_clocks &clocks = tables[key];
    if (is_new) clocks.first_version = version;
    // Further numbers of a new version are waited for from now on.
    const bool from_the_start = is_new || (only_arrivals && !clocks.has_other_versions);
    for (size_t number = first; number < fence; ++number)
        clocks.insert(
            first_from(clocks, number),
            {static_cast<uint8_t>(number), from_the_start ? repetition_clock{} : watch.started(section.at)});
    return &clocks;
}

void table_repetition::forget_above(uint8_t last, const table_key &key, table_clocks &clocks,
                                    const moment &at)
{
    const auto above = first_from(clocks, last + size_t{1});
    for (auto gone = above; gone != clocks.end(); ++gone) {
        watch.end(gone->clock, at, thing_of(key, gone->section_number));
        --clock_count;
    }
    clocks.erase(above, clocks.end());
}

void table_repetition::finish(const moment &end, const watched_thing &missing)
{
    if (tables.empty() && awaited == awaited_sections::of_one_table) watch.end_absent({}, end, missing);
    std::map<table_key, table_clocks *> in_order;
    for (auto &[key, clocks] : tables) in_order.emplace(key, &clocks);
    for (const auto &[key, clocks] : in_order)
        for (numbered_clock &one : *clocks) watch.end(one.clock, end, thing_of(key, one.section_number));
}
