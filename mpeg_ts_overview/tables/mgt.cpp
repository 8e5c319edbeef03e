#include "mpeg_ts_overview/tables/mgt.h"

#include "mpeg12_ts/bit_reader.h"

std::vector<mgt_table> read_mgt(const table_section &section)
{
    std::vector<mgt_table> tables;
    bit_reader in(section.body, section.body_fence);

    const unsigned protocol_version = in.bits(8);
    if (protocol_version != 0) return tables;
    const unsigned tables_defined = in.bits(16);
    for (unsigned i = 0; i < tables_defined && in.has(11); ++i) {
        mgt_table table;
        table.table_type = static_cast<uint16_t>(in.bits(16));
        in.bits(3); // reserved
        table.table_type_PID = static_cast<uint16_t>(in.bits(13));
        in.bits(3); // reserved
        table.table_type_version_number = static_cast<uint8_t>(in.bits(5));
        table.number_bytes = in.bits(32);
        in.bits(4); // reserved
        const unsigned table_type_descriptors_length = in.bits(12);
        const std::optional<byte_range> descriptors = take_range(in, table_type_descriptors_length);
        if (!descriptors) break;
        table.descriptors = *descriptors;
        tables.push_back(table);
    }
    return tables;
}
