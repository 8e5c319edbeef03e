// Sections of service information and of PSIP, for those who read them.
#pragma once

#include "tests/support/stream_builder.h"

#include <string_view>
#include <vector>

/// A text behind a byte that says how long it is.
inline bytes counted_text(std::string_view text)
{
    return join({big_endian(text.size(), 1), text_bytes(text)});
}

/// Bytes behind four reserved bits and 12 bits that say how many.
inline bytes counted_loop(const bytes &loop, unsigned first_bits = 0xF)
{
    return join({big_endian(first_bits << 12 | loop.size(), 2), loop});
}

inline bytes service_descriptor(unsigned service_type, std::string_view provider, std::string_view name)
{
    return descriptor(0x48, join({big_endian(service_type, 1), counted_text(provider), counted_text(name)}));
}

/// A service of an SDT with the running status, 0 to 7.
inline bytes sdt_entry(unsigned service_id, const bytes &descriptors, unsigned running_status = 4,
                       unsigned free_CA_mode = 0)
{
    return join({big_endian(service_id, 2), hex("FC"),
                 counted_loop(descriptors, running_status << 1 | free_CA_mode)});
}

inline bytes sdt_section(const bytes &entries, section_fields fields = {}, unsigned table_id = 0x42)
{
    return long_section(table_id, 1, join({hex("2222 FF"), entries}), fields);
}

/// An actual NIT of network descriptors and transport streams.
inline bytes nit_section(const bytes &network_descriptors, const bytes &streams, unsigned table_id = 0x40)
{
    return long_section(table_id, 0x3333, join({counted_loop(network_descriptors), counted_loop(streams)}));
}

inline bytes nit_entry(unsigned transport_stream_id, unsigned original_network_id, const bytes &descriptors)
{
    return join(
        {big_endian(transport_stream_id, 2), big_endian(original_network_id, 2), counted_loop(descriptors)});
}

/// A short_event_descriptor.
inline bytes short_event(std::string_view title, std::string_view text = "",
                         std::string_view language = "eng")
{
    return descriptor(0x4D, join({text_bytes(language), counted_text(title), counted_text(text)}));
}

inline bytes extended_event(unsigned number, unsigned last, std::string_view text,
                            std::string_view language = "eng", const bytes &items = {})
{
    return descriptor(0x4E, join({big_endian(number << 4 | last, 1), text_bytes(language),
                                  big_endian(items.size(), 1), items, counted_text(text)}));
}

/// An event of an EIT; start is 40 bits, duration 24 bits, in hexadecimal digits.
inline bytes eit_entry(unsigned event_id, std::string_view start, std::string_view duration,
                       const bytes &descriptors = {})
{
    return join({big_endian(event_id, 2), hex(start), hex(duration), counted_loop(descriptors, 0x8)});
}

inline bytes eit_section(unsigned table_id, unsigned service_id, const bytes &entries,
                         section_fields fields = {})
{
    return long_section(table_id, service_id, join({hex("0001 2222 00 5F"), entries}), fields);
}

/// A multiple_string_structure of one string in UTF-16.
inline bytes multiple_string(std::string_view ascii, std::string_view language = "eng")
{
    bytes units;
    for (const char letter : ascii) {
        units.push_back(0);
        units.push_back(static_cast<uint8_t>(letter));
    }
    return join({hex("01"), text_bytes(language), hex("01 00 3F"), big_endian(units.size(), 1), units});
}

inline bytes atsc_eit_entry(unsigned event_id, unsigned start_time, unsigned length_in_seconds,
                            const bytes &title)
{
    return join({big_endian(0xC000 | event_id, 2), big_endian(start_time, 4),
                 big_endian(0xD00000 | length_in_seconds, 3), big_endian(title.size(), 1), title,
                 hex("F000")});
}

inline bytes atsc_eit_section(unsigned source_id, const std::vector<bytes> &events,
                              section_fields fields = {})
{
    bytes body = join({hex("00"), big_endian(events.size(), 1)});
    for (const bytes &event : events) body = join({body, event});
    return long_section(0xCB, source_id, body, fields);
}

inline bytes ett_section(unsigned ETM_id, const bytes &text)
{
    return long_section(0xCC, 0, join({hex("00"), big_endian(ETM_id, 4), text}));
}

inline bytes stt_section(unsigned system_time, unsigned GPS_UTC_offset)
{
    return long_section(
        0xCD, 0, join({hex("00"), big_endian(system_time, 4), big_endian(GPS_UTC_offset, 1), hex("6000")}));
}

/// A channel of a TVCT or CVCT whose name is up to 7 ASCII letters.
inline bytes virtual_channel(std::string_view short_name, unsigned major, unsigned minor,
                             unsigned program_number, unsigned channel_TSID = 1, unsigned service_type = 2)
{
    bytes name;
    for (size_t i = 0; i < 7; ++i) {
        name.push_back(0);
        name.push_back(i < short_name.size() ? static_cast<uint8_t>(short_name[i]) : uint8_t{0});
    }
    const unsigned numbers = 0xFu << 28 | major << 18 | minor << 8 | 0x04;
    return join({name, big_endian(numbers, 4), hex("00000000"), big_endian(channel_TSID, 2),
                 big_endian(program_number, 2), big_endian(0x0DC0 | service_type, 2), hex("0007 FC00")});
}

inline bytes vct_section(const std::vector<bytes> &channels, unsigned table_id = 0xC8)
{
    bytes body = join({hex("00"), big_endian(channels.size(), 1)});
    for (const bytes &channel : channels) body = join({body, channel});
    return long_section(table_id, 1, join({body, hex("FC00")}));
}
