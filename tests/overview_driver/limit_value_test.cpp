#include "mpeg_ts_overview/driver/limit_value.h"

#include <gtest/gtest.h>

namespace {

std::string wrong_with(const char *text)
{
    limits values;
    return set_limit(text, &values);
}

} // namespace

TEST(limit_value, each_name_has_its_place_and_a_unit_of_its_own)
{
    struct name_and_place {
        const char *text;
        std::optional<int64_t> limits::*place;
        int64_t ticks;
    };
    constexpr name_and_place cases[] = {
        {"pcr_interval=40",   &limits::pcr_interval_ticks,   40 * 27000  },
        {"pts_interval=700",  &limits::pts_interval_ticks,   700 * 27000 },
        {"pat_interval=100",  &limits::pat_interval_ticks,   100 * 27000 },
        {"pmt_interval=400",  &limits::pmt_interval_ticks,   400 * 27000 },
        {"pid_absence=5",     &limits::pid_absence_ticks,    5 * 27000000},
        {"sdt_interval=2",    &limits::sdt_interval_ticks,   2 * 27000000},
        {"nit_interval=10",   &limits::nit_interval_ticks,   270000000   },
        {"eit_schedule=30",   &limits::eit_schedule_ticks,   810000000   },
        {"si_minimum_gap=25", &limits::si_minimum_gap_ticks, 25 * 27000  },
    };
    for (const name_and_place &each : cases) {
        limits values;
        EXPECT_EQ(set_limit(each.text, &values), "");
        EXPECT_EQ(values.*each.place, each.ticks) << each.text;
    }
    limits values;
    EXPECT_EQ(set_limit("pcr_accuracy=500", &values), "");
    EXPECT_EQ(values.pcr_accuracy_ns, 500.0);
    EXPECT_FALSE(values.pcr_interval_ticks);
}

TEST(limit_value, any_limit_takes_any_unit)
{
    limits values;
    EXPECT_EQ(set_limit("pid_absence=500ms", &values), "");
    EXPECT_EQ(values.pid_absence_ticks, 13500000);
    EXPECT_EQ(set_limit("pid_absence=0.25s", &values), "");
    EXPECT_EQ(values.pid_absence_ticks, 6750000);
    EXPECT_EQ(set_limit("pid_absence=100us", &values), "");
    EXPECT_EQ(values.pid_absence_ticks, 2700);
    EXPECT_EQ(set_limit("pid_absence=1000ns", &values), "");
    EXPECT_EQ(values.pid_absence_ticks, 27);
    EXPECT_EQ(set_limit("pcr_accuracy=0.1us", &values), "");
    EXPECT_EQ(values.pcr_accuracy_ns, 100.0);
}

TEST(limit_value, what_is_wrong_is_said)
{
    EXPECT_EQ(wrong_with("pcr_interval"), "'pcr_interval' is no limit: NAME=VALUE");
    EXPECT_EQ(wrong_with("pcr=40ms"), "there is no limit named 'pcr'");
    EXPECT_EQ(wrong_with("=40ms"), "there is no limit named ''");
    for (const char *text : {"pcr_interval=", "pcr_interval=ms", "pcr_interval=40m", "pcr_interval=40 ms",
                             "pcr_interval=+40", "pcr_interval=4e1", "pcr_interval=0x10", "pcr_interval= 40"})
        EXPECT_EQ(wrong_with(text), std::string("the limit '") + text + "' has no value such as 40ms");
    for (const char *text : {"pcr_interval=0", "pcr_interval=-1s", "pcr_interval=1000001s",
                             "pcr_interval=nan", "pcr_interval=inf", "pcr_interval=0.1ns"})
        EXPECT_EQ(wrong_with(text), std::string("the limit '") + text + "' is not within 1 ns and 1000000 s");
}
