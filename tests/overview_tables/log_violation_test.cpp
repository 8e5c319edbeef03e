#include "mpeg_ts_overview/tables/log_violation.h"

#include "tests/overview_meters/meter_packets.h"

#include <gtest/gtest.h>

TEST(log_violation, the_first_twenty_are_kept_and_words_are_made_for_those_only)
{
    violation_log log;
    int asked = 0;
    for (uint64_t i = 0; i < 30; ++i) {
        log_violation(log, moment_at(i, 0), 0x100, [&] {
            ++asked;
            return std::string("words");
        });
    }
    EXPECT_EQ(log.count, 30u);
    EXPECT_EQ(log.first.packet, 0u);
    EXPECT_EQ(log.last.packet, 29u);
    ASSERT_EQ(log.details.size(), 20u);
    EXPECT_EQ(log.details.back().at.packet, 19u);
    EXPECT_EQ(log.details.back().pid, 0x100);
    EXPECT_EQ(log.details.back().text, "words");
    EXPECT_EQ(asked, 20);
}

TEST(log_violation, what_is_found_late_takes_its_place_in_order_of_packets)
{
    violation_log log;
    for (uint64_t i = 10; i < 30; ++i) log_violation(log, moment_at(i, 0), 1, [] { return std::string(); });
    log_violation(log, moment_at(5, 0), 2, [] { return std::string(); });
    EXPECT_EQ(log.first.packet, 5u);
    EXPECT_EQ(log.last.packet, 29u);
    ASSERT_EQ(log.details.size(), 20u);
    EXPECT_EQ(log.details.front().at.packet, 5u);
    EXPECT_EQ(log.details.back().at.packet, 28u);
}

TEST(log_violation, the_worst_only_grows)
{
    violation_log log;
    note_worst(log, 2);
    note_worst(log, 1);
    EXPECT_EQ(log.worst, 2);
    note_worst(log, 3);
    EXPECT_EQ(log.worst, 3);
}

TEST(log_violation, numbers_have_no_more_decimals_than_they_need)
{
    EXPECT_EQ(with_unit(40, "ms"), "40 ms");
    EXPECT_EQ(with_unit(-0.5, "ns"), "-0.5 ns");
    EXPECT_EQ(with_unit(100, "ms"), "100 ms");
    EXPECT_EQ(with_unit(1.0 / 3, "ms"), "0.333333 ms");
    EXPECT_EQ(in_ms(2700001), "100.000037 ms");
}
