#include "mpeg_ts_overview/tables/tvct.h"

#include "mpeg12_ts/bit_reader.h"

std::vector<tvct_channel> read_tvct(const table_section &section)
{
    std::vector<tvct_channel> channels;
    bit_reader in(section.body, section.body_fence);

    const unsigned protocol_version = in.bits(8);
    if (protocol_version != 0) return channels;
    const unsigned num_channels_in_section = in.bits(8);
    for (unsigned i = 0; i < num_channels_in_section && in.has(32); ++i) {
        tvct_channel channel;
        for (uint16_t &unit : channel.short_name) unit = static_cast<uint16_t>(in.bits(16));
        in.bits(4); // reserved
        channel.major_channel_number = static_cast<uint16_t>(in.bits(10));
        channel.minor_channel_number = static_cast<uint16_t>(in.bits(10));
        channel.modulation_mode = static_cast<uint8_t>(in.bits(8));
        in.bits(32); // carrier_frequency
        channel.channel_TSID = static_cast<uint16_t>(in.bits(16));
        channel.program_number = static_cast<uint16_t>(in.bits(16));
        channel.ETM_location = static_cast<uint8_t>(in.bits(2));
        channel.access_controlled = in.bits(1) != 0;
        channel.hidden = in.bits(1) != 0;
        in.bits(2); // reserved; in the CVCT path_select and out_of_band
        channel.hide_guide = in.bits(1) != 0;
        in.bits(3); // reserved
        channel.service_type = static_cast<uint8_t>(in.bits(6));
        channel.source_id = static_cast<uint16_t>(in.bits(16));
        in.bits(6); // reserved
        const unsigned descriptors_length = in.bits(10);
        const std::optional<byte_range> descriptors = take_range(in, descriptors_length);
        if (!descriptors) break;
        channel.descriptors = *descriptors;
        channels.push_back(channel);
    }
    return channels;
}
