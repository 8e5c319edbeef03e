#include "bench/event_text.h"

#include "tests/support/stream_builder.h"

bytes counted(const std::string &text)
{
    const bytes characters = text_bytes(text.c_str());
    return join({big_endian(characters.size(), 1), characters});
}

std::string story_of(unsigned number, unsigned sentences)
{
    std::string story;
    for (unsigned i = 0; i < sentences; ++i)
        story += "What happens in event " + std::to_string(i * number) + " is told in a sentence or two. ";
    return story;
}

bytes event_descriptors(const std::string &name, const std::string &story)
{
    constexpr size_t longest_part = 245;
    bytes loop = descriptor(0x4D, join({text_bytes("eng"), counted(name), counted("")}));
    const auto last_part = static_cast<unsigned>(story.size() / longest_part);

    for (unsigned part = 0; part <= last_part; ++part)
        loop = join(
            {loop, descriptor(0x4E, join({big_endian(part << 4 | last_part, 1), text_bytes("eng"), hex("00"),
                                          counted(story.substr(part * longest_part, longest_part))}))});
    loop = join({loop, descriptor(0x55, hex("47425204")), descriptor(0x54, hex("1400"))});
    for (const char *const component : {"F50B01", "F4C202", "F31405"})
        loop = join({loop, descriptor(0x50, join({hex(component), text_bytes("eng")}))});
    return loop;
}
