#include "tests/overview_contents/splice_sections.h"
#include "tests/support/table_sections.h"

#include "mpeg_ts_overview/contents/cues.h"
#include "mpeg_ts_overview/meters/clock_arithmetic.h"

#include <gtest/gtest.h>

struct cues_found : testing::Test {
    cue_list cues;
    program_clocks clocks;
    stream_role role;

    cues_found()
    {
        role.program = uint16_t{7};
        role.pcr_pid = uint16_t{0x0101};
    }

    void pcr(uint64_t ticks, const moment &at)
    {
        ts_packet packet;
        packet.pid = 0x0101;
        packet.PCR = ticks;
        packet.at = at;
        clocks.on_packet(packet, {});
    }

    void receive(const bytes &data, const moment &at = {}, unsigned pid = 0x0500)
    {
        const offered_section section(pid, data, at);
        ASSERT_TRUE(section.is_whole());
        cues.on_section(*section, role, clocks);
    }

    /// The only cue.
    cue found()
    {
        const cues_facts facts = cues.finish();
        EXPECT_EQ(facts.cues.size(), 1u);
        return facts.cues.empty() ? cue{} : facts.cues[0];
    }
};

TEST_F(cues_found, a_cue_has_its_pid_program_and_moment)
{
    receive(splice_section(0x06, splice_time(1)), at_packet(33, 1.5));
    const cue message = found();
    EXPECT_EQ(message.pid, 0x0500);
    EXPECT_EQ(message.program, 7);
    EXPECT_EQ(message.at.packet, 33u);
    EXPECT_EQ(message.at.ticks, 3 * ticks_per_second / 2);
    EXPECT_EQ(message.command, "time_signal");
    EXPECT_EQ(message.count, 1u);
}

TEST_F(cues_found, the_same_bytes_on_the_pid_are_one_cue)
{
    receive(splice_section(0x06, splice_time(1)), at_packet(1));
    receive(splice_section(0x06, splice_time(2)), at_packet(2));
    receive(splice_section(0x06, splice_time(1)), at_packet(3));
    receive(splice_section(0x06, splice_time(1)), at_packet(4), 0x0501);
    const cues_facts facts = cues.finish();
    ASSERT_EQ(facts.cues.size(), 3u);
    EXPECT_EQ(facts.cues[0].count, 2u);
    EXPECT_EQ(facts.cues[0].at.packet, 1u);
    EXPECT_EQ(facts.cues[1].count, 1u);
    EXPECT_EQ(facts.cues[2].pid, 0x0501);
}

TEST_F(cues_found, other_tables_are_none)
{
    receive(long_section(0x02, 1, repeated(0, 8)));
    EXPECT_TRUE(cues.finish().cues.empty());
}

TEST_F(cues_found, the_pre_roll_is_the_splice_minus_the_programs_clock)
{
    pcr(1000 * 300, at_packet(10, 1.0));
    receive(splice_section(0x06, splice_time(1000 + 5 * 90000)), at_packet(20, 2.0));
    EXPECT_EQ(found().pre_roll_ticks, 4 * ticks_per_second);
}

TEST_F(cues_found, the_pre_roll_is_below_zero_when_the_splice_is_over)
{
    pcr(90000 * 300, at_packet(10, 1.0));
    receive(splice_section(0x06, splice_time(0)), at_packet(10, 1.0));
    EXPECT_EQ(found().pre_roll_ticks, -ticks_per_second);
}

TEST_F(cues_found, the_pre_roll_goes_over_the_wrap_of_the_clock)
{
    pcr(static_cast<uint64_t>(pcr_cycle_ticks - ticks_per_second), at_packet(10, 1.0));
    receive(splice_section(0x06, splice_time(90000)), at_packet(10, 1.0));
    EXPECT_EQ(found().pre_roll_ticks, 2 * ticks_per_second);
}

TEST_F(cues_found, the_pre_roll_has_the_adjustment)
{
    pcr(0, at_packet(10, 1.0));
    splice_fields fields;
    fields.pts_adjustment = 90000;
    receive(splice_section(0x06, splice_time(90000), {}, fields), at_packet(10, 1.0));
    EXPECT_EQ(found().pre_roll_ticks, 2 * ticks_per_second);
}

TEST_F(cues_found, without_a_clock_a_program_or_a_time_there_is_no_pre_roll)
{
    receive(splice_section(0x06, splice_time(1)), at_packet(1));
    pcr(0, at_packet(2));
    receive(splice_section(0x06, hex("7F")), at_packet(3));
    role = {};
    receive(splice_section(0x06, splice_time(2)), at_packet(4));
    for (const cue &message : cues.finish().cues) EXPECT_EQ(message.pre_roll_ticks, std::nullopt);
}

TEST_F(cues_found, a_cue_of_no_program_has_none)
{
    role = {};
    receive(splice_section(0x00, {}));
    EXPECT_EQ(found().program, std::nullopt);
}

TEST_F(cues_found, at_most_5000_are_kept_and_the_rest_is_counted)
{
    for (uint64_t i = 0; i < cue_limit + 3; ++i) receive(splice_section(0x06, splice_time(i)));
    receive(splice_section(0x06, splice_time(0)));
    const cues_facts facts = cues.finish();
    EXPECT_EQ(facts.cues.size(), cue_limit);
    EXPECT_EQ(facts.not_kept, 3u);
    EXPECT_EQ(facts.cues[0].count, 2u);
}
