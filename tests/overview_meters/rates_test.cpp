#include "mpeg_ts_overview/meters/rates.h"

#include "tests/overview_meters/meter_times.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

constexpr int64_t second = ticks_per_second;
constexpr uint64_t bits = 1504; ///< of a packet

/// A meter whose packets are so many ticks apart.
struct rated_stream {
    explicit rated_stream(int64_t ticks_per_packet, uint64_t fence = 100000)
        : line(0, fence, ticks_per_packet)
    {
        meter.begin(line.times);
    }

    /// The next packets, of one PID.
    void add(uint16_t pid, uint64_t packets)
    {
        meter.on_packets(pid, next, packets);
        next += packets;
    }

    /// The rates, the duration being the time of a packet behind the last.
    rates_facts finish()
    {
        line.times.fence = next;
        line_times all(0, next, line.span.ticks);
        meter.begin(all.times);
        meter.end();
        return meter.finish(line.span.on_line(next));
    }

    line_times line;
    rates_meter meter;
    uint64_t next = 0;
};

uint64_t sum_of(const std::vector<uint64_t> &series)
{
    return std::accumulate(series.begin(), series.end(), uint64_t{0});
}

} // namespace

TEST(rates, mean_is_packets_by_duration_of_each_pid_and_of_the_whole)
{
    rated_stream stream(second / 1000);
    for (int i = 0; i < 300; ++i) {
        stream.add(0x100, 7);
        stream.add(0x1FFF, 3);
    }
    const rates_facts rates = stream.finish(); // 3 s
    ASSERT_EQ(rates.pids.size(), 2u);
    EXPECT_EQ(rates.whole.mean_bps, 1000 * bits);
    EXPECT_EQ(rates.pids[0].rate.mean_bps, 700 * bits);
    EXPECT_EQ(rates.pids[1].pid, 0x1FFF);
    EXPECT_EQ(rates.pids[1].rate.mean_bps, 300 * bits);
}

TEST(rates, bad_slots_are_part_of_the_whole_and_of_no_pid)
{
    rated_stream stream(second / 10);
    stream.add(0x100, 5);
    stream.meter.on_bad_slot(stream.next++);
    stream.add(0x100, 4);
    const rates_facts rates = stream.finish();
    ASSERT_EQ(rates.pids.size(), 1u);
    EXPECT_EQ(rates.whole.mean_bps, 10 * bits);
    EXPECT_EQ(rates.pids[0].rate.mean_bps, 9 * bits);
    EXPECT_EQ(rates.whole.series_bps.at(5), 10 * bits);
    EXPECT_EQ(rates.pids[0].rate.series_bps.at(5), 0u);
}

TEST(rates, means_are_integers_halves_up)
{
    rates_meter meter;
    const line_times line(0, 1, 0);
    meter.begin(line.times);
    meter.on_packets(0x100, 0, 1);
    meter.end();
    // 1504 bits in 3008 s; in a tick more.
    EXPECT_EQ(meter.finish(3008 * second).whole.mean_bps, 1u);
    EXPECT_EQ(meter.finish(3008 * second + 1).whole.mean_bps, 0u);
}

TEST(rates, least_and_greatest_are_of_whole_seconds)
{
    rated_stream stream(second / 10);
    stream.add(0x100, 10); // second 0
    stream.add(0x100, 4);  // second 1
    stream.add(0x200, 6);
    stream.add(0x200, 3); // second 2
    stream.add(0x100, 7);
    stream.add(0x100, 5); // half of second 3
    const rates_facts rates = stream.finish();
    EXPECT_EQ(rates.whole.min_bps, 10 * bits);
    EXPECT_EQ(rates.whole.max_bps, 10 * bits);
    EXPECT_EQ(rates.pids[0].rate.min_bps, 4 * bits);
    EXPECT_EQ(rates.pids[0].rate.max_bps, 10 * bits);
    // From 1.4 to 2.2 s no second is whole.
    EXPECT_FALSE(rates.pids[1].rate.min_bps);
    EXPECT_FALSE(rates.pids[1].rate.max_bps);
}

TEST(rates, a_second_without_packets_has_the_rate_0)
{
    rated_stream stream(second / 10);
    stream.add(0x100, 10);
    stream.add(0x200, 10);
    stream.add(0x100, 11); // up to the start of second 3
    const rates_facts rates = stream.finish();
    EXPECT_EQ(rates.pids[0].rate.min_bps, 0u);
    EXPECT_EQ(rates.pids[0].rate.max_bps, 10 * bits);
}

TEST(rates, a_last_packet_at_the_start_of_a_second_makes_the_one_before_whole)
{
    rated_stream stream(second / 10);
    stream.add(0x100, 10);
    EXPECT_FALSE(stream.finish().whole.min_bps);
    rated_stream longer(second / 10);
    longer.add(0x100, 11);
    EXPECT_EQ(longer.finish().whole.min_bps, 10 * bits);
}

TEST(rates, a_first_packet_at_the_start_of_a_second_makes_it_whole)
{
    rated_stream stream(second / 10);
    stream.add(0x200, 10);
    stream.add(0x100, 11);
    EXPECT_EQ(stream.finish().pids[1].rate.min_bps, 10 * bits);
    rated_stream late(second / 10);
    late.add(0x200, 11);
    late.add(0x100, 10);
    EXPECT_FALSE(late.finish().pids[1].rate.min_bps);
}

TEST(rates, series_count_buckets_of_a_tenth_of_a_second)
{
    rated_stream stream(second / 100);
    stream.add(0x100, 4);
    stream.add(0x200, 10);
    stream.add(0x100, 16);
    const rates_facts rates = stream.finish();
    EXPECT_EQ(rates.bucket_ticks, second / 10);
    EXPECT_EQ(rates.whole.series_bps, (std::vector<uint64_t>{100 * bits, 100 * bits, 100 * bits}));
    EXPECT_EQ(rates.pids[0].rate.series_bps, (std::vector<uint64_t>{40 * bits, 60 * bits, 100 * bits}));
    EXPECT_EQ(rates.pids[1].rate.series_bps, (std::vector<uint64_t>{60 * bits, 40 * bits, 0}));
}

TEST(rates, the_last_bucket_is_divided_by_the_part_that_it_covers)
{
    rated_stream stream(second / 100);
    stream.add(0x100, 12);
    stream.add(0x200, 1); // 30 ms of the last bucket
    const rates_facts rates = stream.finish();
    EXPECT_EQ(rates.whole.series_bps, (std::vector<uint64_t>{100 * bits, 100 * bits}));
    EXPECT_EQ(rates.pids[0].rate.series_bps.at(1), 100267u); // 2 packets in 30 ms, rounded
    EXPECT_EQ(rates.pids[1].rate.series_bps.at(1), 50133u);
}

TEST(rates, a_thousand_buckets_are_kept_and_one_more_doubles_their_width)
{
    rated_stream full(second / 10);
    full.add(0x100, 1000);
    const rates_facts rates = full.finish();
    EXPECT_EQ(rates.bucket_ticks, second / 10);
    EXPECT_EQ(rates.whole.series_bps.size(), 1000u);

    rated_stream more(second / 10);
    more.add(0x100, 3);
    more.add(0x200, 998);
    const rates_facts joined = more.finish();
    EXPECT_EQ(joined.bucket_ticks, second / 5);
    ASSERT_EQ(joined.whole.series_bps.size(), 501u);
    EXPECT_EQ(joined.whole.series_bps[0], 10 * bits);
    EXPECT_EQ(joined.whole.series_bps[500], 10 * bits) << "one packet in the 0.1 s that the last covers";
    EXPECT_EQ(joined.pids[0].rate.series_bps[0], 10 * bits);
    EXPECT_EQ(joined.pids[0].rate.series_bps[1], 5 * bits);
    EXPECT_EQ(joined.pids[0].rate.series_bps[2], 0u);
}

TEST(rates, widths_double_as_often_as_it_takes)
{
    rated_stream stream(second);
    stream.add(0x100, 1);
    stream.add(0x200, 9999);
    const rates_facts rates = stream.finish(); // 10^4 s: buckets of 12.8 s
    EXPECT_EQ(rates.bucket_ticks, 128 * second / 10);
    EXPECT_EQ(rates.whole.series_bps.size(), 782u);
    EXPECT_EQ(rates.pids[0].rate.series_bps[0], 118u); // 117.5
}

TEST(rates, series_are_kept_of_the_first_256_pids)
{
    rated_stream stream(second / 1000);
    for (uint16_t pid = 0; pid < 300; ++pid) stream.add(pid, 1);
    EXPECT_EQ(stream.meter.series_not_kept(), 44u);
    const rates_facts rates = stream.finish();
    ASSERT_EQ(rates.pids.size(), 300u);
    EXPECT_EQ(rates.pids[255].rate.series_bps.size(), 3u);
    EXPECT_TRUE(rates.pids[256].rate.series_bps.empty());
    EXPECT_TRUE(rates.pids[256].rate.mean_bps);
}

TEST(rates, what_the_series_hold_is_every_packet)
{
    rated_stream stream(second / 40);
    for (unsigned i = 0; i < 400; ++i) stream.add(static_cast<uint16_t>(i * i % 7), 1 + i % 5);
    const rates_facts rates = stream.finish();
    std::vector<uint64_t> sums(rates.whole.series_bps.size());
    uint64_t total = 0;
    for (const pid_rate_facts &row : rates.pids) {
        for (size_t i = 0; i < sums.size(); ++i) sums[i] += row.rate.series_bps[i];
        total += sum_of(row.rate.series_bps);
    }
    EXPECT_EQ(sums, rates.whole.series_bps);
    EXPECT_EQ(total, stream.next * 10 * bits);
}

TEST(rates, without_times_there_are_no_rates)
{
    const no_times none(0, 100);
    rates_meter meter;
    meter.begin(none.times);
    meter.on_packets(0x100, 0, 100);
    meter.end();
    const rates_facts rates = meter.finish(std::nullopt);
    EXPECT_FALSE(rates.whole.mean_bps || rates.whole.min_bps || rates.whole.max_bps);
    EXPECT_TRUE(rates.whole.series_bps.empty());
    EXPECT_EQ(rates.bucket_ticks, 0);
    EXPECT_EQ(rates.pids.at(0).pid, 0x100);
    EXPECT_FALSE(meter.last_packet_ticks());
}

TEST(rates, a_recording_of_no_duration_has_buckets_but_no_rates)
{
    rated_stream stream(0);
    stream.add(0x100, 30);
    const rates_facts rates = stream.finish();
    EXPECT_EQ(rates.bucket_ticks, first_bucket_ticks); // other series have them too
    EXPECT_FALSE(rates.whole.mean_bps);
    EXPECT_TRUE(rates.whole.series_bps.empty());
}

TEST(rates, packets_without_a_time_are_in_no_bucket)
{
    const no_times none(0, 100);
    const line_times line(100, 110, second / 10);
    rates_meter meter;
    meter.begin(none.times);
    meter.on_packets(0x100, 0, 100);
    meter.end();
    meter.begin(line.times); // from 10 s on
    meter.on_packets(0x100, 100, 10);
    meter.end();
    const rates_facts rates = meter.finish(11 * second);
    EXPECT_EQ(rates.whole.mean_bps, 10 * bits);
    EXPECT_EQ(rates.whole.series_bps.size(), 110u);
    EXPECT_EQ(sum_of(rates.whole.series_bps), 10 * 10 * bits);
}

TEST(rates, times_that_begin_within_a_bucket_go_on_with_it)
{
    const line_times early(0, 15, second / 100);
    const line_times late(15, 30, second / 100);
    rates_meter meter;
    meter.begin(early.times);
    meter.on_packets(0x100, 0, 15);
    meter.end();
    meter.begin(late.times);
    meter.on_packets(0x100, 15, 15);
    meter.end();
    EXPECT_EQ(meter.finish(3 * second / 10).whole.series_bps,
              (std::vector<uint64_t>{100 * bits, 100 * bits, 100 * bits}));
}
