#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/health/continuity.h"

#include <cstdio>

struct continuity : report_test {
    static constexpr unsigned payload_only = 1;
    static constexpr unsigned adaptation_only = 2;
    static constexpr unsigned adaptation_and_payload = 3;

    static mpeg_ts_packet packet(unsigned pid, unsigned counter, unsigned adaptation_field_control)
    {
        mpeg_ts_packet tsp = {};
        tsp.pid = static_cast<uint16_t>(pid);
        tsp.continuity_counter = static_cast<uint8_t>(counter);
        tsp.adaptation_field_control = static_cast<uint8_t>(adaptation_field_control);
        return tsp;
    }

    /// What is printed for a packet with this counter.
    std::string check(unsigned pid, unsigned counter, unsigned adaptation_field_control = payload_only)
    {
        const mpeg_ts_packet tsp = packet(pid, counter, adaptation_field_control);
        p1_continuity_tracking(&tsp);
        return report();
    }

    /// The report of a run over 188-byte packets, between the start-up lines and the summary.
    std::string scan_of(const stream_builder &stream)
    {
        settings.packet_size_mode = 0;
        const std::string text = report_of_run(stream.data());
        const size_t start = text.find("bytes/packet\n") + 13;
        return text.substr(start, text.find("* Scan complete") - start);
    }
};

TEST_F(continuity, no_PID_has_a_counter_at_the_start)
{
    for (const uint8_t counter : last_continuity_counter) ASSERT_EQ(counter, 0xFF);
}

TEST_F(continuity, the_first_packet_of_a_PID_is_not_checked)
{
    for (unsigned pid = 0; pid <= 0x1FFF; ++pid) {
        ASSERT_EQ(check(pid, pid % 16, pid % 4), "");
        ASSERT_EQ(last_continuity_counter[pid], pid % 16);
    }
    EXPECT_EQ(errors.priority1_errors, 0u);
}

TEST_F(continuity, every_pair_of_counters_with_every_adaptation_field_control)
{
    for (unsigned control = 0; control <= 3; ++control)
        for (unsigned stored = 0; stored <= 15; ++stored)
            for (unsigned counter = 0; counter <= 15; ++counter) {
                process_state_reset();
                check(0x0ABC, stored);
                const bool has_payload = control == 1 || control == 3;
                const unsigned expected = has_payload ? (stored == 15 ? 0 : stored + 1) : stored;
                char alarm[128] = "";
                if (counter != expected)
                    std::snprintf(alarm, sizeof(alarm),
                                  "!!! ALARM: TS continuity counter error in PID 0x0abc (expect=%u cur=%u) "
                                  "adap=%u payload=%u\n",
                                  expected, counter, control >= 2 ? 1 : 0, has_payload ? 1 : 0);
                ASSERT_EQ(check(0x0ABC, counter, control), alarm);
                ASSERT_EQ(last_continuity_counter[0x0ABC], counter);
                ASSERT_EQ(errors.priority1_errors, counter != expected ? 1u : 0u);
                ASSERT_EQ(errors.continuity_errors, counter != expected ? 1u : 0u);
                ASSERT_EQ(errors.priority2_errors, 0u);
            }
}

TEST_F(continuity, a_repeated_packet_with_payload_is_an_error)
{
    EXPECT_EQ(check(0x100, 7), "");
    EXPECT_EQ(check(0x100, 8), "");
    EXPECT_EQ(check(0x100, 8),
              "!!! ALARM: TS continuity counter error in PID 0x0100 (expect=9 cur=8) adap=0 payload=1\n");
    EXPECT_EQ(last_continuity_counter[0x100], 8);
    EXPECT_EQ(errors.priority1_errors, 1u);
    EXPECT_EQ(errors.continuity_errors, 1u);
    EXPECT_EQ(check(0x100, 9), "");
}

TEST_F(continuity, a_packet_without_payload_repeats_the_counter)
{
    EXPECT_EQ(check(0x100, 7), "");
    EXPECT_EQ(check(0x100, 7, adaptation_only), "");
    EXPECT_EQ(check(0x100, 7, 0), "");
    EXPECT_EQ(check(0x100, 8, adaptation_and_payload), "");
}

TEST_F(continuity, the_counter_wraps_from_15_to_0)
{
    EXPECT_EQ(check(0x100, 15), "");
    EXPECT_EQ(check(0x100, 0), "");
    EXPECT_EQ(check(0x100, 1), "");
}

TEST_F(continuity, the_check_goes_on_from_the_counter_that_was_wrong)
{
    check(0x100, 3);
    EXPECT_EQ(check(0x100, 12, adaptation_and_payload),
              "!!! ALARM: TS continuity counter error in PID 0x0100 (expect=4 cur=12) adap=1 payload=1\n");
    EXPECT_EQ(check(0x100, 13), "");
    EXPECT_EQ(check(0x100, 2, adaptation_only),
              "!!! ALARM: TS continuity counter error in PID 0x0100 (expect=13 cur=2) adap=1 payload=0\n");
    EXPECT_EQ(check(0x100, 3), "");
    EXPECT_EQ(errors.priority1_errors, 2u);
    EXPECT_EQ(errors.continuity_errors, 2u);
}

TEST_F(continuity, each_PID_has_its_own_counter)
{
    check(0x100, 3);
    check(0x101, 9);
    EXPECT_EQ(check(0x100, 4), "");
    EXPECT_EQ(check(0x101, 10), "");
    EXPECT_EQ(errors.priority1_errors, 0u);
}

TEST_F(continuity, a_signalled_discontinuity_is_an_error_like_any_other)
{
    check(0x100, 3);
    mpeg_ts_packet tsp = packet(0x100, 9, adaptation_and_payload);
    tsp.discontinuity_indicator = 1;
    p1_continuity_tracking(&tsp);
    EXPECT_EQ(report(),
              "!!! ALARM: TS continuity counter error in PID 0x0100 (expect=4 cur=9) adap=1 payload=1\n");
    EXPECT_EQ(errors.continuity_errors, 1u);
}

TEST_F(continuity, an_error_drops_the_section_in_hand_and_keeps_the_storage)
{
    mpeg_ts_pid_tracking *const t = track(0x100, TRACK_SCTE35);
    check(0x100, 0);
    t->tbl_asm.write = t->tbl_asm.buffer + 10;
    EXPECT_EQ(check(0x100, 1), "");
    EXPECT_EQ(t->tbl_asm.write, t->tbl_asm.buffer + 10);
    check(0x100, 5);
    EXPECT_NE(t->tbl_asm.buffer, nullptr);
    EXPECT_EQ(t->tbl_asm.write, t->tbl_asm.buffer);
}

TEST_F(continuity, an_error_leaves_the_assembly_of_other_types_alone)
{
    mpeg_ts_pid_tracking *const t = track(0x100, TRACK_PURE_PCR);
    mpeg_ts_table_assembly_init(&t->tbl_asm, 100);
    t->tbl_asm.write = t->tbl_asm.buffer + 10;
    check(0x100, 0);
    check(0x100, 5);
    EXPECT_EQ(errors.continuity_errors, 1u);
    EXPECT_EQ(t->tbl_asm.write, t->tbl_asm.buffer + 10);
}

TEST_F(continuity, a_PID_above_the_last_stops_the_program)
{
    const mpeg_ts_packet tsp = packet(0x2000, 0, payload_only);
    EXPECT_DEATH(p1_continuity_tracking(&tsp),
                 "p1_continuity_tracking.*Assertion `tsp->pid <= 0x1FFF' failed");
}

TEST_F(continuity, an_error_within_a_section_of_several_packets_drops_it_silently)
{
    std::vector<std::pair<unsigned, unsigned>> programs;
    for (unsigned i = 1; i <= 100; ++i) programs.emplace_back(i, 0x100 + i);
    const bytes whole = stream_builder().section(0, pat_section(1, programs)).data();
    ASSERT_EQ(whole.size(), 3 * 188u);

    stream_builder stream;
    stream.raw(bytes(whole.begin(), whole.begin() + 188)).raw(bytes(whole.begin() + 376, whole.end()));
    stream.lose_packets(0, 3).section(0, pat_section(2, {}));
    EXPECT_EQ(scan_of(stream),
              "!!! ALARM: TS continuity counter error in PID 0x0000 (expect=1 cur=2) adap=0 payload=1\n"
              "* Program Association Table\n"
              "    Transport stream ID:              0x0002\n"
              "    Version:                          0\n"
              "    Section:                          0 / 0\n");
}

TEST_F(continuity, the_packet_with_the_error_may_start_a_section)
{
    stream_builder stream;
    stream.payload(0, hex("00 00B0"), true).lose_packets(0, 1).section(0, pat_section(3, {}));
    EXPECT_EQ(scan_of(stream),
              "!!! ALARM: TS continuity counter error in PID 0x0000 (expect=1 cur=2) adap=0 payload=1\n"
              "* Program Association Table\n"
              "    Transport stream ID:              0x0003\n"
              "    Version:                          0\n"
              "    Section:                          0 / 0\n");
}

TEST_F(continuity, without_an_error_the_same_start_is_reported_as_incomplete)
{
    stream_builder stream;
    stream.payload(0, hex("00 00B0"), true).section(0, pat_section(3, {}));
    EXPECT_EQ(scan_of(stream), "!!! PID 0x0000 table error: table incomplete\n"
                               "* Program Association Table\n"
                               "    Transport stream ID:              0x0003\n"
                               "    Version:                          0\n"
                               "    Section:                          0 / 0\n");
}
