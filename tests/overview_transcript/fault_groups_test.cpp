#include "tests/support/stream_builder.h"
#include "tests/support/table_sections.h"

#include "mpeg_ts_overview/transcript/fault_groups.h"

#include <gtest/gtest.h>

struct fault_groups_found : testing::Test {
    fault_groups faults;

    /// A reception of a section of which that is printed.
    void receive(std::string_view text, uint64_t packet = 0, unsigned pid = 0x0010, unsigned table_id = 0x40)
    {
        const offered_section section(pid, long_section(table_id, 0, {}), at_packet(packet));
        faults.count(faults.in_text(text, *section), *section);
    }
};

TEST(fault_words, every_number_is_left_out)
{
    EXPECT_EQ(without_numbers("!!! PID 0x00ff: 12 of 3.50 sec, -4 bytes"), "!!! PID #: # of # sec, # bytes");
    EXPECT_EQ(without_numbers("8/4 A-65 0xz 1. -x -"), "#/# A-# #xz #. -x -");
    EXPECT_EQ(without_numbers("-1"), "#");
    EXPECT_EQ(without_numbers(""), "");
}

TEST_F(fault_groups_found, a_fault_is_a_line_that_begins_with_two_exclamation_marks)
{
    receive("* heading\n!!! first\n    text !! inside\n  !! second\n!\n!!! without line end");
    const auto groups = faults.take_groups();
    ASSERT_EQ(groups.size(), 3u);
    EXPECT_EQ(groups[0].text, "!!! first");
    EXPECT_EQ(groups[1].text, "  !! second");
    EXPECT_EQ(groups[2].text, "!!! without line end");
}

TEST_F(fault_groups_found, lines_that_differ_in_numbers_are_one_group)
{
    receive("!!! by 5 bytes\n!!! by 6 bytes\n", 7);
    receive("!!! by 7 bytes\n", 9);
    const auto groups = faults.take_groups();
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].text, "!!! by 5 bytes");
    EXPECT_EQ(groups[0].count, 3u);
    EXPECT_EQ(groups[0].pid, 0x0010);
    EXPECT_EQ(groups[0].table_id, 0x40);
    EXPECT_EQ(groups[0].first.packet, 7u);
    EXPECT_EQ(groups[0].last.packet, 9u);
    EXPECT_EQ(groups[0].packets, (std::vector<uint64_t>{7, 9}));
}

TEST_F(fault_groups_found, pids_and_tables_have_groups_of_their_own)
{
    receive("!!! a\n", 1, 0x0010, 0x40);
    receive("!!! a\n", 2, 0x0011, 0x40);
    receive("!!! a\n", 3, 0x0011, 0x42);
    EXPECT_EQ(faults.take_groups().size(), 3u);
}

TEST_F(fault_groups_found, the_first_100_packets_are_named)
{
    for (uint64_t packet = 0; packet < 300; ++packet) receive("!!! a\n", packet);
    const auto groups = faults.take_groups();
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].count, 300u);
    ASSERT_EQ(groups[0].packets.size(), 100u);
    EXPECT_EQ(groups[0].packets.back(), 99u);
    EXPECT_EQ(groups[0].last.packet, 299u);
}

TEST_F(fault_groups_found, there_are_at_most_500_and_the_rest_is_counted)
{
    std::string line = "!!! ";
    for (unsigned i = 0; i < 510; ++i) receive((line += 'a') + '\n');
    receive(line + "\n" + line + "b\n");
    receive("!!! a\n");
    EXPECT_EQ(faults.not_kept(), 12u);
    const auto groups = faults.take_groups();
    ASSERT_EQ(groups.size(), 500u);
    EXPECT_EQ(groups[0].count, 2u);
}
