// All planted faults against all checks: each fails what it has to, and nothing else.
#include "tests/overview_verdict/planted_fault.h"

#include "mpeg_ts_overview/driver/overview_of.h"
#include "tests/overview_input/memory_source.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

std::vector<planted_fault> all_faults()
{
    std::vector<planted_fault> all;
    for (const auto &some : {faults_of_first_priority(), faults_of_second_priority(),
                             faults_of_third_priority(), other_faults()})
        all.insert(all.end(), some.begin(), some.end());
    return all;
}

struct planted_faults : testing::TestWithParam<planted_fault> {};

TEST_P(planted_faults, fail_what_they_have_to_and_nothing_else)
{
    overview found;
    ASSERT_EQ(overview_of(source_of(GetParam().stream()), GetParam().request, found), reading_outcome::done);

    std::vector<std::string> failed;
    for (const check_result &check : found.checks)
        if (check.outcome == check_outcome::fail) failed.push_back(check.id);
    EXPECT_EQ(failed, GetParam().fails);
    if (failed.empty()) return;

    const auto first = std::find_if(found.checks.begin(), found.checks.end(),
                                    [&](const check_result &check) { return check.id == failed[0]; });
    EXPECT_EQ(first->log.count, GetParam().count);
    EXPECT_EQ(first->log.first.packet, GetParam().first_packet.value_or(first->log.first.packet));
    EXPECT_EQ(first->log.last.packet, GetParam().last_packet.value_or(first->log.first.packet));
}

INSTANTIATE_TEST_SUITE_P(all, planted_faults, testing::ValuesIn(all_faults()),
                         [](const auto &fault) { return std::string(fault.param.name); });

TEST(fault_table, has_every_check_that_can_fail)
{
    overview found;
    ASSERT_EQ(overview_of(source_of(dvb_broadcast().packets()), {}, found), reading_outcome::done);
    std::set<std::string> not_planted;
    for (const check_result &check : found.checks) not_planted.insert(check.id);
    for (const planted_fault &fault : all_faults())
        for (const std::string &id : fault.fails) not_planted.erase(id);
    EXPECT_EQ(not_planted, (std::set<std::string>{"3.10", "3.3", "3.9"})); // need the decoder model
}

} // namespace
