#include "mpeg_ts_overview/timeline/timeline.h"

#include "tests/overview_input/memory_source.h"

#include <gtest/gtest.h>

namespace {

constexpr uint16_t clock_pid = 0x100;

/// What a timeline says of a recording.
struct known_times {
    time_base_kind base = time_base_kind::none;
    std::optional<int64_t> duration;
    std::vector<time_span> spans;
    std::vector<int64_t> arrival;
    std::optional<uint16_t> clock;

    std::optional<int64_t> time(uint64_t packet) const
    {
        for (const time_span &span : spans) {
            if (packet < span.first || packet >= span.fence) continue;
            if (span.source == time_source::none) return std::nullopt;
            return span.source == time_source::arrival ? arrival[packet] : span.on_line(packet);
        }
        return std::nullopt;
    }
};

known_times times_of(const bytes &recording, std::optional<time_base_kind> wanted = std::nullopt,
                     int64_t bitrate = 0)
{
    packet_scanner scanner(source_of(recording), 0, least_block_size);
    if (!scanner.find_packets()) return {};
    timeline times(wanted, bitrate, scanner.grid().sync_offset != 0);
    known_times known;
    while (std::unique_ptr<block> b = scanner.next_block()) {
        times.add_block(*b);
        known.arrival.insert(known.arrival.end(), b->arrival.begin(), b->arrival.end());
        scanner.give_back(std::move(b));
    }
    times.end(scanner.counts().packets, scanner.last_arrival_step());
    time_span span;
    while (times.next_span(&span)) known.spans.push_back(span);
    known.base = times.base();
    known.duration = times.duration_ticks();
    known.clock = times.clock().first_clock_pid();
    return known;
}

/// A PCR every 10 packets, which are step ticks apart.
stream_builder clocked(unsigned packets, unsigned step, unsigned long long first = 0)
{
    stream_builder stream;
    for (unsigned i = 0; i < packets; ++i) {
        if (i % 10 == 0)
            stream.pcr(clock_pid, first + i * step);
        else
            stream.payload(0x101, repeated(0x11, 184));
    }
    return stream;
}

} // namespace

TEST(timeline, a_bitrate_counts_188_bytes_a_packet_whatever_their_size)
{
    // 1504 bits at 3 Mbit/s: 13536 ticks.
    for (const bytes &recording :
         {clocked(20, 100).data(), clocked(20, 100).avchd(0, 100), with_parity(clocked(20, 100).data())}) {
        const known_times known = times_of(recording, time_base_kind::bitrate, 3000000);
        EXPECT_EQ(known.base, time_base_kind::bitrate);
        EXPECT_EQ(known.time(0), 0);
        EXPECT_EQ(known.time(1), 13536);
        EXPECT_EQ(known.time(19), 19 * 13536);
        EXPECT_EQ(known.duration, 20 * 13536);
    }
}

TEST(timeline, a_bitrate_that_does_not_divide_is_rounded_at_each_packet)
{
    const known_times known = times_of(clocked(20, 100).data(), time_base_kind::bitrate, 7);
    // 1504 * 27000000 / 7 = 5801142857.142...
    EXPECT_EQ(known.time(1), 5801142857);
    EXPECT_EQ(known.time(7), int64_t{1504} * 27000000);
    EXPECT_EQ(known.time(11), 63812571429); // ...428.57
}

TEST(timeline, packets_of_188_bytes_have_the_times_of_their_pcrs)
{
    const known_times known = times_of(clocked(31, 100).data());
    EXPECT_EQ(known.base, time_base_kind::pcr);
    EXPECT_EQ(known.clock, clock_pid);
    EXPECT_EQ(known.time(17), 1700);
    EXPECT_EQ(known.duration, 3100);
}

TEST(timeline, arrival_times_that_agree_with_the_pcrs_are_the_time_base)
{
    for (const unsigned step : {901u, 1000u, 1099u}) {
        const known_times known = times_of(clocked(31, 1000).avchd(77, step));
        EXPECT_EQ(known.base, time_base_kind::arrival) << step;
        EXPECT_EQ(known.time(0), 0);
        EXPECT_EQ(known.time(17), 17 * step);
        EXPECT_EQ(known.duration, 31 * step) << "the last good step is added";
    }
}

TEST(timeline, arrival_times_within_ten_percent_agree)
{
    EXPECT_EQ(times_of(clocked(31, 1000).avchd(0, 900)).base, time_base_kind::arrival);
    EXPECT_EQ(times_of(clocked(31, 1000).avchd(0, 1100)).base, time_base_kind::arrival);
}

TEST(timeline, arrival_times_that_do_not_agree_leave_the_pcrs)
{
    for (const unsigned step : {0u, 899u, 1101u}) {
        const known_times known = times_of(clocked(31, 1000).avchd(77, step));
        EXPECT_EQ(known.base, time_base_kind::pcr) << step;
        EXPECT_EQ(known.time(17), 17000);
    }
}

TEST(timeline, the_median_of_the_spans_decides)
{
    // Three spans agree, two are far off.
    stream_builder good = clocked(31, 1000);
    stream_builder bad = clocked(20, 1000, 31000);
    bytes recording = join({good.avchd(0, 1000), bad.avchd(31000, 5000)});
    EXPECT_EQ(times_of(recording).base, time_base_kind::arrival);
    recording = join({clocked(11, 1000).avchd(0, 1000), clocked(31, 1000, 11000).avchd(11000, 5000)});
    EXPECT_EQ(times_of(recording).base, time_base_kind::pcr);
}

TEST(timeline, arrival_times_that_wrap_go_on)
{
    const known_times known = times_of(clocked(31, 1000).avchd(0x3FFFFFFF - 5000, 1000));
    EXPECT_EQ(known.base, time_base_kind::arrival);
    EXPECT_EQ(known.time(30), 30000);
}

TEST(timeline, arrival_times_without_pcrs_are_used_only_when_they_are_asked_for)
{
    stream_builder stream;
    for (int i = 0; i < 20; ++i) stream.payload(0x101, repeated(0x11, 184));
    const bytes recording = stream.avchd(0, 500);
    EXPECT_EQ(times_of(recording).base, time_base_kind::none);
    EXPECT_FALSE(times_of(recording).duration);
    const known_times known = times_of(recording, time_base_kind::arrival);
    EXPECT_EQ(known.base, time_base_kind::arrival);
    EXPECT_EQ(known.time(19), 9500);
    EXPECT_EQ(known.duration, 10000);
}

TEST(timeline, pcrs_that_are_asked_for_are_the_time_base_of_stamped_packets_too)
{
    const known_times known = times_of(clocked(31, 1000).avchd(0, 990), time_base_kind::pcr);
    EXPECT_EQ(known.base, time_base_kind::pcr);
    EXPECT_EQ(known.time(30), 30000);
}

TEST(timeline, without_a_time_base_nothing_has_a_time)
{
    const known_times known = times_of(clocked(31, 1000).data(), time_base_kind::none);
    EXPECT_EQ(known.base, time_base_kind::none);
    EXPECT_FALSE(known.time(0));
    EXPECT_FALSE(known.duration);
}

TEST(timeline, a_pcr_in_a_duplicate_is_no_clock_point)
{
    const auto with_pcr = [](unsigned long long ticks) {
        stream_builder stream;
        const bytes reference = big_endian(ticks / 300 << 15 | 0x7E00 | ticks % 300, 6);
        stream.adaptation(clock_pid, join({hex("10"), reference}), repeated(0x22, 176));
        return stream.data();
    };
    bytes recording = with_pcr(0);
    stream_builder filler;
    filler.padding(8);
    recording = join({recording, with_pcr(50), filler.data()}); // the copy's PCR has a value of its own
    bytes next = with_pcr(1000);
    next[3] = static_cast<uint8_t>((next[3] & 0xF0) | 1);
    const known_times known = times_of(join({recording, next}));
    EXPECT_EQ(known.time(1), 100);
    EXPECT_EQ(known.time(10), 1000);
}

TEST(timeline, a_pcr_of_the_null_pid_or_with_a_transport_error_is_no_clock_point)
{
    stream_builder stream;
    for (unsigned i = 0; i < 5; ++i) stream.pcr(0x1FFF, i * 1000);
    for (unsigned i = 0; i < 5; ++i) stream.pcr(0x100, i * 1000).flip_bit(1, 7);
    EXPECT_EQ(times_of(stream.data()).base, time_base_kind::none);
    stream.pcr(0x100, 100).pcr(0x100, 200);
    const known_times known = times_of(stream.data());
    EXPECT_EQ(known.clock, 0x100);
    EXPECT_EQ(known.duration, 1200);
}

TEST(timeline, a_pcr_that_does_not_fit_into_its_field_is_none)
{
    stream_builder stream;
    bytes packet = clocked(1, 0).data();
    packet[4] = 6; // flags and five bytes
    for (int i = 0; i < 5; ++i) stream.raw(packet);
    EXPECT_EQ(times_of(stream.data()).base, time_base_kind::none);
}
