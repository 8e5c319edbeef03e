#include "tests/overview_checks/judged_stream.h"

#include <gtest/gtest.h>

struct pat_check : testing::Test {
    /// The verdict on a PAT that comes at these times, to the end.
    static std::string verdict(const std::vector<double> &arrivals, double end)
    {
        judged_stream stream;
        for (const double seconds : arrivals) stream.section(seconds, 0, pat_of_one());
        return stream.judge_at(end).verdict("1.3a");
    }
};

TEST_F(pat_check, a_pat_within_500_ms_passes)
{
    EXPECT_EQ(verdict({0, 0.5, 1.0, 1.5}, 2), "pass");
    EXPECT_EQ(verdict({0.5, 1.0}, 1.5), "pass");
}

TEST_F(pat_check, an_interval_just_beyond_fails_and_stands_where_it_ends)
{
    judged_stream stream;
    stream.section(0, 0, pat_of_one()).section(0.4, 0, pat_of_one());
    stream.section(0.4 + 0.5 + 1e-7, 0, pat_of_one()).section(1.0, 0, pat_of_one());
    stream.judge_at(1.2);
    EXPECT_EQ(stream.verdict("1.3a"), "fail 1");
    const check_result &row = stream.row("1.3a");
    EXPECT_EQ(row.priority, 1);
    EXPECT_EQ(row.name, "PAT_error_2");
    EXPECT_EQ(row.log.first.packet, 2u);
    EXPECT_EQ(row.log.last.packet, 2u);
    EXPECT_EQ(row.log.details.at(0).pid, 0);
    EXPECT_EQ(row.log.details.at(0).text, "no PAT of 0x0001, section 0 for 500.000111 ms");
    EXPECT_NEAR(*row.log.worst, 0.5000001, 1e-7);
    EXPECT_EQ(row.worst_unit, "s");
    EXPECT_EQ(row.limit, 0.5);
}

TEST_F(pat_check, the_piece_to_the_first_and_from_the_last_counts_when_it_alone_is_longer)
{
    EXPECT_EQ(verdict({0.6, 1.0}, 1.5), "fail 1");
    EXPECT_EQ(verdict({0.4, 0.8}, 1.4), "fail 1");
    EXPECT_EQ(verdict({0.4}, 0.8), "pass");
}

TEST_F(pat_check, worst_is_the_longest_interval_of_a_row_that_passes_too)
{
    judged_stream stream;
    stream.section(0.45, 0, pat_of_one()).section(0.5, 0, pat_of_one()).section(0.8, 0, pat_of_one());
    stream.judge_at(1.25);
    EXPECT_EQ(stream.verdict("1.3a"), "pass");
    EXPECT_DOUBLE_EQ(*stream.row("1.3a").log.worst, 0.3);
}

TEST_F(pat_check, one_long_gap_counts_once)
{
    EXPECT_EQ(verdict({0, 10, 10.5}, 11), "fail 1");
}

TEST_F(pat_check, a_recording_shorter_than_the_limit_is_not_measured)
{
    EXPECT_EQ(verdict({0, 0.1, 0.4}, 0.499), "recording shorter than the limit");
    EXPECT_EQ(verdict({0, 0.1, 0.4}, 0.5), "pass");
}

TEST_F(pat_check, without_a_packet_of_pid_0_there_is_no_pat)
{
    judged_stream stream;
    EXPECT_EQ(stream.judge_at(5).verdict("1.3a"), "no PAT");
}

TEST_F(pat_check, packets_of_pid_0_without_a_pat_fail)
{
    bytes wrong = pat_of_one();
    wrong[10] ^= 1;
    judged_stream stream;
    stream.every(0.2, 0, 5, 0, wrong).judge_at(5);
    EXPECT_EQ(stream.verdict("1.3a"), "fail 1");
    EXPECT_EQ(stream.row("1.3a").log.first.ticks, ticks_at(5));
    EXPECT_EQ(stream.row("1.3a").log.details.at(0).text, "no PAT at all");
}

TEST_F(pat_check, of_the_whole_multiplex_absence_fails)
{
    judged_stream stream({}, true);
    EXPECT_EQ(stream.judge_at(5).verdict("1.3a"), "fail 1");
    judged_stream shorter({}, true);
    EXPECT_EQ(shorter.judge_at(0.4).verdict("1.3a"), "recording shorter than the limit");
}

TEST_F(pat_check, another_table_and_a_scrambled_packet_fail_in_short_recordings_too)
{
    judged_stream stream;
    stream.section(0, 0, pat_of_one()).section(0.1, 0, long_section(0x02, 1, hex("0000")));
    EXPECT_EQ(stream.judge_at(0.2).verdict("1.3a"), "fail 1");
    judged_stream scrambled;
    scrambled.packets(0, stream_builder().section(0, pat_of_one()).scramble(3));
    EXPECT_EQ(scrambled.judge_at(0.2).verdict("1.3a"), "fail 1");
}

TEST_F(pat_check, sections_that_are_not_current_are_no_arrivals_and_no_other_tables)
{
    section_fields next;
    next.current_next_indicator = 0;
    judged_stream stream;
    stream.section(0, 0, pat_of_one())
        .section(0.4, 0, pat_section(1, {}, next))
        .section(0.8, 0, pat_of_one());
    stream.section(0.9, 0, long_section(0x02, 1, hex("0000"), next)).judge_at(1);
    EXPECT_EQ(stream.verdict("1.3a"), "fail 1");
}

TEST_F(pat_check, each_section_number_counts_by_itself)
{
    section_fields first;
    first.last_section_number = 1;
    section_fields second = first;
    second.section_number = 1;
    const bytes one = pat_section(1, {}, first);
    const bytes other = pat_section(1, {}, second);
    judged_stream stream;
    stream.every(0.4, 0, 4, 0, one);
    EXPECT_EQ(stream.judge_at(4).verdict("1.3a"), "fail 1");
    judged_stream both;
    for (int i = 0; i < 10; ++i) both.section(i * 0.4, 0, one).section(i * 0.4 + 0.1, 0, other);
    EXPECT_EQ(both.judge_at(4).verdict("1.3a"), "pass");
}

TEST_F(pat_check, a_new_version_goes_on_with_the_old_clocks)
{
    judged_stream stream;
    stream.section(0, 0, pat_of_one()).section(0.6, 0, pat_section(1, {}, {1})).judge_at(1);
    EXPECT_EQ(stream.verdict("1.3a"), "fail 1");
}

TEST_F(pat_check, numbers_above_the_last_of_a_new_version_are_forgotten)
{
    section_fields first;
    first.last_section_number = 1;
    section_fields second = first;
    second.section_number = 1;
    judged_stream stream;
    stream.section(0, 0, pat_section(1, {}, first)).section(0.1, 0, pat_section(1, {}, second));
    stream.every(0.4, 0.4, 4, 0, pat_section(1, {}, {1}));
    EXPECT_EQ(stream.judge_at(4).verdict("1.3a"), "pass");
}

TEST_F(pat_check, a_number_that_a_new_version_adds_is_waited_for_from_then_on)
{
    section_fields first;
    first.version_number = 1;
    first.last_section_number = 1;
    section_fields second = first;
    second.section_number = 1;
    judged_stream stream;
    stream.every(0.4, 0, 4, 0, pat_of_one());
    stream.section(4.4, 0, pat_section(1, {}, first)).section(4.8, 0, pat_section(1, {}, second));
    EXPECT_EQ(stream.judge_at(4.85).verdict("1.3a"), "pass");
    judged_stream late;
    late.every(0.4, 0, 4, 0, pat_of_one()).every(0.4, 4.4, 5.2, 0, pat_section(1, {}, first));
    EXPECT_EQ(late.judge_at(5.2).verdict("1.3a"), "fail 1");
}

TEST_F(pat_check, another_transport_stream_id_goes_on_with_the_clocks)
{
    judged_stream stream;
    stream.every(0.4, 0, 4, 0, pat_of_one()).every(0.4, 4.4, 8, 0, pat_section(2, {}));
    EXPECT_EQ(stream.judge_at(8).verdict("1.3a"), "pass");
}

TEST_F(pat_check, at_a_time_break_the_clock_starts_anew)
{
    judged_stream stream;
    stream.section(0, 0, pat_of_one()).section(0.4, 0, pat_of_one()).time_break(0.8, 3);
    stream.section(3.4, 0, pat_of_one()).judge_at(3.8);
    EXPECT_EQ(stream.verdict("1.3a"), "pass");
}

TEST_F(pat_check, pieces_before_and_behind_a_break_count_each_when_longer)
{
    judged_stream before;
    before.section(0, 0, pat_of_one()).time_break(0.6, 3).section(3.4, 0, pat_of_one()).judge_at(3.8);
    EXPECT_EQ(before.verdict("1.3a"), "fail 1");
    EXPECT_EQ(before.row("1.3a").log.first.ticks, ticks_at(0.6));
    judged_stream behind;
    behind.section(0, 0, pat_of_one()).time_break(0.4, 3).section(3.6, 0, pat_of_one()).judge_at(3.8);
    EXPECT_EQ(behind.verdict("1.3a"), "fail 1");
}

TEST_F(pat_check, a_whole_stretch_without_a_pat_counts_once)
{
    judged_stream stream;
    stream.section(0, 0, pat_of_one()).time_break(0.4, 3).time_break(6, 7).time_break(7.3, 8);
    stream.section(8.1, 0, pat_of_one()).judge_at(8.4);
    EXPECT_EQ(stream.verdict("1.3a"), "fail 1");
    EXPECT_DOUBLE_EQ(*stream.row("1.3a").log.worst, 3);
    EXPECT_EQ(stream.row("1.3a").log.details.at(0).at.ticks, ticks_at(6));
}

TEST_F(pat_check, stretches_all_shorter_than_the_limit_are_not_measured)
{
    judged_stream stream;
    for (int i = 0; i < 10; ++i) stream.section(i, 0, pat_of_one()).time_break(i + 0.4, i + 1);
    EXPECT_EQ(stream.judge_at(10.4).verdict("1.3a"), "recording shorter than the limit");
}

TEST_F(pat_check, what_arrives_inside_a_break_is_no_arrival)
{
    judged_stream stream;
    stream.section(0, 0, pat_of_one()).see(0.3);
    stream.inside_break = true;
    stream.section(0.4, 0, pat_of_one());
    stream.inside_break = false;
    ++stream.stretch;
    stream.see(0.5).section(1.1, 0, pat_of_one()).judge_at(1.2);
    EXPECT_EQ(stream.verdict("1.3a"), "fail 1");
}

TEST_F(pat_check, without_times_nothing_is_measured_but_what_is_wrong_fails)
{
    judged_stream stream;
    stream.has_times = false;
    stream.section(0, 0, pat_of_one());
    EXPECT_EQ(stream.judge_at(0).verdict("1.3a"), "no times");
    judged_stream wrong;
    wrong.has_times = false;
    wrong.section(0, 0, long_section(0x02, 1, hex("0000")));
    EXPECT_EQ(wrong.judge_at(0).verdict("1.3a"), "fail 1");
}

TEST_F(pat_check, of_a_variable_bitrate_only_the_part_between_clock_points_counts)
{
    for (const bool constant : {true, false}) {
        judged_stream stream;
        stream.sure_from = 1;
        stream.sure_to = 3;
        stream.end.constant_bitrate = constant;
        stream.end.clock_pids = {0x101};
        stream.section(0.9, 0, pat_of_one()).see(1).every(0.4, 1.4, 2.6, 0, pat_of_one()).see(3);
        stream.section(4, 0, pat_of_one()).judge_at(4.1);
        EXPECT_EQ(stream.verdict("1.3a"), constant ? "fail 2" : "pass");
        EXPECT_DOUBLE_EQ(*stream.row("1.3a").log.worst, constant ? 1.4 : 0.4);
    }
}

TEST_F(pat_check, pieces_between_clock_points_count_when_longer)
{
    judged_stream stream;
    stream.sure_from = 1;
    stream.sure_to = 3;
    stream.end.clock_pids = {0x101};
    stream.section(0.9, 0, pat_of_one()).see(1).every(0.4, 1.6, 2.4, 0, pat_of_one()).see(3);
    stream.section(3.1, 0, pat_of_one()).judge_at(3.2);
    EXPECT_EQ(stream.verdict("1.3a"), "fail 2");
    EXPECT_EQ(stream.row("1.3a").log.last.ticks, ticks_at(3));
}

TEST_F(pat_check, another_limit_is_judged_and_told)
{
    limits values;
    values.pat_interval_ticks = ticks_at(0.3);
    judged_stream stream(values);
    stream.every(0.4, 0, 2, 0, pat_of_one()).judge_at(2);
    EXPECT_EQ(stream.verdict("1.3a"), "fail 5");
    EXPECT_DOUBLE_EQ(*stream.row("1.3a").limit, 0.3);
}

TEST_F(pat_check, details_are_the_first_twenty_in_order)
{
    judged_stream stream;
    stream.every(0.6, 0, 30, 0, pat_of_one()).judge_at(30);
    const violation_log &log = stream.row("1.3a").log;
    EXPECT_EQ(log.count, 50u);
    ASSERT_EQ(log.details.size(), 20u);
    EXPECT_EQ(log.details[0].at.packet, 1u);
    EXPECT_EQ(log.details[19].at.packet, 20u);
}

struct pmt_check : testing::Test {
    /// A PAT each 100 ms to the end, and what a test adds.
    static judged_stream with_pats(double end, bool whole_multiplex = false)
    {
        judged_stream stream({}, whole_multiplex);
        stream.every(0.1, 0, end, 0, pat_of_one());
        return stream;
    }
};

TEST_F(pmt_check, a_pmt_within_500_ms_passes)
{
    judged_stream stream;
    stream.section(0, 0, pat_of_one()).every(0.5, 0.5, 2, 0x100, pmt_of_one()).judge_at(2.5);
    EXPECT_EQ(stream.verdict("1.5a"), "pass");
    EXPECT_EQ(stream.row("1.5a").limit, 0.5);
}

TEST_F(pmt_check, an_interval_just_beyond_fails)
{
    judged_stream stream;
    stream.section(0, 0, pat_of_one()).section(0.4, 0x100, pmt_of_one());
    stream.section(0.9 + 1e-7, 0x100, pmt_of_one()).judge_at(1);
    EXPECT_EQ(stream.verdict("1.5a"), "fail 1");
    EXPECT_EQ(stream.row("1.5a").log.details.at(0).pid, 0x100);
    EXPECT_EQ(stream.row("1.5a").log.details.at(0).text, "no PMT of 0x0001 for 500.000111 ms");
}

TEST_F(pmt_check, the_clock_starts_with_the_pat_that_lists_the_program)
{
    judged_stream stream;
    stream.section(3, 0, pat_of_one()).every(0.4, 3.4, 5, 0x100, pmt_of_one()).judge_at(5);
    EXPECT_EQ(stream.verdict("1.5a"), "pass");
    judged_stream late;
    late.section(3, 0, pat_of_one()).every(0.4, 3.6, 5, 0x100, pmt_of_one()).judge_at(5);
    EXPECT_EQ(late.verdict("1.5a"), "fail 1");
}

TEST_F(pmt_check, the_clock_ends_with_the_pat_that_lists_the_program_no_more)
{
    judged_stream stream;
    stream.section(0, 0, pat_of_one()).every(0.4, 0.2, 1.8, 0x100, pmt_of_one());
    stream.section(2.2, 0, pat_section(1, {}, {1})).judge_at(9);
    EXPECT_EQ(stream.verdict("1.5a"), "pass");
    judged_stream late;
    late.section(0, 0, pat_of_one()).every(0.4, 0.2, 1.8, 0x100, pmt_of_one());
    late.section(2.4, 0, pat_section(1, {}, {1})).judge_at(9);
    EXPECT_EQ(late.verdict("1.5a"), "fail 1");
}

TEST_F(pmt_check, a_program_that_moves_to_another_section_of_the_pat_stays_listed)
{
    section_fields second;
    second.section_number = second.last_section_number = 1;
    const bytes in_the_second = pat_section(1,
                                            {
                                                {1, 0x100}
    },
                                            second);
    const bytes in_the_only_one = pat_section(1,
                                              {
                                                  {1, 0x100}
    },
                                              {1});
    judged_stream stream;
    stream.section(0, 0, in_the_second).section(0.1, 0x100, pmt_of_one());
    stream.section(0.4, 0, in_the_only_one).section(0.7, 0x100, pmt_of_one()).judge_at(0.8);
    EXPECT_EQ(stream.verdict("1.5a"), "fail 1");
    EXPECT_EQ(stream.row("1.5a").log.details.at(0).text, "no PMT of 0x0001 for 600 ms");
}

TEST_F(pmt_check, a_program_without_a_packet_on_its_pmt_pid_is_absent)
{
    judged_stream stream;
    stream.section(0, 0,
                   pat_section(1, {
                                      {1, 0x100},
                                      {2, 0x200}
    }));
    stream.every(0.4, 0.2, 3, 0x100, pmt_of_one()).judge_at(3);
    EXPECT_EQ(stream.verdict("1.5a"), "pass");
    judged_stream none;
    none.section(0, 0, pat_of_one()).judge_at(3);
    EXPECT_EQ(none.verdict("1.5a"), "no PMT");
}

TEST_F(pmt_check, of_the_whole_multiplex_absent_programs_fail)
{
    judged_stream stream({}, true);
    stream.section(0, 0, pat_of_one()).judge_at(3);
    EXPECT_EQ(stream.verdict("1.5a"), "fail 1");
}

TEST_F(pmt_check, a_program_whose_pid_carries_no_pmt_fails)
{
    bytes wrong = pmt_of_one();
    wrong[12] ^= 1;
    judged_stream stream;
    stream.section(0, 0, pat_of_one()).section(0.1, 0x100, wrong).judge_at(3);
    EXPECT_EQ(stream.verdict("1.5a"), "fail 1");
}

TEST_F(pmt_check, each_program_of_a_shared_pid_is_waited_for)
{
    judged_stream stream;
    stream.section(0, 0,
                   pat_section(1, {
                                      {1, 0x100},
                                      {2, 0x100}
    }));
    stream.every(0.4, 0.2, 3, 0x100, pmt_of_one()).judge_at(3);
    EXPECT_EQ(stream.verdict("1.5a"), "fail 1");
}

TEST_F(pmt_check, a_scrambled_pmt_fails)
{
    judged_stream stream;
    stream.section(0, 0, pat_of_one()).section(0.1, 0x100, pmt_of_one());
    stream.packets(0.2, stream_builder().section(0x100, pmt_of_one()).scramble(2)).judge_at(0.3);
    EXPECT_EQ(stream.verdict("1.5a"), "fail 1");
}

TEST_F(pmt_check, without_a_pat_there_is_none)
{
    judged_stream stream;
    EXPECT_EQ(stream.judge_at(3).verdict("1.5a"), "no PAT");
}

TEST_F(pmt_check, a_program_shorter_there_than_the_limit_is_not_measured)
{
    judged_stream stream;
    stream.section(3, 0, pat_of_one()).section(3.2, 0x100, pmt_of_one()).judge_at(3.4);
    EXPECT_EQ(stream.verdict("1.5a"), "recording shorter than the limit");
}

TEST_F(pmt_check, behind_a_pat_inside_a_break_the_clock_starts_at_its_end)
{
    judged_stream stream;
    stream.see(0.1);
    stream.inside_break = true;
    stream.section(0.2, 0, pat_of_one());
    stream.inside_break = false;
    ++stream.stretch;
    stream.see(3).every(0.4, 3.4, 5, 0x100, pmt_of_one()).judge_at(5);
    EXPECT_EQ(stream.verdict("1.5a"), "pass");
}

TEST_F(pmt_check, another_limit_is_judged)
{
    limits values;
    values.pmt_interval_ticks = ticks_at(0.3);
    judged_stream stream(values);
    stream.section(0, 0, pat_of_one()).every(0.4, 0.2, 2, 0x100, pmt_of_one()).judge_at(2);
    EXPECT_EQ(stream.verdict("1.5a"), "fail 4");
}
