// What holds for every recording.
#include "mpeg_ts_overview/driver/recording_walk.h"
#include "mpeg_ts_overview/model/series_buckets.h"
#include "mpeg_ts_overview/output/json.h"
#include "tests/overview_driver/recorded.h"
#include "tests/overview_properties/random_recording.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

constexpr unsigned recordings = 24;
constexpr unsigned packets = 2500; ///< so that several blocks are needed

std::string json_of(const bytes &recording, overview_request request = {}, size_t piece = size_t{1} << 30)
{
    std::string text;
    write_json(found_in(recording, request, piece), [&](std::string_view part) {
        text += part;
        return true;
    });
    return text;
}

/// Sees to it that every packet is told once, in order, at a time that does not go back.
class order_check final : public packet_listener {
public:
    void begin_times(const packet_times &next) override
    {
        times = next;
        EXPECT_EQ(next.first, next_packet);
    }
    void end_times() override { EXPECT_EQ(times.fence, next_packet); }
    void begin_stretch(const moment &at) override { EXPECT_EQ(at.packet, next_packet); }
    void on_break(const time_break &ended) override
    {
        EXPECT_EQ(ended.at.packet, next_packet);
        if (ended.at.stretch >= 0) {
            EXPECT_GT(ended.at.stretch, last_stretch);
        }
    }
    void on_run(const packet_run &run, const uint8_t *) override { tell(run.first, run.count); }
    void on_packet(const ts_packet &packet) override { tell(packet.at.packet, 1); }
    void on_bad_slot(const moment &at) override { tell(at.packet, 1); }

    uint64_t next_packet = 0;
    int64_t last_ticks = 0;

private:
    void tell(uint64_t first, uint64_t count)
    {
        ASSERT_EQ(first, next_packet);
        next_packet += count;
        for (uint64_t i = first; times.known() && i < next_packet; ++i) {
            ASSERT_GE(times.at(i), last_ticks) << i;
            last_ticks = times.at(i);
        }
        if (times.stretch < 0) return;
        EXPECT_GE(times.stretch, last_stretch);
        last_stretch = times.stretch;
    }

    packet_times times;
    int64_t last_stretch = -1;
};

void check_order(const bytes &recording, std::optional<time_base_kind> base)
{
    packet_scanner scanner(source_of(recording), 0, least_block_size);
    ASSERT_TRUE(scanner.find_packets());
    const bool has_stamps = scanner.grid().sync_offset != 0;
    if (base == time_base_kind::arrival && !has_stamps) return;
    timeline times(base, 3333333, has_stamps);
    order_check order;
    recording_walk walk(scanner, order);
    while (std::unique_ptr<block> next = scanner.next_block()) {
        times.add_block(*next);
        walk.add(std::move(next));
        walk.go_on(times);
    }
    times.end(scanner.counts().packets, scanner.last_arrival_step());
    walk.go_on(times);
    EXPECT_EQ(order.next_packet, scanner.counts().packets);
    if (times.duration_ticks()) {
        EXPECT_GE(*times.duration_ticks(), order.last_ticks);
    }
}

} // namespace

TEST(properties, a_pipe_gives_the_same_as_a_file)
{
    for (unsigned seed = 0; seed < recordings; ++seed) {
        random_recording random(seed);
        const bytes recording = random.damaged(packets);
        EXPECT_EQ(json_of(recording, {}, 1 + random.any(5000)), json_of(recording)) << seed;
    }
}

TEST(properties, the_size_of_blocks_does_not_matter)
{
    for (unsigned seed = 100; seed < 100 + recordings; ++seed) {
        random_recording random(seed);
        const bytes recording = random.damaged(packets);
        const std::string expected = json_of(recording);
        for (const size_t size :
             {least_block_size, least_block_size + 1 + random.any(5000), size_t{1} << 22}) {
            overview_request request;
            request.block_bytes = size;
            EXPECT_EQ(json_of(recording, request), expected) << seed << ' ' << size;
        }
    }
}

TEST(properties, the_size_of_blocks_does_not_matter_where_clocks_are_lost)
{
    for (unsigned seed = 200; seed < 204; ++seed) {
        random_recording random(seed);
        stream_builder gap;
        gap.padding(65536 - 300 + random.any(600));
        bytes recording = random.in_sync(1500);
        const bool is_plain = recording[188] == 0x47 && recording[376] == 0x47;
        if (!is_plain) continue;
        recording = join({recording, gap.data(), gap.data(), recording});
        overview_request request;
        request.block_bytes = least_block_size + random.any(5000);
        EXPECT_EQ(json_of(recording, request), json_of(recording)) << seed;
    }
}

TEST(properties, every_packet_is_told_once_and_times_never_go_back)
{
    for (unsigned seed = 300; seed < 300 + recordings; ++seed) {
        const bytes recording = random_recording(seed).damaged(packets);
        for (const auto base : {std::optional<time_base_kind>(), std::optional(time_base_kind::pcr),
                                std::optional(time_base_kind::arrival),
                                std::optional(time_base_kind::bitrate), std::optional(time_base_kind::none)})
            check_order(recording, base);
    }
}

TEST(properties, packets_of_pids_and_bad_slots_add_up_to_the_whole)
{
    for (unsigned seed = 400; seed < 400 + recordings; ++seed) {
        const overview found = found_in(random_recording(seed).damaged(packets));
        const recording_facts &recording = found.recording;
        uint64_t sum = recording.sync_byte_errors - 2 * recording.sync_losses;
        for (const pid_facts &row : found.pids) sum += row.packets;
        EXPECT_EQ(sum, recording.packets) << seed;
        const uint64_t slots = recording.packets * recording.packet_size;
        EXPECT_EQ(recording.leading_bytes + slots + recording.skipped_bytes + recording.trailing_bytes,
                  recording.bytes)
            << seed;
    }
}

TEST(properties, series_add_up_to_the_packets)
{
    for (unsigned seed = 500; seed < 500 + recordings; ++seed) {
        const overview found = found_in(random_recording(seed).in_sync(packets));
        if (!found.recording.duration_ticks) continue;
        ASSERT_EQ(found.rates.pids.size(), found.pids.size());
        std::vector<uint64_t> sums(found.rates.whole.series_bps.size());
        for (size_t row = 0; row < found.pids.size(); ++row) {
            const std::vector<uint64_t> &series = found.rates.pids[row].rate.series_bps;
            ASSERT_EQ(series.size(), sums.size());
            for (size_t i = 0; i < sums.size(); ++i) sums[i] += series[i];
        }
        // The last one is rounded for each PID.
        const auto last = sums.size() - 1;
        EXPECT_NEAR(static_cast<double>(sums[last]), static_cast<double>(found.rates.whole.series_bps[last]),
                    static_cast<double>(found.pids.size()));
        sums[last] = found.rates.whole.series_bps[last];
        if (found.rates.bucket_ticks != first_bucket_ticks) continue;
        EXPECT_EQ(sums, found.rates.whole.series_bps) << seed;
    }
}

TEST(properties, checks_count_what_the_pids_count)
{
    for (unsigned seed = 600; seed < 600 + recordings; ++seed) {
        const overview found = found_in(random_recording(seed).damaged(packets));
        pid_facts sums;
        for (const pid_facts &row : found.pids) {
            sums.continuity_errors += row.continuity_errors;
            sums.transport_errors += row.transport_errors;
            EXPECT_LE(row.first_packet, row.last_packet);
            EXPECT_LT(row.last_packet, found.recording.packets);
            EXPECT_LE(row.first_ticks.value_or(0), row.last_ticks.value_or(0));
        }
        EXPECT_EQ(check_row(found, "1.1").log.count, found.recording.sync_losses) << seed;
        EXPECT_EQ(check_row(found, "1.2").log.count, found.recording.sync_byte_errors) << seed;
        EXPECT_EQ(check_row(found, "1.4").log.count, sums.continuity_errors) << seed;
        EXPECT_EQ(check_row(found, "2.1").log.count, sums.transport_errors) << seed;
    }
}

TEST(properties, breaks_stand_in_order)
{
    for (unsigned seed = 700; seed < 700 + recordings; ++seed) {
        const overview found = found_in(random_recording(seed).damaged(packets));
        const std::vector<time_break> &breaks = found.breaks.kept;
        const auto is_before = [](const time_break &a, const time_break &b) {
            return a.at.packet < b.at.packet;
        };
        EXPECT_TRUE(std::is_sorted(breaks.begin(), breaks.end(), is_before)) << seed;
        for (const time_break &one : breaks)
            EXPECT_EQ(one.pcr_jump_ticks.has_value(), one.kind == time_break_kind::irregular_span);
    }
}
