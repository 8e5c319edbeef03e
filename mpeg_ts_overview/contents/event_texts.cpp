#include "mpeg_ts_overview/contents/event_texts.h"

#include "mpeg_ts_overview/contents/utf8_text.h"
#include "mpeg_ts_overview/tables/descriptor_loop.h"

#include <array>
#include <optional>

namespace {

constexpr uint8_t short_event_descriptor = 0x4D;
constexpr uint8_t extended_event_descriptor = 0x4E;

/// What is there of length bytes.
byte_range take_text(bit_reader &in, size_t length)
{
    const std::optional<byte_range> whole = take_range(in, length);
    return whole ? *whole : take_rest(in);
}

std::string take_language(bit_reader &in)
{
    const byte_range code = take_text(in, 3);
    return latin_1_text(code.start, code.fence);
}

/// event_name and text, of the language that is returned.
std::string read_short_event(byte_range body, event_texts &event, dvb_text_converter &texts)
{
    bit_reader in = body.reader();
    std::string ISO_639_language_code = take_language(in);
    const unsigned event_name_length = in.bits(8);
    const byte_range event_name = take_text(in, event_name_length);
    const unsigned text_length = in.bits(8);
    const byte_range text = take_text(in, text_length);

    event.title = texts.text(event_name.start, event_name.fence);
    event.text = texts.text(text.start, text.fence);
    return ISO_639_language_code;
}

struct extended_event {
    unsigned descriptor_number = 0; ///< 0 to 15
    std::string language;
    byte_range text;
};

extended_event read_extended_event(byte_range body)
{
    extended_event event;
    bit_reader in = body.reader();

    event.descriptor_number = in.bits(4);
    in.bits(4); // last_descriptor_number
    event.language = take_language(in);
    const unsigned length_of_items = in.bits(8);
    take_text(in, length_of_items);
    const unsigned text_length = in.bits(8);
    event.text = take_text(in, text_length);
    return event;
}

} // namespace

event_texts read_event_texts(byte_range descriptors, dvb_text_converter &texts)
{
    event_texts event;
    std::optional<std::string> language;
    descriptor next;

    for (descriptor_loop loop(descriptors); !language && loop.next(next);)
        if (next.tag == short_event_descriptor) language = read_short_event(next.body, event, texts);

    std::array<byte_range, 16> parts = {};
    for (descriptor_loop loop(descriptors); loop.next(next);) {
        if (next.tag != extended_event_descriptor) continue;
        const extended_event part = read_extended_event(next.body);
        if (!language) language = part.language;
        if (part.language == *language) parts[part.descriptor_number] = part.text;
    }
    std::string extended;
    for (const byte_range &part : parts) extended += texts.text(part.start, part.fence);

    if (!event.text.empty() && !extended.empty()) event.text += '\n';
    event.text += extended;
    event.language = language.value_or("");
    return event;
}
