#include "mpeg_ts_overview/tables/eit.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_overview/tables/dvb_time.h"

std::optional<int64_t> eit_event::start_utc_s() const
{
    bit_reader in = start_time.reader();
    return read_utc_time(in);
}

std::optional<uint32_t> eit_event::duration_s() const
{
    bit_reader in = duration.reader();
    return read_bcd_duration(in);
}

std::optional<eit> read_eit(const table_section &section)
{
    eit information;
    bit_reader in(section.body, section.body_fence);

    if (!in.has(6)) return std::nullopt;
    information.service_id = section.header.table_id_extension;
    information.transport_stream_id = static_cast<uint16_t>(in.bits(16));
    information.original_network_id = static_cast<uint16_t>(in.bits(16));
    information.segment_last_section_number = static_cast<uint8_t>(in.bits(8));
    information.last_table_id = static_cast<uint8_t>(in.bits(8));

    information.events = take_rest(in);
    return information;
}

bool eit_event_loop::next(eit_event &found)
{
    if (!in.has(12)) return false;
    found.event_id = static_cast<uint16_t>(in.bits(16));
    found.start_time = *take_range(in, 5);
    found.duration = *take_range(in, 3);
    found.running_status = static_cast<uint8_t>(in.bits(3));
    found.free_CA_mode = in.bits(1) != 0;
    const unsigned descriptors_loop_length = in.bits(12);
    const std::optional<byte_range> descriptors = take_range(in, descriptors_loop_length);
    if (!descriptors) return false;
    found.descriptors = *descriptors;
    return true;
}
