#include "mpeg_ts_overview/tables/stt.h"

#include "mpeg12_ts/bit_reader.h"

std::optional<stt> read_stt(const table_section &section)
{
    stt time;
    bit_reader in(section.body, section.body_fence);

    if (!in.has(8)) return std::nullopt;
    const unsigned protocol_version = in.bits(8);
    if (protocol_version != 0) return std::nullopt;
    time.system_time = in.bits(32);
    time.GPS_UTC_offset = static_cast<uint8_t>(in.bits(8));
    in.bits(16); // daylight_saving
    return time;
}
