#include "mpeg_ts_overview/contents/services.h"

#include "mpeg_ts_overview/contents/service_types.h"
#include "mpeg_ts_overview/contents/utf8_text.h"
#include "mpeg_ts_overview/tables/descriptor_loop.h"
#include "mpeg_ts_overview/tables/psip.h"

#include <algorithm>

namespace {

constexpr uint8_t service_descriptor = 0x48;

/// A/65 6.3.2: a major_channel_number of 1111 11xxxx makes both one number of 14 bits.
std::string channel_text(const tvct_channel &channel, bool is_cable)
{
    const unsigned major = channel.major_channel_number;
    const unsigned minor = channel.minor_channel_number;
    if (is_cable && major >> 4 == 0x3F) return std::to_string((major & 0xF) << 10 | minor);
    return std::to_string(major) + "." + std::to_string(minor);
}

std::string short_name_text(const tvct_channel &channel)
{
    const auto fence = std::find(channel.short_name.begin(), channel.short_name.end(), uint16_t{0});
    std::string units;
    std::for_each(channel.short_name.begin(), fence, [&](uint16_t unit) {
        units += static_cast<char>(unit >> 8);
        units += static_cast<char>(unit & 0xFF);
    });
    const auto *const start = reinterpret_cast<const uint8_t *>(units.data());
    return utf16_text(start, start + units.size());
}

template <typename value>
void replace(std::optional<value> &what, const std::optional<value> &by)
{
    if (by) what = by;
}

} // namespace

void service_list::on_section(const table_section &section)
{
    switch (section.header.table_id) {
    case sdt_actual_table_id:
        return on_sdt(section);
    case tvct_table_id:
    case cvct_table_id:
        return on_virtual_channels(section);
    default:
        break;
    }
}

void service_list::on_sdt(const table_section &section)
{
    const std::optional<sdt> table = read_sdt(section);
    if (!table) return;
    network_id = table->original_network_id;
    for (const sdt_service &description : table->services) {
        service *const known = changed(described, description.service_id, section);
        if (known == nullptr) continue;
        *known = service_of(description);
        known->crc_32 = section.crc_32;
    }
}

service_list::service service_list::service_of(const sdt_service &description)
{
    service result;
    result.running_status = description.running_status;
    result.free_CA_mode = description.free_CA_mode ? 1 : 0;

    descriptor_loop descriptors(description.descriptors);
    descriptor next;
    while (descriptors.next(next)) {
        bit_reader in = next.body.reader();
        if (next.tag != service_descriptor || !in.has(1)) continue;
        const auto service_type = static_cast<uint8_t>(in.bits(8));
        result.service_type = {service_type, dvb_service_type_name(service_type)};
        const unsigned service_provider_name_length = in.bits(8);
        const std::optional<byte_range> provider = take_range(in, service_provider_name_length);
        if (!provider) break;
        result.provider_name = texts.text(provider->start, provider->fence);
        const unsigned service_name_length = in.bits(8);
        const std::optional<byte_range> name = take_range(in, service_name_length);
        if (!name) break;
        result.service_name = texts.text(name->start, name->fence);
        break;
    }
    return result;
}

void service_list::on_virtual_channels(const table_section &section)
{
    const bool is_cable = section.header.table_id == cvct_table_id;
    for (const tvct_channel &channel : read_tvct(section)) {
        // The table lists channels of other transport streams too; it names its own.
        if (channel.channel_TSID != section.header.table_id_extension) continue;
        service *const known = changed(virtual_channels, channel.program_number, section);
        if (known == nullptr) continue;
        known->crc_32 = section.crc_32;
        known->service_name = short_name_text(channel);
        known->channel = channel_text(channel, is_cable);
        known->service_type = {channel.service_type, atsc_service_type_name(channel.service_type)};
    }
}

service_list::service *service_list::changed(services &among, uint16_t number, const table_section &section)
{
    const auto known = among.find(number);
    if (known != among.end()) return known->second.crc_32 == section.crc_32 ? nullptr : &known->second;
    if (among.size() < service_limit) return &among[number];
    ++dropped;
    return nullptr;
}

void service_list::add_to(program_facts &program) const
{
    for (const services *among : {&described, &virtual_channels}) {
        const auto known = among->find(program.number);
        if (known == among->end()) continue;
        replace(program.service_name, known->second.service_name);
        replace(program.provider_name, known->second.provider_name);
        replace(program.service_type, known->second.service_type);
        replace(program.channel, known->second.channel);
        replace(program.running_status, known->second.running_status);
        replace(program.free_CA_mode, known->second.free_CA_mode);
    }
}
