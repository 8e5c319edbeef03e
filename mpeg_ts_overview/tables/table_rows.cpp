#include "mpeg_ts_overview/tables/table_rows.h"

#include "mpeg_ts_overview/tables/eit.h"
#include "mpeg_ts_overview/tables/fetch_to_cache.h"
#include "mpeg_ts_overview/tables/log_violation.h"
#include "mpeg_ts_overview/tables/table_name.h"

#include <algorithm>

namespace {

/// True for the tables whose versions tell of changes.
bool must_change_version(uint8_t table_id)
{
    return table_id <= 0x02 || (table_id >= 0x40 && table_id <= 0x42) || table_id == 0x46 ||
           table_id == 0x4A || is_eit(table_id) || (table_id >= 0xC7 && table_id <= 0xCB);
}

table_facts row_for(const table_key &key)
{
    table_facts row;
    row.pid = key.pid;
    row.table_id = key.table_id;
    row.table_id_extension = key.table_id_extension;
    row.transport_stream_id = key.transport_stream_id;
    row.original_network_id = key.original_network_id;
    row.ETM_id = key.ETM_id;
    row.name = table_name(key.table_id);
    return row;
}

} // namespace

size_t table_rows::number_hash::operator()(uint64_t number) const
{
    return spread_bits(number);
}

uint64_t table_rows::number_of(uint32_t row, const table_section &section)
{
    return uint64_t{row} * 256 + section.header.section_number;
}

void table_rows::on_section(const table_section &section, const table_key &of_table)
{
    const uint32_t *place = row_of.find(of_table);
    if (place == nullptr) {
        if (tables.rows.size() == table_row_limit) {
            ++tables.not_kept;
            return;
        }
        tables.rows.push_back(row_for(of_table));
        place = &(row_of[of_table] = static_cast<uint32_t>(tables.rows.size()));
    }
    table_facts &row = tables.rows[*place - 1];
    ++row.sections;
    if (!is_current(section)) return;

    const uint64_t number = number_of(*place, section);
    section_record *const record = records.find(number);
    // What the section's last arrival said is known.
    const bool may_be_new = record == nullptr || record->version_number != section.header.version_number;
    if (is_long(section) && may_be_new) note_version(row, section);
    const section_record now = {section.at.ticks, section.at.stretch, section.crc_32,
                                section.header.version_number};
    if (record != nullptr) {
        compare(row, *record, section);
        *record = now;
    } else if (records.size() == section_record_limit) {
        ++tables.not_kept;
    } else {
        records[number] = now;
    }
}

void table_rows::fetch(const table_section &section, const table_key &of_table)
{
    const uint32_t *const place = row_of.find(of_table);
    if (place == nullptr) return;
    records.fetch(number_of(*place, section));
    fetch_to_cache(tables.rows[*place - 1].sections);
    fetch_to_cache(tables.rows[*place - 1].interval_ticks);
}

void table_rows::note_version(table_facts &row, const table_section &section)
{
    const uint8_t version = section.header.version_number;
    const auto is_it = [&](const table_version &known) { return known.version == version; };
    if (std::none_of(row.versions.begin(), row.versions.end(), is_it))
        row.versions.emplace_back(version, section.at);
}

void table_rows::compare(table_facts &row, const section_record &before, const table_section &section)
{
    moment last;
    last.ticks = before.ticks;
    last.stretch = before.stretch;
    if (const std::optional<int64_t> interval = interval_between(last, section.at))
        row.interval_ticks.add(*interval);
    if (!is_long(section) || !must_change_version(row.table_id)) return;
    if (section.header.version_number != before.version_number || section.crc_32 == before.crc_32) return;
    ++row.changed_under_same_version;
    log_violation(changed, section.at, section.pid,
                  [&] { return row.name + " changed under the same version"; });
}
