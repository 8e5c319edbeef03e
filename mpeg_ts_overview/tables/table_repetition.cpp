#include "mpeg_ts_overview/tables/table_repetition.h"

#include "mpeg_ts_overview/tables/fetch_to_cache.h"

#include <algorithm>
#include <numeric>

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

size_t table_repetition::table_clocks::first_from(size_t section_number) const
{
    const auto place = std::lower_bound(numbers.begin(), numbers.end(), section_number);
    return static_cast<size_t>(place - numbers.begin());
}

bool table_repetition::table_clocks::holds(uint8_t section_number) const
{
    const size_t place = first_from(section_number);
    return place < numbers.size() && numbers[place] == section_number;
}

/// The numbers come before fence, and none of them is held.
void table_repetition::table_clocks::add(size_t first, size_t fence, const repetition_clock &clock)
{
    const auto place = static_cast<ptrdiff_t>(first_from(first));
    clocks.insert(clocks.begin() + place, fence - first, clock);
    const auto added = numbers.insert(numbers.begin() + place, fence - first, 0);
    std::iota(added, added + static_cast<ptrdiff_t>(fence - first), static_cast<uint8_t>(first));
}

void table_repetition::on_section(const table_section &section, const table_key &of_table)
{
    const uint8_t number = section.header.section_number;

    table_clocks *const table = clocks_of(section, of_table);
    if (table == nullptr) return;
    forget_above(last_of(section), *table, section.at);
    const size_t place = table->first_from(number);
    if (place == table->numbers.size() || table->numbers[place] != number) return;
    watch.arrive(table->clocks[place], section.at, thing_of(table->key, number));
}

void table_repetition::fetch(const table_section &section, const table_key &of_table)
{
    const table_clocks *const table = known_table(of_table);
    if (table == nullptr) return;
    const size_t place = table->first_from(section.header.section_number);
    if (place < table->clocks.size()) fetch_to_cache(table->clocks[place]);
}

/// The table, or null when none of its sections came.
table_repetition::table_clocks *table_repetition::known_table(const table_key &of_table)
{
    if (awaited == awaited_sections::of_one_table) return tables.empty() ? nullptr : &tables.front();
    const uint32_t *const place = places_of.find(of_table);
    return place != nullptr ? &tables[*place] : nullptr;
}

/// The clocks of a table, among them those of all its sections that are waited for; null when there is no
/// room.
table_repetition::table_clocks *table_repetition::clocks_of(const table_section &section,
                                                            const table_key &of_table)
{
    table_clocks *table = known_table(of_table);
    const bool is_new = table == nullptr;
    const uint8_t version = section.header.version_number;
    if (!is_new) table->has_other_versions |= version != table->first_version;
    // Of a table all of whose numbers are waited for, those from 0 on are held.
    const bool only_arrivals = awaited == awaited_sections::that_have_come;
    size_t first = is_new ? 0 : table->numbers.size();
    size_t fence = last_of(section) + size_t{1};
    if (only_arrivals) {
        const uint8_t number = section.header.section_number;
        first = number;
        fence = first + (!is_new && table->holds(number) ? 0 : 1);
    }
    if (first >= fence) return table;
    const uint64_t limit = only_arrivals ? arrival_clock_limit : repetition_clock_limit;
    if (clock_count + (fence - first) > limit || (is_new && tables.size() == repetition_table_limit)) {
        ++not_kept;
        return table;
    }

    clock_count += fence - first;
    if (is_new) {
        places_of[of_table] = static_cast<uint32_t>(tables.size());
        table = &tables.emplace_back();
        table->key = of_table;
        table->first_version = version;
    }
    // Further numbers of a new version are waited for from now on.
    const bool from_the_start = is_new || (only_arrivals && !table->has_other_versions);
    table->add(first, fence, from_the_start ? repetition_clock{} : watch.started(section.at));
    return table;
}

void table_repetition::forget_above(uint8_t last, table_clocks &table, const moment &at)
{
    if (table.numbers.empty() || table.numbers.back() <= last) return;
    const size_t kept = table.first_from(last + size_t{1});
    for (size_t gone = kept; gone < table.numbers.size(); ++gone) {
        watch.end(table.clocks[gone], at, thing_of(table.key, table.numbers[gone]));
        --clock_count;
    }
    table.numbers.resize(kept);
    table.clocks.resize(kept);
}

void table_repetition::finish(const moment &end, const watched_thing &missing)
{
    if (tables.empty() && awaited == awaited_sections::of_one_table) watch.end_absent({}, end, missing);
    std::sort(tables.begin(), tables.end(),
              [](const table_clocks &a, const table_clocks &b) { return a.key < b.key; });
    for (table_clocks &table : tables)
        for (size_t i = 0; i < table.numbers.size(); ++i)
            watch.end(table.clocks[i], end, thing_of(table.key, table.numbers[i]));
}
