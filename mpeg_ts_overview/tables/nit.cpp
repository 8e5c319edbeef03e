#include "mpeg_ts_overview/tables/nit.h"

#include "mpeg12_ts/bit_reader.h"

std::optional<nit> read_nit(const table_section &section)
{
    nit network;
    bit_reader in(section.body, section.body_fence);

    network.network_id = section.header.table_id_extension;
    in.bits(4); // reserved_future_use
    const unsigned network_descriptors_length = in.bits(12);
    const std::optional<byte_range> network_descriptors = take_range(in, network_descriptors_length);
    if (!network_descriptors) return std::nullopt;
    network.network_descriptors = *network_descriptors;
    in.bits(4);  // reserved_future_use
    in.bits(12); // transport_stream_loop_length: up to the CRC_32

    while (in.has(6)) {
        nit_transport_stream stream;
        stream.transport_stream_id = static_cast<uint16_t>(in.bits(16));
        stream.original_network_id = static_cast<uint16_t>(in.bits(16));
        in.bits(4); // reserved_future_use
        const unsigned transport_descriptors_length = in.bits(12);
        const std::optional<byte_range> descriptors = take_range(in, transport_descriptors_length);
        if (!descriptors) break;
        stream.transport_descriptors = *descriptors;
        network.transport_streams.push_back(stream);
    }
    return network;
}
