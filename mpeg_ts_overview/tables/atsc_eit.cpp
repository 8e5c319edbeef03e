#include "mpeg_ts_overview/tables/atsc_eit.h"

#include "mpeg12_ts/bit_reader.h"

std::vector<atsc_event> read_atsc_eit(const table_section &section)
{
    std::vector<atsc_event> events;
    bit_reader in(section.body, section.body_fence);

    const unsigned protocol_version = in.bits(8);
    if (protocol_version != 0) return events;
    const unsigned num_events_in_section = in.bits(8);
    for (unsigned i = 0; i < num_events_in_section && in.has(12); ++i) {
        atsc_event event;
        in.bits(2); // reserved
        event.event_id = static_cast<uint16_t>(in.bits(14));
        event.start_time = in.bits(32);
        in.bits(2); // reserved
        event.ETM_location = static_cast<uint8_t>(in.bits(2));
        event.length_in_seconds = in.bits(20);
        const unsigned title_length = in.bits(8);
        const std::optional<byte_range> title_text = take_range(in, title_length);
        if (!title_text || !in.has(2)) break;
        event.title_text = *title_text;
        in.bits(4); // reserved
        const unsigned descriptors_length = in.bits(12);
        const std::optional<byte_range> descriptors = take_range(in, descriptors_length);
        if (!descriptors) break;
        event.descriptors = *descriptors;
        events.push_back(event);
    }
    return events;
}

std::optional<ett> read_ett(const table_section &section)
{
    ett text;
    bit_reader in(section.body, section.body_fence);

    if (!in.has(5)) return std::nullopt;
    const unsigned protocol_version = in.bits(8);
    if (protocol_version != 0) return std::nullopt;
    text.ETM_id = in.bits(32);
    text.extended_text_message = take_rest(in);
    return text;
}
