#include "tests/overview_contents/si_sections.h"
#include "tests/support/table_sections.h"

#include "mpeg_ts_overview/contents/day_clock.h"

#include <gtest/gtest.h>

struct time_of_day : testing::Test {
    day_clock clock;

    void receive(const bytes &data, const moment &at = {})
    {
        const offered_section section(0x0014, data, at);
        ASSERT_TRUE(section.is_whole());
        clock.on_section(*section);
    }
};

TEST_F(time_of_day, the_first_and_the_last_reading_are_kept)
{
    receive(short_section(0x70, hex("C079 124500")), at_packet(10, 1));
    receive(short_section(0x70, hex("C079 124530")), at_packet(20, 2));
    receive(short_section(0x70, hex("C079 124600")), at_packet(30, 3));
    ASSERT_TRUE(clock.facts().first && clock.facts().last);
    EXPECT_EQ(clock.facts().first->utc_s, 750516300) << "EN 300 468 Annex C: 1993-10-13 12:45:00";
    EXPECT_STREQ(clock.facts().first->source, "TDT");
    EXPECT_EQ(clock.facts().first->at.packet, 10u);
    EXPECT_EQ(clock.facts().last->utc_s, 750516360);
    EXPECT_EQ(clock.facts().last->at.packet, 30u);
    EXPECT_EQ(clock.facts().last->at.ticks, 3 * ticks_per_second);
}

TEST_F(time_of_day, a_time_offset_table_tells_it_too)
{
    const bytes tot = hex("73 700B C079 124500 F000");
    table_section section;
    section.header.table_id = 0x73;
    section.body = tot.data() + 3;
    section.body_fence = tot.data() + tot.size();
    clock.on_section(section);
    ASSERT_TRUE(clock.facts().first);
    EXPECT_STREQ(clock.facts().first->source, "TOT");
    EXPECT_EQ(clock.facts().first->utc_s, 750516300);
}

TEST_F(time_of_day, a_system_time_table_is_utc_behind_gps)
{
    receive(stt_section(1000000000, 18), at_packet(5));
    ASSERT_TRUE(clock.facts().first);
    EXPECT_STREQ(clock.facts().first->source, "STT");
    EXPECT_EQ(clock.facts().first->utc_s, 315964800 + 1000000000 - 18);
}

TEST_F(time_of_day, what_is_no_time_is_no_reading)
{
    receive(short_section(0x70, hex("C079 246000")));
    receive(short_section(0x70, hex("C079 12")));
    receive(short_section(0x72, hex("C079 124500")));
    receive(short_section(0xCD, repeated(0, 13)));
    receive(long_section(0xCD, 0, hex("00 00000000")));
    EXPECT_FALSE(clock.facts().first);
    EXPECT_FALSE(clock.facts().last);
}
