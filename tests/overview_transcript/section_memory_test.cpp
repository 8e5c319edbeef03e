#include "tests/support/stream_builder.h"
#include "tests/support/table_sections.h"

#include "mpeg_ts_overview/transcript/section_memory.h"

#include <gtest/gtest.h>

namespace {

/// True when both are the same section of the same table.
bool are_the_same(const bytes &first, const bytes &second, unsigned first_pid = 0x0012,
                  unsigned second_pid = 0x0012)
{
    section_memory memory;
    const offered_section one(first_pid, first, {});
    const offered_section two(second_pid, second, {});
    memory.find_or_add(*one);
    return memory.find(*two) != nullptr;
}

section_fields numbered(unsigned section_number, unsigned version_number = 0, unsigned current = 1)
{
    section_fields fields;
    fields.section_number = section_number;
    fields.last_section_number = 9;
    fields.version_number = version_number;
    fields.current_next_indicator = current;
    return fields;
}

const bytes body = hex("0001 0002 00 00 00 00");

uint64_t fingerprint(const bytes &data)
{
    const offered_section section(0x0012, data, {});
    return fingerprint_of(*section);
}

} // namespace

TEST(section_memory, another_version_is_the_same_section)
{
    EXPECT_TRUE(are_the_same(long_section(0x42, 1, body, numbered(0, 1)),
                             long_section(0x42, 1, body, numbered(0, 2))));
}

TEST(section_memory, a_table_is_told_by_pid_id_extension_and_number)
{
    const bytes section = long_section(0x40, 1, body, numbered(3));
    EXPECT_TRUE(are_the_same(section, section));
    EXPECT_FALSE(are_the_same(section, section, 0x0010, 0x0011));
    EXPECT_FALSE(are_the_same(section, long_section(0x41, 1, body, numbered(3))));
    EXPECT_FALSE(are_the_same(section, long_section(0x40, 2, body, numbered(3))));
    EXPECT_FALSE(are_the_same(section, long_section(0x40, 1, body, numbered(4))));
    EXPECT_FALSE(are_the_same(section, long_section(0x40, 1, body, numbered(3, 0, 0))));
}

TEST(section_memory, some_tables_have_identifiers_in_their_bodies)
{
    const bytes other_stream = hex("0003 0002 00 00 00 00");
    const bytes other_network = hex("0001 0003 00 00 00 00");
    const auto differ = [](unsigned table_id, const bytes &other) {
        return !are_the_same(long_section(table_id, 1, body), long_section(table_id, 1, other));
    };
    for (const unsigned event_information : {0x4Eu, 0x50u, 0x6Fu}) {
        EXPECT_TRUE(differ(event_information, other_stream));
        EXPECT_TRUE(differ(event_information, other_network));
        EXPECT_FALSE(differ(event_information, hex("0001 0002 00 00 00 01")));
    }
    EXPECT_TRUE(differ(0x46, other_stream));
    EXPECT_FALSE(differ(0x46, other_network));
    EXPECT_TRUE(differ(0xCC, hex("00 01 00 02 01 00 00 00")));
    EXPECT_FALSE(differ(0xCC, hex("01 01 00 02 00 00 00 00")));
    EXPECT_FALSE(differ(0x40, other_stream));
    EXPECT_TRUE(are_the_same(long_section(0x4E, 1, {}), long_section(0x4E, 1, hex("00"))));
}

TEST(section_memory, bytes_are_told_apart)
{
    EXPECT_EQ(fingerprint(long_section(0x42, 1, body)), fingerprint(long_section(0x42, 1, body)));
    EXPECT_NE(fingerprint(long_section(0x42, 1, body)), fingerprint(long_section(0x42, 1, hex("0001"))));
    EXPECT_NE(fingerprint(long_section(0x42, 1, body)),
              fingerprint(long_section(0x42, 1, body, numbered(0, 1))));
    EXPECT_NE(fingerprint(short_section(0x70, hex("C079124500"))),
              fingerprint(short_section(0x70, hex("C079124501"))));
    EXPECT_EQ(fingerprint(short_section(0x70, hex("C079124500"))),
              fingerprint(short_section(0x70, hex("C079124500"))));
}

TEST(section_memory, there_is_room_for_so_many)
{
    section_memory memory;
    const offered_section section(0x0012, long_section(0x42, 0, {}), {});
    table_section numbered_section = *section;
    for (size_t i = 0; i < section_memory_limit; ++i) {
        numbered_section.header.table_id_extension = static_cast<uint16_t>(i);
        numbered_section.header.section_number = static_cast<uint8_t>(i >> 16);
        ASSERT_NE(memory.find_or_add(numbered_section), nullptr);
    }
    EXPECT_NE(memory.find_or_add(numbered_section), nullptr);
    numbered_section.header.section_number = 0xFF;
    EXPECT_EQ(memory.find_or_add(numbered_section), nullptr);
    EXPECT_EQ(memory.find(numbered_section), nullptr);
}
