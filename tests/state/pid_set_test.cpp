#include "mpeg_ts_analysis/state/pid_set.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <vector>

namespace {

std::vector<unsigned> members_of(const pid_set &pids)
{
    std::vector<unsigned> out;
    for (unsigned pid = pids.first_from(0); pid < mpeg_ts_pid_count; pid = pids.first_from(pid + 1))
        out.push_back(pid);
    return out;
}

} // namespace

TEST(pid_set, begins_empty)
{
    const pid_set pids;
    EXPECT_EQ(pids.first_from(0), 0x2000u);
    EXPECT_EQ(pids.first_from(0x1FFF), 0x2000u);
}

TEST(pid_set, finds_each_single_member_from_every_side)
{
    for (unsigned pid = 0; pid < mpeg_ts_pid_count; ++pid) {
        pid_set pids;
        pids.insert(static_cast<uint16_t>(pid));
        ASSERT_EQ(pids.first_from(0), pid);
        ASSERT_EQ(pids.first_from(pid), pid);
        ASSERT_EQ(pids.first_from(pid + 1), 0x2000u);
        ASSERT_EQ(pids.first_from(pid == 0 ? 0 : pid - 1), pid);
        pids.erase(static_cast<uint16_t>(pid));
        ASSERT_EQ(pids.first_from(0), 0x2000u);
    }
}

TEST(pid_set, nothing_is_found_past_the_last_PID)
{
    pid_set pids;
    pids.insert(0);
    pids.insert(0x1FFF);
    EXPECT_EQ(pids.first_from(0x2000), 0x2000u);
    EXPECT_EQ(pids.first_from(0xFFFF), 0x2000u);
}

TEST(pid_set, erasing_one_leaves_its_neighbours)
{
    pid_set pids;
    for (const uint16_t pid : {uint16_t{0x0FFE}, uint16_t{0x0FFF}, uint16_t{0x1000}, uint16_t{0x1001}})
        pids.insert(pid);
    pids.erase(0x0FFF);
    pids.erase(0x1000);
    pids.erase(0x1000);
    EXPECT_EQ(members_of(pids), (std::vector<unsigned>{0x0FFE, 0x1001}));
}

TEST(pid_set, holds_what_a_set_of_numbers_holds)
{
    std::mt19937 random(7);
    pid_set pids;
    std::set<unsigned> numbers;
    for (unsigned step = 0; step < 20000; ++step) {
        const auto pid = static_cast<uint16_t>(random() % mpeg_ts_pid_count);
        if (random() % 2 == 0) {
            pids.insert(pid);
            numbers.insert(pid);
        } else {
            pids.erase(pid);
            numbers.erase(pid);
        }
        if (step % 1000 != 0) continue;
        ASSERT_EQ(members_of(pids), std::vector<unsigned>(numbers.begin(), numbers.end()));
    }
}
