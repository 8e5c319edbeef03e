// What is not kept of a transcript, and that it is counted.
#include "tests/support/stream_builder.h"
#include "tests/support/table_sections.h"

#include "mpeg_ts_overview/transcript/transcript.h"

#include <gtest/gtest.h>

namespace {

/// A section of as many events as it has room for: some 70 KB of text. A faulty one ends in a descriptor that
/// is too long.
bytes many_events(unsigned service_id, bool faulty = false)
{
    bytes body = hex("0001 0002 00 50");
    for (unsigned i = 0; i < 330; ++i) body = join({body, hex("0007 C079124500 013000 0000")});
    if (faulty) body = join({body, hex("0007 C079124500 013000 0002 4D 05")});
    return long_section(0x50, service_id, body);
}

/// A section of as many services as it has room for: some 20 KB of text.
bytes many_services(unsigned service_id)
{
    bytes body = hex("0001 FF");
    for (unsigned i = 0; i < 800; ++i) body = join({body, big_endian(service_id, 2), hex("FF 8000")});
    return long_section(0x42, 1, body);
}

size_t size_of(const transcript_facts &facts, unsigned table_id)
{
    size_t size = 0;
    for (const transcript_entry &entry : facts.entries)
        if (entry.table_id == table_id) size += entry.lines.size();
    return size;
}

} // namespace

struct transcript_limits : testing::Test {
    transcript words;
    uint64_t packet = 0;

    void receive(unsigned pid, const bytes &data)
    {
        const offered_section section(pid, data, at_packet(packet++));
        words.on_section(*section);
    }
};

TEST_F(transcript_limits, events_have_half_of_the_room)
{
    for (unsigned service_id = 0; service_id < 100; ++service_id) receive(0x0012, many_events(service_id));
    receive(0x0011, many_services(1));
    const transcript_facts facts = words.finish();
    EXPECT_LE(size_of(facts, 0x50), transcript_event_text_limit);
    EXPECT_GT(size_of(facts, 0x50), transcript_event_text_limit - 100000);
    EXPECT_GT(size_of(facts, 0x42), 0u);
    EXPECT_EQ(facts.entries.size() + facts.sections_not_kept, 101u);
}

TEST_F(transcript_limits, all_texts_have_so_much_room)
{
    for (unsigned service_id = 0; service_id < 250; ++service_id) receive(0x0011, many_services(service_id));
    const transcript_facts facts = words.finish();
    EXPECT_LE(size_of(facts, 0x42), transcript_text_limit);
    EXPECT_GT(size_of(facts, 0x42), transcript_text_limit - 100000);
}

TEST_F(transcript_limits, repetitions_of_what_is_not_kept_are_counted)
{
    for (unsigned service_id = 0; service_id < 100; ++service_id) receive(0x0012, many_events(service_id));
    for (unsigned i = 0; i < 10; ++i) receive(0x0012, many_events(99));
    const transcript_facts facts = words.finish();
    EXPECT_EQ(facts.entries.size() + facts.sections_not_kept, 110u);
}

TEST_F(transcript_limits, faults_of_what_is_not_kept_are_counted_each_time)
{
    for (unsigned service_id = 0; service_id < 100; ++service_id) receive(0x0012, many_events(service_id));
    for (unsigned i = 0; i < 5; ++i) receive(0x0012, many_events(200, true));
    const transcript_facts facts = words.finish();
    EXPECT_EQ(facts.entries.back().count, 1u);
    ASSERT_EQ(facts.faults.size(), 1u);
    EXPECT_EQ(facts.faults[0].count, 5u);
    EXPECT_EQ(facts.faults[0].packets, (std::vector<uint64_t>{100, 101, 102, 103, 104}));
}
