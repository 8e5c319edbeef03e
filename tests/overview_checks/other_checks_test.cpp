#include "tests/overview_checks/judged_stream.h"
#include "tests/overview_meters/meter_packets.h"

#include <gtest/gtest.h>

struct checks : testing::Test {
    /// PAT and PMT of one program at 0.
    void begin() { stream.section(0, 0, pat_of_one()).section(0, 0x100, pmt_of_one()); }

    judged_stream stream;
};

TEST_F(checks, stand_in_their_order_with_their_names)
{
    stream.judge_at(1);
    std::vector<std::string> ids;
    for (const check_result &row : stream.results) ids.push_back(row.id);
    EXPECT_EQ(ids, (std::vector<std::string>{"1.1",  "1.2",  "1.3a", "1.4",  "1.5a", "1.6",  "2.1", "2.2",
                                             "2.3a", "2.3b", "2.4",  "2.5",  "2.6",  "3.1a", "3.2", "3.2b",
                                             "3.4a", "3.5a", "3.6a", "3.6c", "3.7",  "3.8",  "3.3", "3.9",
                                             "3.10", "A.1",  "A.2",  "X.1",  "X.2",  "X.3"}));
    EXPECT_EQ(stream.row("2.3b").name, "PCR_discontinuity_indicator_error");
    for (const check_result &row : stream.results)
        EXPECT_EQ(row.priority, row.id[0] == '1' ? 1 : row.id[0] == '2' ? 2 : 3) << row.id;
}

TEST_F(checks, a_recording_of_nothing_says_why_not_or_passes)
{
    stream.judge_at(1);
    EXPECT_EQ(stream.verdict("1.6"), "no PAT");
    EXPECT_EQ(stream.verdict("2.3a"), "no PAT");
    EXPECT_EQ(stream.verdict("2.3b"), "no PAT");
    EXPECT_EQ(stream.verdict("2.4"), "variable bitrate");
    EXPECT_EQ(stream.verdict("2.5"), "no PTS");
    EXPECT_EQ(stream.verdict("3.4a"), "no PAT");
    EXPECT_EQ(stream.verdict("X.1"), "no PTS");
    EXPECT_EQ(stream.verdict("X.3"), "no DTS");
    for (const char *id : {"3.3", "3.9", "3.10"}) EXPECT_EQ(stream.verdict(id), "needs the decoder model");
    for (const char *id : {"1.1", "1.2", "1.4", "2.1", "2.2", "2.6", "X.2"}) {
        EXPECT_EQ(stream.verdict(id), "pass") << id;
        EXPECT_FALSE(stream.row(id).log.worst) << id;
        EXPECT_EQ(stream.row(id).worst_unit, "") << id;
        EXPECT_EQ(stream.row(id).limit.has_value(), std::string(id) != "2.6") << id;
        EXPECT_EQ(stream.row(id).limit.value_or(0), 0) << id;
    }
}

TEST_F(checks, faults_of_packets_fail_their_rows)
{
    stream.faults.on_sync_loss(moment_at(1, 0));
    stream.faults.on_bad_sync_byte(moment_at(2, 0));
    stream.faults.on_transport_error(0x100, moment_at(3, 0));
    ts_packet packet = packet_of(0x101, moment_at(4, 0));
    packet.continuity_counter = 3;
    stream.continuity.on_packet(packet);
    packet.continuity_counter = 5;
    packet.at = moment_at(5, 0);
    stream.continuity.on_packet(packet);
    stream.judge_at(1);
    EXPECT_EQ(stream.verdict("1.1"), "fail 1");
    EXPECT_EQ(stream.verdict("1.2"), "fail 3");
    EXPECT_EQ(stream.verdict("2.1"), "fail 1");
    EXPECT_EQ(stream.verdict("1.4"), "fail 1");
    EXPECT_EQ(stream.row("1.4").log.first.packet, 5u);
}

TEST_F(checks, a_pid_of_a_pmt_that_stays_away_fails)
{
    begin();
    stream.absence.start(0x101, stream.at(0));
    stream.seen.insert(0x101);
    stream.judge_at(5 + 1e-6);
    EXPECT_EQ(stream.verdict("1.6"), "fail 1");
    EXPECT_EQ(stream.row("1.6").limit, 5);
    EXPECT_EQ(stream.row("1.6").worst_unit, "s");
    EXPECT_EQ(stream.row("1.6").log.details.at(0).text, "no packet of the PID for 5000.001 ms");
    judged_stream within;
    within.section(0, 0, pat_of_one()).section(0, 0x100, pmt_of_one());
    within.absence.start(0x101, within.at(0));
    within.seen.insert(0x101);
    EXPECT_EQ(within.judge_at(5).verdict("1.6"), "pass");
}

TEST_F(checks, absent_pids_need_a_pmt_and_time_enough)
{
    begin();
    stream.absence.start(0x101, stream.at(0));
    stream.seen.insert(0x101);
    EXPECT_EQ(stream.judge_at(4.9).verdict("1.6"), "recording shorter than the limit");
    judged_stream without_pmt;
    without_pmt.section(0, 0, pat_of_one()).judge_at(10);
    EXPECT_EQ(without_pmt.verdict("1.6"), "no PMT");
    EXPECT_EQ(without_pmt.verdict("2.3a"), "no PMT");
}

TEST_F(checks, a_pid_of_a_pmt_that_never_comes_fails_in_the_whole_multiplex)
{
    for (const bool whole : {false, true}) {
        judged_stream one({}, whole);
        one.section(0, 0, pat_of_one()).section(0, 0x100, pmt_of_one());
        one.absence.start(0x101, one.at(0));
        EXPECT_EQ(one.judge_at(10).verdict("1.6"), whole ? "fail 1" : "recording shorter than the limit");
    }
}

TEST_F(checks, a_wrong_crc_fails_on_the_tables_own_pid_only)
{
    const auto spoilt = [](bytes section) {
        section[section.size() - 1] ^= 1;
        return section;
    };
    begin();
    stream.section(0, 0x1FFB, long_section(0xC7, 0, hex("00 0001 0100 FD00 E0 00000000 F000 F000")));
    const auto count_of = [&](unsigned pid, unsigned table_id) {
        judged_stream one;
        one.section(0, 0, pat_of_one()).section(0, 0x100, pmt_of_one());
        one.section(0, 0x1FFB, long_section(0xC7, 0, hex("00 0001 0100 FD00 E0 00000000 F000 F000")));
        one.section(0, pid, spoilt(long_section(table_id, 1, hex("0000")))).judge_at(1);
        return one.row("2.2").log.count;
    };
    for (unsigned table_id = 0; table_id < 0xFC; ++table_id) {
        const bool is_eit = table_id >= 0x4E && table_id <= 0x6F;
        const bool is_psip = (table_id >= 0xC7 && table_id <= 0xCD) || table_id == 0xD3 || table_id == 0xD4;
        EXPECT_EQ(count_of(0x00, table_id), table_id == 0x00 ? 1u : 0u) << table_id;
        EXPECT_EQ(count_of(0x01, table_id), table_id == 0x01 ? 1u : 0u) << table_id;
        EXPECT_EQ(count_of(0x100, table_id), table_id == 0x02 ? 1u : 0u) << table_id;
        EXPECT_EQ(count_of(0x10, table_id), table_id == 0x40 || table_id == 0x41 ? 1u : 0u) << table_id;
        EXPECT_EQ(count_of(0x11, table_id),
                  table_id == 0x42 || table_id == 0x46 || table_id == 0x4A ? 1u : 0u);
        EXPECT_EQ(count_of(0x12, table_id), is_eit ? 1u : 0u) << table_id;
        EXPECT_EQ(count_of(0x1FFB, table_id), is_psip ? 1u : 0u) << table_id;
        EXPECT_EQ(count_of(0x1D00, table_id), is_psip ? 1u : 0u) << table_id;
    }
    EXPECT_EQ(count_of(0x14, 0x73), 1u);
    EXPECT_EQ(count_of(0x14, 0x70), 0u);
    EXPECT_EQ(count_of(0x13, 0x71), 0u);
}

TEST_F(checks, the_text_of_a_wrong_crc_names_the_table)
{
    bytes wrong = nit_section();
    wrong[9] ^= 1;
    stream.section(0.5, 0x10, wrong).judge_at(1);
    EXPECT_EQ(stream.verdict("2.2"), "fail 1");
    EXPECT_EQ(stream.row("2.2").log.details.at(0).text, "wrong CRC_32 of NIT");
    EXPECT_EQ(stream.row("2.2").log.details.at(0).pid, 0x10);
}

TEST_F(checks, another_table_on_pid_1_fails)
{
    stream.section(0, 0x01, long_section(0x03, 1, {})).judge_at(1);
    EXPECT_EQ(stream.verdict("2.6"), "fail 1");
    judged_stream cat;
    cat.section(0, 0x01, long_section(0x01, 0xFFFF, {})).judge_at(1);
    EXPECT_EQ(cat.verdict("2.6"), "pass");
}

TEST_F(checks, of_the_whole_multiplex_conditional_access_needs_a_cat)
{
    const bytes scrambled = pmt_section(1, 0x101, descriptor(0x09, hex("0B00 E501")),
                                        {
                                            {0x02, 0x101, {}}
    });
    const auto verdict = [&](bool whole, double end, bool with_cat) {
        judged_stream one({}, whole);
        one.section(1, 0, pat_of_one()).section(1, 0x100, scrambled);
        if (with_cat) one.section(20, 0x01, long_section(0x01, 0xFFFF, {}));
        return one.judge_at(end).verdict("2.6");
    };
    EXPECT_EQ(verdict(false, 30, false), "pass");
    EXPECT_EQ(verdict(true, 30, false), "fail 1");
    EXPECT_EQ(verdict(true, 30, true), "pass");
    EXPECT_EQ(verdict(true, 10.5, false), "recording shorter than the limit");
    judged_stream clear({}, true);
    clear.section(1, 0, pat_of_one()).section(1, 0x100, pmt_of_one()).judge_at(30);
    EXPECT_EQ(clear.verdict("2.6"), "pass");
}

struct pcr_checks : checks {
    /// PCRs of the program's clock, so many milliseconds apart.
    void pcrs(std::initializer_list<int> steps_ms)
    {
        int64_t now = 0;
        stream.pcr.on_program_clock(0x101, moment_at(10, 0));
        stream.pcr.on_packet(pcr_packet(0x101, moment_at(10, 0), 0), {}, true);
        uint64_t packet = 10;
        for (const int step : steps_ms) {
            now += step * ms;
            packet += 10;
            stream.pcr.on_packet(pcr_packet(0x101, moment_at(packet, now), now), {}, true);
        }
    }
};

TEST_F(pcr_checks, intervals_within_100_ms_pass)
{
    begin();
    pcrs({40, 100, 40});
    stream.judge_at(0.18);
    EXPECT_EQ(stream.verdict("2.3a"), "pass");
    EXPECT_DOUBLE_EQ(*stream.row("2.3a").log.worst, 0.1);
    EXPECT_EQ(stream.row("2.3a").limit, 0.1);
    EXPECT_EQ(stream.verdict("2.3b"), "pass");
    EXPECT_EQ(stream.row("2.3b").limit, 0);
}

TEST_F(pcr_checks, a_leap_fails_both_rows)
{
    begin();
    pcrs({40, 101, 40});
    stream.judge_at(0.19);
    EXPECT_EQ(stream.verdict("2.3a"), "fail 1");
    EXPECT_EQ(stream.verdict("2.3b"), "fail 1");
    EXPECT_FALSE(stream.row("2.3b").log.worst);
}

TEST_F(pcr_checks, a_program_without_pcrs_is_not_measured)
{
    begin();
    stream.judge_at(0.05);
    EXPECT_EQ(stream.verdict("2.3a"), "no PCR");
    EXPECT_EQ(stream.verdict("2.3b"), "no PCR");
}

TEST_F(pcr_checks, accuracy_is_measured_at_constant_bitrate)
{
    begin();
    stream.end.constant_bitrate = true;
    for (int i = 0; i < 400; ++i) {
        const int64_t PCR = i * 30 * ms + (i == 200 ? 27 : 0);
        stream.pcr.on_packet(pcr_packet(0x101, moment_at(static_cast<uint64_t>(10 * i), PCR), PCR), {}, true);
    }
    stream.judge_at(12);
    EXPECT_EQ(stream.verdict("2.4"), "fail 1");
    EXPECT_EQ(stream.row("2.4").worst_unit, "ns");
    EXPECT_EQ(stream.row("2.4").limit, 500);
    EXPECT_NEAR(stream.row("2.4").log.worst.value_or(0), 1000, 20);
}

TEST_F(pcr_checks, few_pcrs_have_no_accuracy)
{
    begin();
    stream.end.constant_bitrate = true;
    pcrs({40, 40});
    stream.judge_at(1);
    EXPECT_EQ(stream.verdict("2.4"), "too few PCRs");
}

struct unreferenced : checks {};

TEST_F(unreferenced, a_pid_that_no_table_names_fails_beyond_the_tolerance)
{
    begin();
    stream.pid(0x200, 1, 1.525);
    stream.pid(0x201, 2, 2.525 + 1e-6);
    stream.judge_at(10);
    EXPECT_EQ(stream.verdict("3.4a"), "fail 1");
    const check_result &row = stream.row("3.4a");
    EXPECT_EQ(row.log.details.at(0).pid, 0x201);
    EXPECT_EQ(row.log.first.ticks, ticks_at(2));
    EXPECT_EQ(row.limit, 0.5);
    EXPECT_NEAR(row.log.worst.value_or(0), 0.525001, 1e-9);
}

TEST_F(unreferenced, what_any_table_ever_named_is_referenced)
{
    const bytes ca = descriptor(0x09, hex("0B00 E501"));
    stream.section(0, 0, pat_of_one());
    stream.section(0, 0x100,
                   pmt_section(1, 0x103, ca,
                               {
                                   {0x02, 0x101, descriptor(0x09, hex("0B00 E502"))}
    }));
    stream.section(0, 0x01, long_section(0x01, 0xFFFF, descriptor(0x09, hex("0B00 E503"))));
    stream.section(0, 0x1FFB, long_section(0xC7, 0, hex("00 0001 0100 FD00 E0 00000000 F000 F000")));
    stream.section(5, 0, pat_section(1, {}, {1}));
    for (const unsigned number : {0x101u, 0x103u, 0x501u, 0x502u, 0x503u, 0x1D00u}) stream.pid(number, 0, 9);
    stream.judge_at(10);
    EXPECT_EQ(stream.verdict("3.4a"), "pass");
}

TEST_F(unreferenced, reserved_pids_null_packets_and_transport_errors_need_no_name)
{
    begin();
    for (const unsigned number : {0x02u, 0x1Fu, 0x1FFFu}) stream.pid(number, 0, 9);
    pid_facts &garbage = stream.pid(0x300, 0, 9);
    garbage.transport_errors = garbage.packets;
    stream.judge_at(10);
    EXPECT_EQ(stream.verdict("3.4a"), "pass");
    judged_stream above;
    above.section(0, 0, pat_of_one()).section(0, 0x100, pmt_of_one());
    above.pid(0x20, 0, 9);
    above.pid(0x1FF0, 0, 9);
    above.pid(0x1FFE, 0, 9);
    EXPECT_EQ(above.judge_at(10).verdict("3.4a"), "fail 3");
}

TEST_F(unreferenced, isdb_and_atsc_have_more_pids_of_their_own)
{
    begin();
    stream.section(0, 0x24, long_section(0xC4, 1, {}));
    stream.pid(0x20, 0, 9);
    stream.pid(0x2F, 0, 9);
    EXPECT_EQ(stream.judge_at(10).verdict("3.4a"), "pass");
    judged_stream atsc;
    atsc.section(0, 0, pat_of_one()).section(0, 0x100, pmt_of_one());
    atsc.section(0, 0x1FFB, long_section(0xC7, 0, hex("00 0000 F000")));
    atsc.pid(0x1FF0, 0, 9);
    atsc.pid(0x1FFE, 0, 9);
    EXPECT_EQ(atsc.judge_at(10).verdict("3.4a"), "pass");
}

TEST_F(unreferenced, what_cannot_be_known_is_not_measured)
{
    stream.section(0, 0,
                   pat_section(1, {
                                      {1, 0x100},
                                      {2, 0x200}
    }));
    stream.section(0, 0x100, pmt_of_one());
    stream.pid(0x300, 0, 9);
    EXPECT_EQ(stream.judge_at(10).verdict("3.4a"), "program without PMT");
    judged_stream scrambled;
    scrambled.section(0, 0, pat_of_one()).section(0, 0x100, pmt_of_one());
    scrambled.pid(0x300, 0, 9).scrambled = 1;
    EXPECT_EQ(scrambled.judge_at(10).verdict("3.4a"), "scrambled without a CAT");
    judged_stream with_cat;
    with_cat.section(0, 0, pat_of_one()).section(0, 0x100, pmt_of_one());
    with_cat.section(0, 0x01, long_section(0x01, 0xFFFF, {}));
    with_cat.pid(0x300, 0, 9).scrambled = 1;
    EXPECT_EQ(with_cat.judge_at(10).verdict("3.4a"), "fail 1");
}

TEST_F(unreferenced, in_a_recording_shorter_than_the_limit_it_is_not_measured)
{
    begin();
    EXPECT_EQ(stream.judge_at(0.49).verdict("3.4a"), "recording shorter than the limit");
    judged_stream broken;
    broken.section(0, 0, pat_of_one()).section(0, 0x100, pmt_of_one());
    broken.time_break(0.4, 1).time_break(1.4, 2).judge_at(2.4);
    EXPECT_EQ(broken.verdict("3.4a"), "recording shorter than the limit");
}

TEST_F(unreferenced, of_a_variable_bitrate_only_the_part_between_clock_points_counts)
{
    stream.sure_from = 1;
    stream.sure_to = 2;
    stream.end.clock_pids = {0x101};
    stream.section(1, 0, pat_of_one()).section(1, 0x100, pmt_of_one()).see(2);
    stream.pid(0x300, 0, 1.5);
    stream.pid(0x301, 1.6, 9);
    stream.judge_at(10);
    EXPECT_EQ(stream.verdict("3.4a"), "pass");
    EXPECT_NEAR(stream.row("3.4a").log.worst.value_or(0), 0.5, 1e-9);
}

struct atsc_checks : testing::Test {
    /// Tables of an ATSC recording, each within its limit, to the end.
    static void tables(judged_stream &stream, double end)
    {
        for (int i = 0; i * 0.1 <= end; ++i) {
            stream.section(i * 0.1, 0, pat_of_one());
            stream.section(i * 0.1, 0x1FFB, mgt);
            if (i % 4 == 0) stream.section(i * 0.1, 0x100, pmt_of_one()).section(i * 0.1, 0x1FFB, tvct);
            if (i % 10 == 0) stream.section(i * 0.1, 0x1FFB, stt);
        }
    }

    static inline const bytes mgt = long_section(0xC7, 0, hex("00 0001 0100 FD00 E0 00000000 F000 F000"));
    static inline const bytes tvct = long_section(0xC8, 1, hex("00 00 FC00"));
    static inline const bytes stt = long_section(0xCD, 0, hex("00 00000010 05 0000"));
    static inline const bytes rrt = long_section(0xCA, 0xFF01, hex("00 00 00 FC00"));
    static inline const bytes eit = long_section(0xCB, 1, hex("00 00"));
};

TEST_F(atsc_checks, tables_within_their_limits_pass)
{
    judged_stream stream;
    tables(stream, 5);
    stream.section(1, 0x1D00, eit).section(4, 0x1D00, eit).judge_at(5);
    EXPECT_EQ(stream.verdict("A.1"), "pass");
    EXPECT_EQ(stream.verdict("A.2"), "pass");
    EXPECT_DOUBLE_EQ(*stream.row("A.1").log.worst, 3);
    EXPECT_FALSE(stream.row("A.1").limit);
    EXPECT_EQ(stream.row("A.1").worst_unit, "s");
}

TEST_F(atsc_checks, each_table_has_its_limit_and_a_tolerance)
{
    struct one_table {
        bytes section;
        double limit;
    };
    for (const one_table &table : {
             one_table{mgt,  0.15},
             one_table{tvct, 0.4 },
             one_table{stt,  1   },
             one_table{rrt,  60  }
    }) {
        for (const bool beyond : {false, true}) {
            const double end = 100;
            judged_stream stream;
            for (const bytes &other : {mgt, tvct, stt})
                if (other != table.section) stream.every(0.1, 0, end, 0x1FFB, other);
            const double step = 1.05 * table.limit + (beyond ? 1e-6 : 0);
            stream.every(step, 0, end, 0x1FFB, table.section).judge_at(end);
            EXPECT_EQ(stream.verdict("A.1").substr(0, 4), beyond ? "fail" : "pass") << table.limit;
        }
    }
}

TEST_F(atsc_checks, without_a_tvct_or_an_stt_it_is_not_measured)
{
    judged_stream stream;
    stream.every(0.1, 0, 5, 0x1FFB, mgt).judge_at(5);
    EXPECT_EQ(stream.verdict("A.1"), "no TVCT in the recording");
    judged_stream no_stt;
    no_stt.every(0.1, 0, 5, 0x1FFB, mgt).every(0.1, 0, 5, 0x1FFB, tvct).judge_at(5);
    EXPECT_EQ(no_stt.verdict("A.1"), "no STT in the recording");
    judged_stream whole({}, true);
    whole.every(0.1, 0, 5, 0x1FFB, mgt).every(0.1, 0, 5, 0x1FFB, tvct).judge_at(5);
    EXPECT_EQ(whole.verdict("A.1"), "fail 1");
}

TEST_F(atsc_checks, psi_has_stricter_limits_with_a_tolerance)
{
    for (const double step : {0.105, 0.105 + 1e-6}) {
        judged_stream stream;
        stream.section(0, 0x1FFB, mgt).every(step, 0, 2, 0, pat_of_one());
        stream.every(0.4, 0, 2, 0x100, pmt_of_one()).judge_at(2);
        EXPECT_EQ(stream.verdict("A.2").substr(0, 4), step == 0.105 ? "pass" : "fail");
        EXPECT_EQ(stream.verdict("1.3a"), "pass");
    }
    for (const double step : {0.42, 0.42 + 1e-6}) {
        judged_stream stream;
        stream.section(0, 0x1FFB, mgt).every(0.1, 0, 2, 0, pat_of_one());
        stream.every(step, 0, 2, 0x100, pmt_of_one()).judge_at(2);
        EXPECT_EQ(stream.verdict("A.2").substr(0, 4), step == 0.42 ? "pass" : "fail");
        EXPECT_EQ(stream.verdict("1.5a"), "pass");
    }
}

TEST_F(atsc_checks, without_psi_it_says_which)
{
    judged_stream stream;
    EXPECT_EQ(stream.section(0, 0x1FFB, mgt).judge_at(5).verdict("A.2"), "no PAT");
    judged_stream without_pmt;
    without_pmt.section(0, 0x1FFB, mgt).every(0.1, 0, 5, 0, pat_of_one()).judge_at(5);
    EXPECT_EQ(without_pmt.verdict("A.2"), "no PMT");
}

TEST_F(checks, without_times_rows_of_intervals_say_so)
{
    stream.has_times = false;
    stream.judge_at(0);
    for (const char *id : {"1.3a", "1.5a", "1.6", "2.5", "3.4a", "X.1"})
        EXPECT_EQ(stream.verdict(id), "no times") << id;
    EXPECT_EQ(stream.verdict("2.3a"), "no PAT");
    judged_stream atsc;
    atsc.has_times = false;
    atsc.section(0, 0x1FFB, atsc_checks::mgt).judge_at(0);
    for (const char *id : {"A.1", "A.2"}) EXPECT_EQ(atsc.verdict(id), "no times") << id;
}

TEST_F(checks, changes_under_the_same_version_fail)
{
    stream.section(0, 0x10, nit_section()).section(1, 0x10, long_section(0x40, 1, hex("F001 00 F000")));
    stream.judge_at(2);
    EXPECT_EQ(stream.verdict("X.2"), "fail 1");
    EXPECT_EQ(stream.row("X.2").limit, 0);
}
