#include "mpeg_ts_overview/meters/pcr.h"

#include "mpeg_ts_overview/meters/clock_arithmetic.h"
#include "tests/overview_meters/meter_packets.h"

#include <gtest/gtest.h>

#include <map>

namespace {

constexpr uint16_t pid = 0x100;

/// A meter with the usual limits, and PCRs of program clocks.
struct fed_meter {
    void add(const ts_packet &packet)
    {
        stretches.see(packet.at);
        meter.on_packet(packet, {}, program_clock);
    }
    void pcr(uint64_t packet, int64_t ticks, int64_t PCR)
    {
        add(pcr_packet(pid, moment_at(packet, ticks), PCR));
    }

    std::vector<pcr_facts> finish(const moment &at)
    {
        recording_end end;
        end.at = at;
        if (at.ticks) end.bucket_ticks = first_bucket_ticks;
        if (at.ticks) end.buckets = 3;
        return meter.finish(end, [this](uint16_t) { return program_clock_at_end; });
    }
    pcr_facts row()
    {
        const std::vector<pcr_facts> rows = finish(moment_at(1000, std::nullopt));
        return rows.size() == 1 ? rows[0] : pcr_facts();
    }

    time_stretches stretches{100 * ms};
    pcr_meter meter{stretches, 100 * ms, 500};
    bool program_clock = true;
    bool program_clock_at_end = false;
};

} // namespace

TEST(pcr, an_interval_is_the_difference_of_the_pcrs)
{
    fed_meter fed;
    fed.pcr(0, 0, 1000);
    fed.pcr(10, 77 * ms, 1000 + 40 * ms);
    fed.pcr(20, 99 * ms, 1000 + 60 * ms);
    const pcr_facts row = fed.row();
    EXPECT_EQ(row.pid, pid);
    EXPECT_EQ(row.count, 3u);
    EXPECT_EQ(row.interval_ticks.count, 2u);
    EXPECT_EQ(row.interval_ticks.min, 20 * ms);
    EXPECT_EQ(row.interval_ticks.max, 40 * ms);
    EXPECT_EQ(row.interval_ticks.sum, 60 * ms);
    EXPECT_EQ(row.discontinuities_flagged + row.discontinuities_unflagged, 0u);
}

TEST(pcr, the_difference_goes_on_where_the_clock_wraps)
{
    fed_meter fed;
    fed.pcr(0, 0, pcr_cycle_ticks - 10 * ms);
    fed.pcr(10, 0, 20 * ms);
    const pcr_facts row = fed.row();
    EXPECT_EQ(row.interval_ticks.max, 30 * ms);
    EXPECT_EQ(row.discontinuities_unflagged, 0u);
}

TEST(pcr, one_pcr_makes_no_row)
{
    fed_meter fed;
    fed.pcr(0, 0, 0);
    EXPECT_TRUE(fed.finish(moment_at(9, 9)).empty());
}

TEST(pcr, differences_of_0_and_of_100_ms_are_good_and_others_are_unflagged)
{
    const std::map<int64_t, uint64_t> unflagged_of = {
        {0,            0},
        {1,            0},
        {100 * ms,     0},
        {100 * ms + 1, 1},
        {-1,           1},
        {20000 * ms,   1}
    };
    for (const auto &[difference, unflagged] : unflagged_of) {
        fed_meter fed;
        fed.pcr(0, 0, 5000 * ms);
        fed.pcr(1, 50 * ms, 5000 * ms + difference);
        const pcr_facts row = fed.row();
        EXPECT_EQ(row.discontinuities_unflagged, unflagged) << difference;
        EXPECT_EQ(row.discontinuities_flagged, 0u) << difference;
        EXPECT_EQ(fed.meter.unflagged().count, unflagged) << difference;
    }
}

TEST(pcr, the_indicator_makes_a_pair_flagged_even_when_the_difference_is_fine)
{
    fed_meter fed;
    fed.pcr(0, 0, 0);
    fed.add(flagged(pcr_packet(pid, moment_at(1, 50 * ms), 40 * ms)));
    fed.pcr(2, 90 * ms, 80 * ms);
    const pcr_facts row = fed.row();
    EXPECT_EQ(row.discontinuities_flagged, 1u);
    EXPECT_EQ(row.discontinuities_unflagged, 0u);
    EXPECT_EQ(row.interval_ticks.max, 50 * ms); // by the times
    EXPECT_EQ(row.interval_ticks.min, 40 * ms);
}

TEST(pcr, the_indicator_of_any_packet_of_the_pid_between_makes_the_pair_flagged)
{
    fed_meter fed;
    fed.add(flagged(pcr_packet(pid, moment_at(0, 0), 0))); // with the first PCR: not between
    fed.pcr(1, 10 * ms, 10 * ms);
    fed.add(flagged(packet_of(pid + 1, moment_at(2, 15 * ms))));
    fed.pcr(3, 20 * ms, 20 * ms);
    fed.add(flagged(packet_of(pid, moment_at(4, 25 * ms))));
    fed.pcr(5, 30 * ms, 9000 * ms);
    fed.pcr(6, 40 * ms, 9010 * ms);
    const pcr_facts row = fed.row();
    EXPECT_EQ(row.discontinuities_flagged, 1u);
    EXPECT_EQ(row.discontinuities_unflagged, 0u);
}

TEST(pcr, up_to_10_s_the_difference_is_the_interval_and_beyond_it_the_times_are)
{
    fed_meter fed;
    fed.pcr(0, 0, 0);
    fed.pcr(1, 50 * ms, 10000 * ms);
    fed.pcr(2, 110 * ms, 20000 * ms + 1);
    const pcr_facts row = fed.row();
    EXPECT_EQ(row.interval_ticks.max, 10000 * ms);
    EXPECT_EQ(row.interval_ticks.min, 60 * ms);
}

TEST(pcr, a_difference_of_0_has_the_interval_of_the_times)
{
    fed_meter fed;
    fed.pcr(0, 0, 7);
    fed.pcr(1, 30 * ms, 7);
    EXPECT_EQ(fed.row().interval_ticks.max, 30 * ms);
}

TEST(pcr, over_a_break_the_difference_counts_and_the_times_do_not)
{
    fed_meter fed;
    fed.pcr(0, 0, 0);
    fed.add(pcr_packet(pid, moment_at(1, 500 * ms, 1), 40 * ms));
    fed.add(flagged(pcr_packet(pid, moment_at(2, 800 * ms, 2), 50 * ms)));
    const pcr_facts row = fed.row();
    EXPECT_EQ(row.interval_ticks.count, 1u);
    EXPECT_EQ(row.interval_ticks.max, 40 * ms);
}

TEST(pcr, a_copy_has_no_pcr_of_its_own_but_its_discontinuity_indicator_counts)
{
    fed_meter fed;
    fed.pcr(0, 0, 0);
    fed.meter.on_packet(flagged(pcr_packet(pid, moment_at(1, 1), 5000 * ms)), copy_of_the_packet_before(),
                        true);
    fed.pcr(2, 40 * ms, 40 * ms);
    const pcr_facts row = fed.row();
    EXPECT_EQ(row.count, 2u);
    EXPECT_EQ(row.interval_ticks.max, 40 * ms);
    EXPECT_EQ(row.discontinuities_flagged, 1u);
}

TEST(pcr, packets_with_transport_error_give_nothing)
{
    fed_meter fed;
    fed.pcr(0, 0, 0);
    ts_packet broken = flagged(pcr_packet(pid, moment_at(1, 1), 5000 * ms));
    broken.transport_error_indicator = true;
    fed.add(broken);
    fed.pcr(2, 40 * ms, 40 * ms);
    const pcr_facts row = fed.row();
    EXPECT_EQ(row.pid, pid);
    EXPECT_EQ(row.count, 2u);
    EXPECT_EQ(row.discontinuities_flagged, 0u);
}

TEST(pcr, the_null_pid_with_two_pcrs_has_a_row_as_any_pid)
{
    fed_meter fed;
    for (uint64_t i = 0; i < 3; ++i)
        fed.add(pcr_packet(0x1FFF, moment_at(i, 0), static_cast<int64_t>(i) * ms));
    const pcr_facts row = fed.row();
    EXPECT_EQ(row.pid, 0x1FFF);
    EXPECT_EQ(row.count, 3u);
    EXPECT_EQ(row.interval_ticks.max, ms);
}

TEST(pcr, an_interval_falls_into_the_bucket_of_its_second_packet)
{
    fed_meter fed;
    fed.pcr(0, 0, 0);
    fed.pcr(1, 90 * ms, 40 * ms);
    fed.pcr(2, 100 * ms, 60 * ms);
    const pcr_facts row = fed.finish(moment_at(3, 250 * ms)).at(0);
    ASSERT_EQ(row.interval_series_ticks.size(), 3u);
    EXPECT_EQ(row.interval_series_ticks[0].max, 40 * ms);
    EXPECT_EQ(row.interval_series_ticks[1].min, 20 * ms);
    EXPECT_FALSE(row.interval_series_ticks[2].min);
}

TEST(pcr, intervals_of_a_program_clock_are_held_against_the_limit)
{
    fed_meter fed;
    fed.pcr(0, 0, 0);
    fed.pcr(1, 0, 100 * ms);
    EXPECT_EQ(fed.meter.intervals().findings(false).log.count, 0u);
    EXPECT_TRUE(fed.meter.intervals().is_measured(false));
    fed.pcr(2, 0, 200 * ms + 1);
    EXPECT_EQ(fed.meter.intervals().findings(false).log.count, 1u);
    EXPECT_EQ(fed.meter.intervals().findings(false).log.details[0].text, "no PCR for 100.000037 ms");
    EXPECT_EQ(fed.meter.unflagged().details[0].text,
              "PCR leaps by 100.000037 ms without discontinuity_indicator");
}

TEST(pcr, a_leap_back_is_told_as_one)
{
    fed_meter fed;
    fed.pcr(0, 0, 10 * ms);
    fed.pcr(1, 40 * ms, pcr_cycle_ticks - 20 * ms);
    EXPECT_EQ(fed.meter.unflagged().details[0].text, "PCR leaps by -30 ms without discontinuity_indicator");
    EXPECT_EQ(fed.meter.intervals().findings(false).log.count, 0u); // 40 ms by the times
}

TEST(pcr, a_leap_is_judged_when_the_pid_is_a_program_clock_where_it_shows)
{
    fed_meter fed;
    fed.program_clock = false;
    fed.pcr(0, 0, 0);
    fed.pcr(1, 0, 500 * ms);
    EXPECT_EQ(fed.meter.unflagged().count, 0u);
    EXPECT_FALSE(fed.meter.program_clock_measured());
    fed.program_clock = true;
    fed.pcr(2, 0, 1000 * ms);
    EXPECT_EQ(fed.meter.unflagged().count, 1u);
    EXPECT_TRUE(fed.meter.program_clock_measured());
    EXPECT_EQ(fed.meter.intervals().findings(false).log.count, 0u) << "its clock begins here";
    fed.pcr(3, 0, 1500 * ms);
    EXPECT_EQ(fed.meter.intervals().findings(false).log.count, 1u);
    EXPECT_EQ(fed.meter.unflagged().count, 2u);
    EXPECT_EQ(fed.row().discontinuities_unflagged, 3u);
}

TEST(pcr, the_wait_for_a_pcr_ends_where_no_pmt_names_the_pid_any_more)
{
    fed_meter fed;
    fed.pcr(0, 0, 0);
    fed.meter.on_program_clock_end(pid, moment_at(1, 100 * ms));
    EXPECT_EQ(fed.meter.intervals().findings(false).log.count, 0u);

    fed_meter late;
    late.pcr(0, 0, 0);
    late.meter.on_program_clock_end(pid, moment_at(1, 101 * ms));
    EXPECT_EQ(late.meter.intervals().findings(false).log.count, 1u);
}

TEST(pcr, the_first_pcr_comes_in_time_behind_the_pmt_that_asks_for_it)
{
    for (const int64_t wait : {100 * ms, 100 * ms + 1}) {
        fed_meter fed;
        fed.meter.on_program_clock(pid, moment_at(0, 0));
        fed.pcr(1, wait, 0);
        EXPECT_EQ(fed.meter.intervals().findings(false).log.count, wait > 100 * ms ? 1u : 0u);
        EXPECT_FALSE(fed.meter.program_clock_measured());
    }
}

TEST(pcr, the_last_pcr_of_a_program_clock_is_near_the_end)
{
    for (const bool still_clock : {true, false}) {
        fed_meter fed;
        fed.program_clock_at_end = still_clock;
        fed.pcr(0, 0, 0);
        fed.pcr(1, 40 * ms, 40 * ms);
        fed.finish(moment_at(99, 141 * ms));
        EXPECT_EQ(fed.meter.intervals().findings(false).log.count, still_clock ? 1u : 0u);
    }
}

TEST(pcr, a_pid_that_a_pmt_names_and_that_never_has_a_pcr_breaks_no_limit)
{
    fed_meter fed;
    fed.program_clock_at_end = true;
    fed.meter.on_program_clock(pid, moment_at(0, 0));
    EXPECT_TRUE(fed.finish(moment_at(99, 5000 * ms)).empty());
    EXPECT_EQ(fed.meter.intervals().findings(false).log.count, 0u);
}

TEST(pcr, there_are_256_rows_for_the_first_pids_with_two_pcrs_in_order_of_first_pcrs)
{
    fed_meter fed;
    fed.meter.on_program_clock(0x305, moment_at(0, 0));
    uint64_t packet = 0;
    for (uint16_t p = 0x20; p < 0x120; ++p) fed.add(pcr_packet(p, moment_at(packet++, 0), 0)); // one each
    for (uint16_t p = 0x300; p < 0x401; ++p) fed.add(pcr_packet(p, moment_at(packet++, 0), 0));
    for (uint16_t p = 0x400; p >= 0x300; --p) fed.add(pcr_packet(p, moment_at(packet++, 0), ms));
    fed.add(pcr_packet(0x300, moment_at(packet++, 0), 2 * ms));
    const std::vector<pcr_facts> rows = fed.finish(moment_at(packet, 0));
    ASSERT_EQ(rows.size(), 256u);
    EXPECT_EQ(rows.front().pid, 0x301); // 0x300 came last
    EXPECT_EQ(rows[4].pid, 0x305);
    EXPECT_EQ(rows.back().pid, 0x400);
    EXPECT_EQ(fed.meter.pids_not_kept(), 1u);
}
