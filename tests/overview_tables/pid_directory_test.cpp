#include "mpeg_ts_overview/tables/pid_directory.h"

#include <gtest/gtest.h>

struct directory : testing::Test {
    bool collects_for(pid_use use, uint16_t pid)
    {
        pid_directory fresh;
        fresh.add(pid, use);
        return fresh.collects(pid);
    }

    pid_directory pids;
};

TEST_F(directory, reserved_pids_are_collected_from_the_start_and_no_others)
{
    std::vector<uint16_t> collected;
    for (unsigned pid = 0; pid < 0x2000; ++pid)
        if (pids.collects(static_cast<uint16_t>(pid))) collected.push_back(static_cast<uint16_t>(pid));
    EXPECT_EQ(collected, (std::vector<uint16_t>{0, 1, 0x10, 0x11, 0x12, 0x13, 0x14, 0x1F, 0x24, 0x1FFB}));
}

TEST_F(directory, pids_of_pat_mgt_and_private_sections_are_collected_as_long_as_they_are_named)
{
    for (const pid_use use :
         {pid_use::network, pid_use::map, pid_use::sections, pid_use::splices, pid_use::psip}) {
        pids.add(0x100, use);
        EXPECT_TRUE(pids.collects(0x100));
        EXPECT_TRUE(pids.is(0x100, use));
        pids.remove(0x100, use);
        EXPECT_FALSE(pids.collects(0x100));
        EXPECT_FALSE(pids.is(0x100, use));
    }
}

TEST_F(directory, pids_of_clocks_streams_and_conditional_access_are_not_collected)
{
    EXPECT_FALSE(collects_for(pid_use::clock, 0x100));
    EXPECT_FALSE(collects_for(pid_use::stream, 0x100));
    EXPECT_FALSE(collects_for(pid_use::conditional_access, 0x100));
}

TEST_F(directory, a_pid_named_twice_is_collected_until_it_is_named_no_more)
{
    pids.add(0x100, pid_use::map);
    pids.add(0x100, pid_use::map);
    pids.remove(0x100, pid_use::map);
    EXPECT_TRUE(pids.collects(0x100));
    pids.remove(0x100, pid_use::map);
    EXPECT_FALSE(pids.collects(0x100));
}

TEST_F(directory, the_fixed_meaning_ends_while_a_pmt_names_the_pid_otherwise)
{
    for (uint16_t pid = 0x10; pid <= 0x14; ++pid) {
        for (const pid_use use : {pid_use::clock, pid_use::stream, pid_use::conditional_access}) {
            pids.add(pid, use);
            EXPECT_FALSE(pids.has_fixed_meaning(pid));
            EXPECT_FALSE(pids.collects(pid));
            pids.remove(pid, use);
            EXPECT_TRUE(pids.has_fixed_meaning(pid));
            EXPECT_TRUE(pids.collects(pid));
        }
    }
}

TEST_F(directory, a_pmt_on_a_reserved_pid_is_collected_without_its_fixed_meaning)
{
    pids.add(0x11, pid_use::map);
    EXPECT_FALSE(pids.has_fixed_meaning(0x11));
    EXPECT_TRUE(pids.collects(0x11));
}

TEST_F(directory, private_sections_leave_the_fixed_meaning)
{
    pids.add(0x11, pid_use::sections);
    EXPECT_TRUE(pids.has_fixed_meaning(0x11));
}

TEST_F(directory, the_network_pid_is_0x10_and_means_otherwise_elsewhere)
{
    pids.add(0x10, pid_use::network);
    EXPECT_TRUE(pids.has_fixed_meaning(0x10));
    pids.add(0x12, pid_use::network);
    EXPECT_FALSE(pids.has_fixed_meaning(0x12));
    EXPECT_TRUE(pids.collects(0x12));
}

TEST_F(directory, other_reserved_pids_keep_their_meaning)
{
    for (const uint16_t pid : std::initializer_list<uint16_t>{0x00, 0x01, 0x1F, 0x24, 0x1FFB}) {
        pids.add(pid, pid_use::stream);
        EXPECT_TRUE(pids.has_fixed_meaning(pid));
        EXPECT_TRUE(pids.collects(pid));
    }
    EXPECT_FALSE(pids.has_fixed_meaning(0x100));
}

TEST_F(directory, of_0x24_only_broadcaster_information_is_collected_unless_it_is_named)
{
    EXPECT_TRUE(pids.collects(0x24, 0xC4));
    EXPECT_FALSE(pids.collects(0x24, 0x02));
    EXPECT_TRUE(pids.collects(0x12, 0x02));
    EXPECT_FALSE(pids.collects(0x100, 0x02));
    pids.add(0x24, pid_use::map);
    EXPECT_TRUE(pids.collects(0x24, 0x02));
}

TEST_F(directory, what_was_named_once_was_ever_named)
{
    EXPECT_FALSE(pids.ever_named(0x100));
    pids.add(0x100, pid_use::clock);
    pids.remove(0x100, pid_use::clock);
    EXPECT_TRUE(pids.ever_named(0x100));
    EXPECT_FALSE(pids.ever_named(0x00));
}

TEST_F(directory, each_start_of_collecting_is_another)
{
    const uint32_t before = pids.collections_of(0x100);
    pids.add(0x100, pid_use::map);
    EXPECT_EQ(pids.collections_of(0x100), before + 1);
    pids.add(0x100, pid_use::psip);
    pids.remove(0x100, pid_use::map);
    EXPECT_EQ(pids.collections_of(0x100), before + 1);
    pids.remove(0x100, pid_use::psip);
    pids.add(0x100, pid_use::psip);
    EXPECT_EQ(pids.collections_of(0x100), before + 2);
}
