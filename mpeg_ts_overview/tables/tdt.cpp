#include "mpeg_ts_overview/tables/tdt.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_overview/tables/dvb_time.h"

std::optional<int64_t> read_tdt(const table_section &section)
{
    bit_reader in(section.body, section.body_fence);

    if (!in.has(5)) return std::nullopt;
    return read_utc_time(in);
}
