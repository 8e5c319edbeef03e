#include "mpeg_ts_overview/meters/absence.h"

#include "tests/overview_meters/meter_times.h"

#include <gtest/gtest.h>

namespace {

constexpr int64_t limit = 5 * ticks_per_second;
constexpr uint16_t pid = 0x100;

/// Packets a second apart, and a meter that watches the PID from packet 0 on.
struct watched_stream {
    watched_stream() { begin(0, 1000, 0); }

    /// Packets of the times that begin there, in a stretch.
    void begin(uint64_t first, uint64_t fence, int64_t stretch)
    {
        line = std::make_unique<line_times>(first, fence, ticks_per_second, stretch);
        stretches.see(line->times.moment_of(first));
        meter.begin_times(line->times);
    }
    void end_times(uint64_t fence)
    {
        stretches.see(line->times.moment_of(fence - 1));
        meter.end_times();
    }
    moment at(uint64_t packet) const { return line->times.moment_of(packet); }
    void start() { meter.start(pid, at(0)); }
    void packets(uint64_t first, uint64_t count = 1)
    {
        meter.on_packets(pid, first, count);
        occurred = true;
    }
    /// The violations, when the recording ends there.
    const violation_log &finish(uint64_t packet, bool all_must_occur = false)
    {
        end_times(packet);
        meter.finish(
            at(packet), [this](uint16_t) { return occurred; }, all_must_occur);
        return meter.limit().findings(false).log;
    }

    std::unique_ptr<line_times> line;
    time_stretches stretches{limit};
    absence_meter meter{stretches, limit};
    bool occurred = false;
};

} // namespace

TEST(absence, five_seconds_are_good_and_more_is_too_long)
{
    watched_stream good;
    good.start();
    good.packets(0);
    good.packets(5);
    EXPECT_EQ(good.finish(10).count, 0u);
    EXPECT_TRUE(good.meter.limit().is_measured(false));

    watched_stream bad;
    bad.start();
    bad.packets(0);
    bad.packets(6);
    const violation_log &log = bad.finish(10);
    ASSERT_EQ(log.count, 1u);
    EXPECT_EQ(log.first.packet, 6u) << "its place is where the PID comes back";
    EXPECT_EQ(log.details[0].pid, pid);
    EXPECT_EQ(log.details[0].text, "no packet of the PID for 6000 ms");
    EXPECT_EQ(bad.meter.limit().findings(false).longest_ticks, 6 * ticks_per_second);
}

TEST(absence, a_run_lasts_from_its_first_to_its_last_packet)
{
    watched_stream stream;
    stream.start();
    stream.packets(2, 10);
    stream.packets(16);
    EXPECT_EQ(stream.finish(20).count, 0u);
    EXPECT_EQ(stream.meter.limit().findings(false).longest_ticks, 5 * ticks_per_second);
}

TEST(absence, each_interval_longer_than_those_before_is_seen)
{
    watched_stream stream;
    stream.start();
    stream.packets(0);
    stream.packets(3);
    stream.packets(7);
    EXPECT_EQ(stream.finish(8).count, 0u);
    EXPECT_EQ(stream.meter.limit().findings(false).longest_ticks, 4 * ticks_per_second);

    watched_stream bad;
    bad.start();
    for (const uint64_t packet : {0u, 5u, 11u, 17u}) bad.packets(packet);
    EXPECT_EQ(bad.finish(18).count, 2u);
}

TEST(absence, the_wait_for_the_first_packet_and_the_one_behind_the_last_count)
{
    watched_stream late;
    late.start();
    late.packets(6, 5);
    EXPECT_EQ(late.finish(11).count, 1u);

    watched_stream early;
    early.start();
    early.packets(0, 5);
    EXPECT_EQ(early.finish(9).count, 0u);
    watched_stream earlier;
    earlier.start();
    earlier.packets(0, 5);
    const violation_log &log = earlier.finish(10);
    ASSERT_EQ(log.count, 1u);
    EXPECT_EQ(log.first.packet, 10u);
}

TEST(absence, a_pid_that_never_occurs_is_a_fault_only_where_all_must_occur)
{
    watched_stream open;
    open.start();
    EXPECT_EQ(open.finish(100).count, 0u);
    EXPECT_EQ(open.meter.never_there().count, 0u);
    EXPECT_FALSE(open.meter.limit().is_measured(false));

    watched_stream whole;
    whole.start();
    EXPECT_EQ(whole.finish(100, true).count, 0u);
    ASSERT_EQ(whole.meter.never_there().count, 1u);
    EXPECT_EQ(whole.meter.never_there().details[0].pid, pid);
}

TEST(absence, a_pid_that_occurs_is_never_missing)
{
    watched_stream stream;
    stream.start();
    stream.packets(1, 98);
    stream.finish(100, true);
    EXPECT_EQ(stream.meter.never_there().count, 0u);
}

TEST(absence, a_pid_that_is_not_named_any_more_is_not_missed)
{
    watched_stream stream;
    stream.start();
    stream.packets(0, 5);
    EXPECT_TRUE(stream.meter.watches(pid));
    stream.meter.stop(pid, stream.at(8), true);
    EXPECT_FALSE(stream.meter.watches(pid));
    EXPECT_EQ(stream.finish(100).count, 0u);
}

TEST(absence, the_rule_that_ends_too_late_is_broken)
{
    watched_stream stream;
    stream.start();
    stream.packets(0, 5);
    stream.meter.stop(pid, stream.at(10), true);
    EXPECT_EQ(stream.finish(100).count, 1u);
}

TEST(absence, an_interval_over_a_time_break_counts_nowhere)
{
    watched_stream stream;
    stream.start();
    stream.packets(0, 4);
    stream.end_times(8);
    stream.begin(8, 1000, 1);
    stream.packets(13, 2); // 4 s before the break and 5 s behind it
    EXPECT_EQ(stream.finish(16).count, 0u);
}

TEST(absence, a_piece_of_it_that_alone_is_too_long_does)
{
    watched_stream behind;
    behind.start();
    behind.packets(0, 4);
    behind.end_times(8);
    behind.begin(8, 1000, 1);
    behind.packets(14);
    EXPECT_EQ(behind.finish(16).count, 1u);

    watched_stream before;
    before.start();
    before.packets(0, 2);
    before.end_times(8); // packet 7 is the last before the break
    before.begin(8, 1000, 1);
    before.packets(9, 5);
    const violation_log &log = before.finish(14);
    ASSERT_EQ(log.count, 1u);
    EXPECT_EQ(log.first.packet, 7u);
}

TEST(absence, a_recording_shorter_than_the_limit_measures_nothing)
{
    watched_stream stream;
    stream.start();
    stream.packets(0, 4);
    stream.finish(4);
    EXPECT_FALSE(stream.meter.limit().is_measured(false));
}
