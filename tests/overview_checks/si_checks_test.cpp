#include "tests/overview_checks/judged_stream.h"

#include "mpeg12_ts/crc32.h"

#include <gtest/gtest.h>

/// An SDT of the actual stream: services 1 and, when they are two, 2, whose EIT_present_following_flag is set
/// or not.
static bytes sdt_of(std::initializer_list<std::pair<unsigned, bool>> services, section_fields fields = {})
{
    bytes body = hex("0001 FF");
    for (const auto &[service, flag] : services)
        body = join({body, big_endian(service, 2), flag ? hex("FD 8000") : hex("FC 8000")});
    return long_section(0x42, 1, body, fields);
}

static bytes eit_of(unsigned table_id, unsigned service, unsigned number)
{
    section_fields fields;
    fields.section_number = number;
    fields.last_section_number = 1;
    return long_section(table_id, service, hex("0001 0001 01 4E"), fields);
}

struct si_check : testing::Test {
    judged_stream stream;
};

TEST_F(si_check, a_nit_within_ten_seconds_and_their_tolerance_passes)
{
    stream.every(10.5, 0, 42, 0x10, nit_section()).judge_at(42);
    EXPECT_EQ(stream.verdict("3.1a"), "pass");
    EXPECT_EQ(stream.row("3.1a").limit, 10);
    EXPECT_DOUBLE_EQ(*stream.row("3.1a").log.worst, 10.5);
    EXPECT_EQ(stream.row("3.1a").worst_unit, "s");
    EXPECT_EQ(stream.row("3.1a").priority, 3);
}

TEST_F(si_check, a_nit_just_beyond_the_tolerance_fails)
{
    stream.section(0, 0x10, nit_section()).section(10.5 + 1e-7, 0x10, nit_section()).judge_at(11);
    EXPECT_EQ(stream.verdict("3.1a"), "fail 1");
}

TEST_F(si_check, without_a_nit_there_is_none_in_the_recording)
{
    stream.section(0, 0x14, tdt_section()).judge_at(20);
    EXPECT_EQ(stream.verdict("3.1a"), "no NIT in the recording");
    EXPECT_EQ(stream.verdict("3.5a"), "no SDT in the recording");
    judged_stream other;
    other.section(0, 0x10, nit_section()).judge_at(20);
    EXPECT_EQ(other.verdict("3.8"), "no TDT in the recording");
}

TEST_F(si_check, of_the_whole_multiplex_absent_tables_fail)
{
    judged_stream whole({}, true);
    whole.section(0, 0x12, eit_of(0x4E, 1, 0)).judge_at(40);
    EXPECT_EQ(whole.verdict("3.1a"), "fail 1");
    EXPECT_EQ(whole.verdict("3.5a"), "fail 1");
    EXPECT_EQ(whole.verdict("3.8"), "fail 1");
    judged_stream shorter({}, true);
    shorter.section(0, 0x12, eit_of(0x4E, 1, 0)).judge_at(9);
    EXPECT_EQ(shorter.verdict("3.1a"), "recording shorter than the limit");
    EXPECT_EQ(shorter.verdict("3.5a"), "fail 1");
}

TEST_F(si_check, what_never_comes_is_one_fault_at_the_end_however_often_time_breaks)
{
    judged_stream whole({}, true);
    whole.section(0, 0x12, eit_of(0x4E, 1, 0)).time_break(30, 31).time_break(62, 63).judge_at(70);
    EXPECT_EQ(whole.verdict("3.8"), "fail 1");
    EXPECT_EQ(whole.row("3.8").log.first.ticks, ticks_at(70));
    EXPECT_EQ(whole.row("3.8").log.details.at(0).text, "no TDT at all");
    EXPECT_EQ(whole.row("3.8").log.worst, 31) << "the longest of its pieces";
    judged_stream shorter({}, true);
    shorter.section(0, 0x12, eit_of(0x4E, 1, 0)).time_break(29, 31).time_break(59, 63).judge_at(70);
    EXPECT_EQ(shorter.verdict("3.8"), "recording shorter than the limit");
}

TEST_F(si_check, a_nit_of_others_is_not_the_actual_one)
{
    stream.section(0, 0x10, long_section(0x41, 1, hex("F000 F000"))).judge_at(20);
    EXPECT_EQ(stream.verdict("3.1a"), "no NIT in the recording");
}

TEST_F(si_check, streams_of_other_standards_are_not_measured)
{
    judged_stream plain;
    plain.section(0, 0, pat_of_one()).section(0, 0x1FFB, long_section(0x02, 1, hex("0000"))).judge_at(60);
    for (const char *id : {"3.1a", "3.2", "3.2b", "3.5a", "3.6a", "3.6c", "3.7", "3.8"})
        EXPECT_EQ(plain.verdict(id), "not a DVB stream") << id;
    for (const char *id : {"A.1", "A.2"}) EXPECT_EQ(plain.verdict(id), "not an ATSC stream") << id;
}

TEST_F(si_check, tables_that_have_no_business_on_a_pid_fail_its_row)
{
    const std::vector<std::pair<unsigned, std::string>> rows = {
        {0x10, "3.1a"},
        {0x11, "3.5a"},
        {0x12, "3.6a"},
        {0x13, "3.7" },
        {0x14, "3.8" }
    };
    for (const auto &[pid, id] : rows) {
        std::vector<unsigned> allowed;
        for (unsigned table_id = 0; table_id < 0xFC; ++table_id) {
            judged_stream one;
            one.section(0, pid == 0x10 ? 0x11 : 0x10, pid == 0x10 ? sdt_of({}) : nit_section());
            one.section(0.1, pid, long_section(table_id, 1, hex("0000 0000 0000"))).judge_at(0.2);
            if (one.row(id).log.count == 0) allowed.push_back(table_id);
        }
        std::vector<unsigned> expected;
        if (pid == 0x10) expected = {0x40, 0x41, 0x72};
        if (pid == 0x11) expected = {0x42, 0x46, 0x4A, 0x72};
        if (pid == 0x12)
            for (unsigned table_id = 0x4E; table_id <= 0x6F; ++table_id) expected.push_back(table_id);
        if (pid == 0x12) expected.insert(expected.end(), {0x72, 0x77});
        if (pid == 0x13) expected = {0x71, 0x72};
        if (pid == 0x14) expected = {0x70, 0x72, 0x73};
        EXPECT_EQ(allowed, expected) << id;
    }
}

TEST_F(si_check, a_pid_that_a_pmt_names_otherwise_has_no_tables_of_its_own)
{
    stream.section(0, 0x14, tdt_section());
    stream.section(0, 0,
                   pat_section(1, {
                                      {1, 0x11}
    }));
    stream.section(0, 0x11, pmt_of_one()).judge_at(1);
    EXPECT_EQ(stream.verdict("3.5a"), "no SDT in the recording");
}

TEST_F(si_check, an_rst_needs_no_repetition)
{
    stream.section(0, 0x10, nit_section()).judge_at(1);
    EXPECT_EQ(stream.verdict("3.7"), "pass");
    EXPECT_FALSE(stream.row("3.7").limit);
    EXPECT_FALSE(stream.row("3.7").log.worst);
}

TEST_F(si_check, an_sdt_comes_every_two_seconds_and_a_tdt_every_thirty)
{
    stream.every(2.1, 0, 64, 0x11, sdt_of({})).every(31.5, 64, 127, 0x14, tdt_section()).judge_at(127);
    EXPECT_EQ(stream.verdict("3.5a"), "fail 1");
    EXPECT_EQ(stream.row("3.5a").log.first.ticks, ticks_at(127));
    EXPECT_EQ(stream.verdict("3.8"), "fail 1");
    EXPECT_EQ(stream.row("3.8").log.first.ticks, ticks_at(64));
    EXPECT_EQ(stream.row("3.5a").limit, 2);
    EXPECT_EQ(stream.row("3.8").limit, 30);
}

TEST_F(si_check, other_limits_are_judged)
{
    limits values;
    values.nit_interval_ticks = ticks_at(1);
    values.sdt_interval_ticks = ticks_at(1);
    judged_stream other(values);
    other.every(1.2, 0, 6, 0x10, nit_section()).every(1.2, 6, 12, 0x11, sdt_of({})).judge_at(12);
    EXPECT_EQ(other.verdict("3.1a"), "fail 6");
    EXPECT_EQ(other.verdict("3.5a"), "fail 6");
}

TEST_F(si_check, without_times_intervals_are_not_measured)
{
    stream.has_times = false;
    stream.section(0, 0x10, nit_section()).section(0, 0x11, sdt_of({})).section(0, 0x14, tdt_section());
    stream.section(0, 0x12, eit_of(0x4E, 1, 0)).section(0, 0x11, long_section(0x4A, 1, hex("F000 F000")));
    stream.section(0, 0, pat_of_one()).section(0, 0x100, pmt_of_one()).judge_at(0);
    for (const char *id :
         {"1.3a", "1.5a", "1.6", "2.5", "3.1a", "3.2", "3.2b", "3.4a", "3.5a", "3.6a", "3.6c", "3.8", "X.1"})
        EXPECT_EQ(stream.verdict(id), "no times") << id;
    EXPECT_EQ(stream.verdict("3.7"), "pass");
}

struct optional_si_check : si_check {
    /// The verdict of 3.2 on a table that comes twice, so many seconds apart.
    static std::string verdict_on(unsigned pid, const bytes &table, double interval)
    {
        judged_stream stream;
        stream.section(1, pid, table).section(1 + interval, pid, table).judge_at(2 + interval);
        return stream.verdict("3.2");
    }
};

TEST_F(optional_si_check, each_table_has_its_limit_and_a_tolerance)
{
    bytes tot = hex("73 70 0B C079124500 F000");
    tot = join({tot, big_endian(mpeg_ts_crc32(tot.data(), tot.data() + tot.size()), 4)});
    struct one_table {
        unsigned pid;
        bytes section;
        double limit;
    };
    for (const one_table &table : {
             one_table{0x11, long_section(0x4A,   1,                  hex("F000 F000")), 10},
             one_table{0x10,  long_section(0x41,                     1,                                    hex("F000 F000")), 10},
             one_table{0x11,   long_section(0x46,1,hex("0001 FF")), 10},
             one_table{0x12, long_section(0x4F, 1,                                  hex("0001 0001 00 4E")), 20},
             one_table{0x14,  tot,                     30                                   },
    }) {
        EXPECT_EQ(verdict_on(table.pid, table.section, 1.05 * table.limit + 1e-6), "fail 1");
        EXPECT_EQ(verdict_on(table.pid, table.section, 1.05 * table.limit), "pass");
    }
}

TEST_F(optional_si_check, both_sections_of_eit_of_others_are_waited_for)
{
    for (int i = 0; i < 3; ++i)
        stream.section(i * 21, 0x12, eit_of(0x4F, 1, 0)).section(i * 21 + 1, 0x12, eit_of(0x4F, 1, 1));
    stream.judge_at(60);
    EXPECT_EQ(stream.verdict("3.2"), "pass");
    EXPECT_DOUBLE_EQ(*stream.row("3.2").log.worst, 21);
    EXPECT_FALSE(stream.row("3.2").limit);
}

TEST_F(optional_si_check, what_stays_away_to_the_end_fails)
{
    stream.section(0, 0x11, long_section(0x4A, 1, hex("F000 F000"))).judge_at(10.6);
    EXPECT_EQ(stream.verdict("3.2"), "fail 1");
}

TEST_F(optional_si_check, a_table_that_is_present_is_waited_for_from_the_start_on)
{
    const bytes bat = long_section(0x4A, 1, hex("F000 F000"));
    stream.section(0, 0x10, nit_section()).section(10.5, 0x11, bat).judge_at(12);
    EXPECT_EQ(stream.verdict("3.2"), "pass");
    judged_stream late;
    late.section(0, 0x10, nit_section()).section(10.6, 0x11, bat).judge_at(12);
    EXPECT_EQ(late.verdict("3.2"), "fail 1");
    EXPECT_DOUBLE_EQ(*late.row("3.2").log.worst, 10.6);
}

TEST_F(optional_si_check, numbers_of_the_schedule_are_waited_for_from_the_start_on_in_its_first_version)
{
    limits values;
    values.eit_schedule_ticks = ticks_at(30);
    for (const unsigned version : {0u, 1u}) {
        section_fields fields;
        fields.version_number = version;
        fields.section_number = 8;
        fields.last_section_number = 8;
        judged_stream judged(values);
        judged.section(0, 0x12, long_section(0x50, 1, hex("0001 0001 08 50")));
        judged.section(31, 0x12, long_section(0x50, 1, hex("0001 0001 08 50")));
        judged.section(32, 0x12, long_section(0x50, 1, hex("0001 0001 08 50"), fields)).judge_at(40);
        EXPECT_EQ(judged.verdict("3.2"), version == 0 ? "fail 1" : "pass");
    }
}

TEST_F(optional_si_check, bouquets_are_waited_for_each)
{
    stream.every(5, 0, 30, 0x11, long_section(0x4A, 1, hex("F000 F000")));
    stream.every(10, 9, 30, 0x11, long_section(0x4A, 2, hex("F000 F000"))).judge_at(34);
    EXPECT_EQ(stream.verdict("3.2"), "pass");
    judged_stream longer;
    longer.section(0, 0x11, long_section(0x4A, 2, hex("F000 F000")));
    longer.every(5, 0, 30, 0x11, long_section(0x4A, 1, hex("F000 F000"))).judge_at(34);
    EXPECT_EQ(longer.verdict("3.2"), "fail 1");
}

TEST_F(optional_si_check, without_any_of_them_there_is_no_si_table)
{
    stream.section(0, 0x10, nit_section()).judge_at(60);
    EXPECT_EQ(stream.verdict("3.2"), "no SI table in the recording");
}

TEST_F(optional_si_check, a_table_in_a_short_recording_is_not_measured)
{
    stream.section(0, 0x11, long_section(0x4A, 1, hex("F000 F000"))).judge_at(9.9);
    EXPECT_EQ(stream.verdict("3.2"), "recording shorter than the limit");
}

TEST_F(optional_si_check, what_is_not_measured_has_no_worst)
{
    stream.every(5, 0, 20, 0x11, long_section(0x4A, 1, hex("F000 F000")));
    stream.section(0, 0x12, eit_of(0x4F, 1, 0)).judge_at(19);
    EXPECT_EQ(stream.verdict("3.2"), "recording shorter than the limit");
    EXPECT_FALSE(stream.row("3.2").log.worst);
}

TEST_F(optional_si_check, eit_schedule_is_shown_and_not_judged)
{
    stream.section(0, 0x12, eit_of(0x50, 1, 8)).section(100, 0x12, eit_of(0x50, 1, 8)).judge_at(300);
    EXPECT_EQ(stream.verdict("3.2"), "pass");
    EXPECT_DOUBLE_EQ(*stream.row("3.2").log.worst, 100);
    EXPECT_EQ(stream.row("3.2").log.count, 0u);
}

TEST_F(optional_si_check, eit_schedule_alone_without_an_interval_is_not_measured)
{
    stream.section(0, 0x12, eit_of(0x50, 1, 8)).judge_at(300);
    EXPECT_EQ(stream.verdict("3.2"), "recording shorter than the limit");
}

TEST_F(optional_si_check, eit_schedule_is_judged_by_a_limit)
{
    limits values;
    values.eit_schedule_ticks = ticks_at(30);
    judged_stream judged(values);
    judged.section(0, 0x12, eit_of(0x50, 1, 8)).section(31.6, 0x12, eit_of(0x50, 1, 8)).judge_at(40);
    EXPECT_EQ(judged.verdict("3.2"), "fail 1");
    judged_stream within(values);
    within.section(0, 0x12, eit_of(0x50, 1, 8)).section(31.5, 0x12, eit_of(0x50, 1, 8)).judge_at(60);
    EXPECT_EQ(within.verdict("3.2"), "pass");
}

struct gap_check : si_check {};

TEST_F(gap_check, the_shortest_gap_is_shown_and_not_judged)
{
    stream.section(0, 0x10, nit_section()).section(1, 0x10, nit_section()).section(1.01, 0x10, nit_section());
    stream.judge_at(2);
    EXPECT_EQ(stream.verdict("3.2b"), "pass");
    EXPECT_DOUBLE_EQ(*stream.row("3.2b").log.worst, 0.01);
    EXPECT_EQ(stream.row("3.2b").limit, 0.025);
    EXPECT_EQ(stream.row("3.2b").log.count, 0u);
}

TEST_F(gap_check, a_limit_judges_it_with_a_tolerance)
{
    limits values;
    values.si_minimum_gap_ticks = ticks_at(0.02);
    judged_stream within(values);
    within.section(0, 0x10, nit_section()).section(0.019, 0x10, nit_section()).judge_at(2);
    EXPECT_EQ(within.verdict("3.2b"), "pass");
    judged_stream beyond(values);
    beyond.section(0, 0x10, nit_section()).section(0.019 - 1e-7, 0x10, nit_section()).judge_at(2);
    EXPECT_EQ(beyond.verdict("3.2b"), "fail 1");
    EXPECT_EQ(beyond.row("3.2b").limit, 0.02);
}

TEST_F(gap_check, a_gap_begins_behind_the_last_packet_of_a_section)
{
    const bytes longer = long_section(0x40, 1, join({hex("F0C8"), repeated(0, 200), hex("F000")}));
    const stream_builder built = stream_builder().section(0x10, longer);
    ASSERT_EQ(built.packet_count(), 2u);
    for (const double start : {0.0, 3.0}) {
        stream.packet(start, built.data().data());
        stream.packet(start + 1, built.data().data() + 188);
    }
    stream.judge_at(5);
    EXPECT_DOUBLE_EQ(*stream.row("3.2b").log.worst, 2);
}

TEST_F(gap_check, tables_differ_and_only_some_are_looked_at)
{
    stream.section(0, 0x10, nit_section()).section(0.01, 0x10, long_section(0x40, 2, hex("F000 F000")));
    stream.section(0.1, 0x11, long_section(0x4A, 1, hex("F000 F000")));
    stream.section(0.11, 0x11, long_section(0x4A, 1, hex("F000 F000"))).judge_at(5);
    EXPECT_EQ(stream.verdict("3.2b"), "recording shorter than the limit");
    judged_stream none;
    none.section(0, 0x11, long_section(0x4A, 1, hex("F000 F000"))).judge_at(5);
    EXPECT_EQ(none.verdict("3.2b"), "no SI table in the recording");
    const std::vector<std::pair<unsigned, bytes>> looked_at = {
        {0x11,                sdt_of({})                },
        {0x12,                eit_of(0x4E,                1, 0)},
        {0x13,                 short_section(0x71,                                           repeated(0, 9))},
        {0x14,tdt_section()}
    };
    for (const auto &[pid, section] : looked_at) {
        judged_stream one;
        one.section(0, 0x10, nit_section()).section(0, pid, section).section(0.5, pid, section).judge_at(5);
        EXPECT_DOUBLE_EQ(one.row("3.2b").log.worst.value_or(0), 0.5) << pid;
    }
}

TEST_F(gap_check, a_gap_over_a_break_does_not_count)
{
    stream.section(0, 0x10, nit_section()).time_break(0.1, 0.2).section(0.3, 0x10, nit_section()).judge_at(5);
    EXPECT_EQ(stream.verdict("3.2b"), "recording shorter than the limit");
}

struct eit_check : si_check {
    /// PAT and SDT with the flag each half second, to the end.
    static void begin(judged_stream &stream)
    {
        stream.section(0, 0, pat_of_one())
            .section(0, 0x11,
                     sdt_of({
                         {1, true}
        }));
    }
};

TEST_F(eit_check, both_sections_every_two_seconds_pass)
{
    begin(stream);
    for (int i = 0; i < 5; ++i)
        stream.section(i * 2.1, 0x12, eit_of(0x4E, 1, 0)).section(i * 2.1, 0x12, eit_of(0x4E, 1, 1));
    stream.judge_at(10);
    EXPECT_EQ(stream.verdict("3.6a"), "pass");
    EXPECT_EQ(stream.row("3.6a").limit, 2);
    EXPECT_EQ(stream.verdict("3.6c"), "pass");
}

TEST_F(eit_check, a_section_that_stays_away_for_longer_fails)
{
    begin(stream);
    stream.section(0, 0x12, eit_of(0x4E, 1, 1));
    for (int i = 0; i < 5; ++i) stream.section(i, 0x12, eit_of(0x4E, 1, 0));
    stream.judge_at(4.2);
    EXPECT_EQ(stream.verdict("3.6a"), "fail 1");
    EXPECT_EQ(stream.row("3.6a").log.details.at(0).text, "no EIT p/f of 0x0001, section 1 for 4200 ms");
}

TEST_F(eit_check, services_without_the_flag_or_outside_of_the_pat_are_not_waited_for)
{
    stream.section(0, 0, pat_of_one())
        .section(0, 0x11,
                 sdt_of({
                     {1, false},
                     {2, true }
    }));
    stream.section(0, 0x12, eit_of(0x4E, 1, 0)).section(0, 0x12, eit_of(0x4E, 2, 0)).judge_at(10);
    EXPECT_EQ(stream.verdict("3.6a"), "no EIT p/f");
}

TEST_F(eit_check, a_service_without_any_eit_is_not_waited_for)
{
    begin(stream);
    stream.judge_at(10);
    EXPECT_EQ(stream.verdict("3.6a"), "no EIT p/f");
    EXPECT_EQ(stream.verdict("3.6c"), "no EIT p/f");
    judged_stream whole({}, true);
    begin(whole);
    whole.judge_at(10);
    EXPECT_EQ(whole.verdict("3.6a"), "fail 1");
}

TEST_F(eit_check, the_clock_starts_with_the_flag_and_ends_with_it)
{
    stream.section(0, 0, pat_of_one()).section(0, 0x12, eit_of(0x4E, 1, 0));
    stream.section(5, 0x11,
                   sdt_of({
                       {1, true}
    }));
    stream.section(7, 0x12, eit_of(0x4E, 1, 0)).section(7, 0x12, eit_of(0x4E, 1, 1));
    stream.section(9, 0x11,
                   sdt_of(
                       {
                           {1, false}
    },
                       {1}));
    stream.judge_at(20);
    EXPECT_EQ(stream.verdict("3.6a"), "pass");
}

TEST_F(eit_check, a_pmt_that_moves_to_another_pid_leaves_the_service_waited_for)
{
    begin(stream);
    stream.section(0, 0x12, eit_of(0x4E, 1, 0)).section(0, 0x12, eit_of(0x4E, 1, 1));
    stream.section(2, 0,
                   pat_section(1,
                               {
                                   {1, 0x200}
    },
                               {1}));
    stream.section(4, 0x12, eit_of(0x4E, 1, 0)).section(4, 0x12, eit_of(0x4E, 1, 1)).judge_at(5);
    EXPECT_EQ(stream.verdict("3.6a"), "fail 2");
    EXPECT_DOUBLE_EQ(*stream.row("3.6a").log.worst, 4);
}

TEST_F(eit_check, a_service_that_leaves_the_pat_is_waited_for_no_more)
{
    begin(stream);
    stream.section(1, 0x12, eit_of(0x4E, 1, 0)).section(1, 0x12, eit_of(0x4E, 1, 1));
    stream.section(3, 0, pat_section(1, {}, {1})).judge_at(20);
    EXPECT_EQ(stream.verdict("3.6a"), "pass");
}

TEST_F(eit_check, half_a_table_is_told_at_the_end)
{
    stream.section(3, 0x12, eit_of(0x4E, 7, 0)).section(4.9, 0x12, eit_of(0x4E, 7, 0)).judge_at(5);
    EXPECT_EQ(stream.verdict("3.6c"), "fail 1");
    EXPECT_EQ(stream.row("3.6c").log.first.ticks, ticks_at(3));
    EXPECT_EQ(stream.row("3.6c").log.details.at(0).text, "service 0x0007: section 1 never came");
    EXPECT_FALSE(stream.row("3.6c").limit);
    judged_stream later;
    later.section(3 + 1e-6, 0x12, eit_of(0x4E, 7, 1)).judge_at(5);
    EXPECT_EQ(later.verdict("3.6c"), "recording shorter than the limit");
    judged_stream whole;
    whole.section(4, 0x12, eit_of(0x4E, 7, 1)).section(4, 0x12, eit_of(0x4E, 7, 0));
    whole.section(4, 0x12, eit_of(0x4E, 8, 0)).judge_at(5);
    EXPECT_EQ(whole.verdict("3.6c"), "pass");
}

TEST_F(eit_check, half_a_table_of_others_has_twenty_seconds)
{
    stream.section(0, 0x12, eit_of(0x4F, 7, 1)).judge_at(19.9);
    EXPECT_EQ(stream.verdict("3.6c"), "recording shorter than the limit");
    judged_stream longer;
    longer.section(0, 0x12, eit_of(0x4F, 7, 1)).judge_at(20);
    EXPECT_EQ(longer.verdict("3.6c"), "fail 1");
}

TEST_F(eit_check, half_a_table_of_a_variable_bitrate_is_looked_at_to_the_last_clock_point)
{
    stream.sure_to = 4.5;
    stream.end.clock_pids = {0x101};
    stream.section(3, 0x12, eit_of(0x4E, 7, 0)).see(4.5).judge_at(5);
    EXPECT_EQ(stream.verdict("3.6c"), "recording shorter than the limit");
}

TEST_F(eit_check, half_a_table_is_waited_for_anew_behind_a_time_break)
{
    stream.section(0, 0x12, eit_of(0x4E, 7, 0)).time_break(3, 8).judge_at(9.9);
    EXPECT_EQ(stream.verdict("3.6c"), "recording shorter than the limit");
    judged_stream longer;
    longer.section(0, 0x12, eit_of(0x4E, 7, 0)).time_break(3, 8).judge_at(10);
    EXPECT_EQ(longer.verdict("3.6c"), "fail 1");
}
