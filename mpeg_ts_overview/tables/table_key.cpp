#include "mpeg_ts_overview/tables/table_key.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_overview/tables/eit.h"
#include "mpeg_ts_overview/tables/flat_map.h"
#include "mpeg_ts_overview/tables/psip.h"
#include "mpeg_ts_overview/tables/sdt.h"

table_key key_of(const table_section &section)
{
    table_key key;
    const uint8_t table_id = section.header.table_id;
    bit_reader in(section.body, section.body_fence);

    key.pid = section.pid;
    key.table_id = table_id;
    if (!is_long(section)) return key;
    key.table_id_extension = section.header.table_id_extension;
    if (is_eit(table_id) && in.has(4)) {
        key.transport_stream_id = static_cast<uint16_t>(in.bits(16));
        key.original_network_id = static_cast<uint16_t>(in.bits(16));
    } else if ((table_id == sdt_actual_table_id || table_id == sdt_other_table_id) && in.has(2)) {
        key.original_network_id = static_cast<uint16_t>(in.bits(16));
    } else if (table_id == ett_table_id && in.has(5)) {
        in.bits(8); // protocol_version
        key.ETM_id = in.bits(32);
    }
    return key;
}

size_t table_key_hash::operator()(const table_key &key) const
{
    const uint64_t table =
        uint64_t{key.pid} << 24 | uint64_t{key.table_id} << 16 | key.table_id_extension.value_or(0);
    const uint64_t stream =
        uint64_t{key.transport_stream_id.value_or(0)} << 16 | key.original_network_id.value_or(0);
    return spread_bits(table ^ uint64_t{spread_bits(stream ^ key.ETM_id.value_or(0))} << 7);
}
