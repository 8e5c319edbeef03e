#include "mpeg_ts_overview/transcript/section_memory.h"

#include "mpeg12_ts/bytes.h"

namespace {

constexpr uint8_t service_description_actual = 0x42;
constexpr uint8_t service_description_other = 0x46;
constexpr uint8_t first_event_information = 0x4E;
constexpr uint8_t last_event_information = 0x6F;
constexpr uint8_t extended_text = 0xCC;

/// The fields of the body that belong to the name of the table.
uint32_t identifiers_in_body(const table_section &section)
{
    const uint8_t table_id = section.header.table_id;
    const auto size = section.body_fence - section.body;

    if (section.header.section_syntax_indicator == 0) return 0;
    if (table_id == service_description_actual || table_id == service_description_other)
        return size >= 2 ? big_endian_16(section.body) : 0; // original_network_id
    if (table_id >= first_event_information && table_id <= last_event_information)
        return size >= 4 ? big_endian_32(section.body) : 0; // transport_stream_id, original_network_id
    if (table_id == extended_text) return size >= 5 ? big_endian_32(section.body + 1) : 0; // ETM_id
    return 0;
}

/// FNV-1a.
uint64_t hash_of(const uint8_t *p, const uint8_t *fence)
{
    uint64_t hash = 0xCBF29CE484222325;
    for (; p < fence; ++p) hash = (hash ^ *p) * 0x100000001B3;
    return hash;
}

} // namespace

uint64_t fingerprint_of(const table_section &section)
{
    if (section.header.section_syntax_indicator == 0) return hash_of(section.start, section.fence);
    return uint64_t{section.header.section_length} << 32 | section.crc_32;
}

section_record *section_memory::find(const table_section &section)
{
    return records.find(key_of(section));
}

section_record *section_memory::find_or_add(const table_section &section)
{
    if (records.size() >= section_memory_limit) return find(section);
    return &records[key_of(section)];
}

section_memory::key section_memory::key_of(const table_section &section)
{
    const mpeg_ts_pat_main_header &header = section.header;
    const uint64_t table =
        uint64_t{section.pid} << 24 | uint64_t{header.table_id} << 16 | header.table_id_extension;
    return {table << 9 | uint64_t{header.section_number} << 1 | header.current_next_indicator,
            identifiers_in_body(section)};
}

size_t section_memory::key_hash::operator()(const key &of) const
{
    return spread_bits(of.pid_table_and_section ^ uint64_t{spread_bits(of.identifiers)} << 7);
}
