#include "mpeg_ts_overview/tables/sdt.h"

#include "mpeg12_ts/bit_reader.h"

std::optional<sdt> read_sdt(const table_section &section)
{
    sdt description;
    bit_reader in(section.body, section.body_fence);

    if (!in.has(3)) return std::nullopt;
    description.transport_stream_id = section.header.table_id_extension;
    description.original_network_id = static_cast<uint16_t>(in.bits(16));
    in.bits(8); // reserved_future_use

    while (in.has(5)) {
        sdt_service service;
        service.service_id = static_cast<uint16_t>(in.bits(16));
        in.bits(6); // reserved_future_use
        service.EIT_schedule_flag = in.bits(1) != 0;
        service.EIT_present_following_flag = in.bits(1) != 0;
        service.running_status = static_cast<uint8_t>(in.bits(3));
        service.free_CA_mode = in.bits(1) != 0;
        const unsigned descriptors_loop_length = in.bits(12);
        const std::optional<byte_range> descriptors = take_range(in, descriptors_loop_length);
        if (!descriptors) break;
        service.descriptors = *descriptors;
        description.services.push_back(service);
    }
    return description;
}
