#include "mpeg_ts_overview/contents/network.h"

#include "mpeg_ts_overview/tables/descriptor_loop.h"

namespace {

constexpr uint8_t network_name_descriptor = 0x40;
constexpr uint8_t logical_channel_descriptor = 0x83;

uint64_t key_of(uint16_t original_network_id, uint16_t transport_stream_id, uint16_t service_id)
{
    return uint64_t{original_network_id} << 32 | uint64_t{transport_stream_id} << 16 | service_id;
}

} // namespace

void network_information::on_section(const table_section &section)
{
    if (section.header.table_id != nit_actual_table_id) return;
    const std::optional<nit> network = read_nit(section);
    if (!network) return;
    look_at_name(network->network_descriptors);
    for (const nit_transport_stream &stream : network->transport_streams) {
        networks[stream.transport_stream_id] = stream.original_network_id;
        look_at_channels(stream);
    }
}

void network_information::look_at_name(byte_range network_descriptors)
{
    descriptor_loop descriptors(network_descriptors);
    descriptor next;
    while (descriptors.next(next))
        if (next.tag == network_name_descriptor) name = texts.text(next.body.start, next.body.fence);
}

void network_information::look_at_channels(const nit_transport_stream &stream)
{
    descriptor_loop descriptors(stream.transport_descriptors);
    descriptor next;
    while (descriptors.next(next)) {
        if (next.tag != logical_channel_descriptor) continue;
        bit_reader in = next.body.reader();
        while (in.has(4)) {
            const auto service_id = static_cast<uint16_t>(in.bits(16));
            in.bits(1); // visible_service_flag
            in.bits(5); // reserved
            const auto logical_channel_number = static_cast<uint16_t>(in.bits(10));
            const uint64_t key = key_of(stream.original_network_id, stream.transport_stream_id, service_id);
            if (channels.size() < channel_number_limit || channels.count(key) != 0)
                channels[key] = logical_channel_number;
            else
                ++dropped;
        }
    }
}

std::optional<uint16_t> network_information::network_of(uint16_t transport_stream_id) const
{
    const auto known = networks.find(transport_stream_id);
    if (known == networks.end()) return std::nullopt;
    return known->second;
}

std::optional<unsigned> network_information::channel_of(uint16_t original_network_id,
                                                        uint16_t transport_stream_id,
                                                        uint16_t service_id) const
{
    const auto known = channels.find(key_of(original_network_id, transport_stream_id, service_id));
    if (known == channels.end()) return std::nullopt;
    return known->second;
}
