#include "mpeg_ts_overview/meters/continuity.h"

#include "tests/overview_meters/meter_packets.h"

#include <gtest/gtest.h>

namespace {

constexpr uint16_t pid = 0x100;

struct counted_stream {
    /// The next packet, with payload only.
    ts_packet packet(unsigned counter) const
    {
        ts_packet made = packet_of(pid, moment_at(next, std::nullopt));
        made.adaptation_field_control = 1;
        made.continuity_counter = static_cast<uint8_t>(counter);
        return made;
    }
    packet_sequence add(const ts_packet &made)
    {
        ++next;
        return meter.on_packet(made);
    }
    packet_sequence payload(unsigned counter) { return add(packet(counter)); }
    packet_sequence copy(unsigned counter)
    {
        ts_packet made = packet(counter);
        made.repeats_previous = true;
        return add(made);
    }
    packet_sequence with_control(unsigned control, unsigned counter)
    {
        ts_packet made = packet(counter);
        made.adaptation_field_control = static_cast<uint8_t>(control);
        return add(made);
    }
    void run(unsigned last_counter, uint64_t count)
    {
        packet_run made;
        made.pid = pid;
        made.last_counter = static_cast<uint8_t>(last_counter);
        made.first = next;
        made.count = count;
        next += count;
        meter.on_run(made);
    }
    pid_facts facts(uint16_t of_pid = pid) const
    {
        pid_facts row;
        row.pid = of_pid;
        meter.add_to(row);
        return row;
    }

    continuity_meter meter;
    uint64_t next = 0;
};

} // namespace

TEST(continuity, a_counter_that_goes_on_by_one_is_good_and_wraps)
{
    counted_stream stream;
    for (unsigned i = 0; i < 40; ++i) {
        const packet_sequence sequence = stream.payload((i + 13) % 16);
        EXPECT_FALSE(sequence.error || sequence.broken || sequence.duplicate) << i;
    }
    EXPECT_EQ(stream.facts().continuity_errors, 0u);
    EXPECT_EQ(stream.meter.errors().count, 0u);
}

TEST(continuity, the_first_packet_may_have_any_counter)
{
    counted_stream stream;
    EXPECT_FALSE(stream.payload(9).error);
}

TEST(continuity, one_to_eight_packets_are_lost)
{
    for (unsigned ahead = 1; ahead <= 8; ++ahead) {
        counted_stream stream;
        stream.payload(12);
        const packet_sequence sequence = stream.payload((13 + ahead) % 16);
        EXPECT_TRUE(sequence.error && sequence.broken);
        EXPECT_EQ(stream.facts().lost_packets_estimate, ahead);
        EXPECT_EQ(stream.facts().out_of_order, 0u);
        EXPECT_EQ(stream.facts().continuity_errors, 1u);
    }
}

TEST(continuity, nine_to_fifteen_is_one_packet_out_of_order)
{
    for (unsigned ahead = 9; ahead <= 15; ++ahead) {
        counted_stream stream;
        stream.payload(12);
        EXPECT_TRUE(stream.payload((13 + ahead) % 16).error);
        EXPECT_EQ(stream.facts().lost_packets_estimate, 0u);
        EXPECT_EQ(stream.facts().out_of_order, 1u);
        EXPECT_EQ(stream.facts().continuity_errors, 1u);
    }
}

TEST(continuity, behind_an_error_the_counter_goes_on_from_there)
{
    counted_stream stream;
    stream.payload(0);
    stream.payload(5);
    EXPECT_FALSE(stream.payload(6).error);
    EXPECT_EQ(stream.facts().continuity_errors, 1u);
}

TEST(continuity, an_error_tells_the_packet_of_the_pid_before)
{
    counted_stream stream;
    stream.payload(0);
    stream.run(5, 5);
    stream.next += 100; // of other PIDs
    EXPECT_EQ(stream.payload(8).packet_before, 5u);
}

TEST(continuity, a_packet_sent_twice_is_a_duplicate_and_no_error)
{
    counted_stream stream;
    stream.payload(3);
    const packet_sequence sequence = stream.copy(3);
    EXPECT_TRUE(sequence.duplicate);
    EXPECT_FALSE(sequence.error || sequence.broken);
    EXPECT_FALSE(stream.payload(4).error);
    EXPECT_EQ(stream.facts().duplicates, 1u);
    EXPECT_EQ(stream.facts().continuity_errors, 0u);
}

TEST(continuity, each_further_copy_is_an_error_that_adds_nothing_else)
{
    counted_stream stream;
    stream.payload(3);
    stream.copy(3);
    packet_sequence sequence = stream.copy(3);
    EXPECT_TRUE(sequence.duplicate && sequence.error);
    EXPECT_FALSE(sequence.broken);
    sequence = stream.copy(3);
    EXPECT_TRUE(sequence.duplicate && sequence.error);
    EXPECT_EQ(stream.facts().duplicates, 1u);
    EXPECT_EQ(stream.facts().continuity_errors, 2u);
    EXPECT_EQ(stream.facts().lost_packets_estimate, 0u);
    EXPECT_EQ(stream.facts().out_of_order, 0u);
    EXPECT_FALSE(stream.payload(4).error);
}

TEST(continuity, every_packet_may_be_sent_twice)
{
    counted_stream stream;
    for (unsigned i = 0; i < 20; ++i) {
        stream.payload(i % 16);
        EXPECT_FALSE(stream.copy(i % 16).error);
    }
    stream.payload(4);
    stream.run(9, 5);
    EXPECT_FALSE(stream.copy(9).error) << "a run ends what was repeated before it";
    EXPECT_EQ(stream.facts().duplicates, 21u);
}

TEST(continuity, an_equal_counter_with_other_bytes_is_an_error)
{
    counted_stream stream;
    stream.payload(3);
    const packet_sequence sequence = stream.payload(3);
    EXPECT_TRUE(sequence.error && sequence.broken);
    EXPECT_FALSE(sequence.duplicate);
    EXPECT_EQ(stream.facts().continuity_errors, 1u);
    EXPECT_EQ(stream.facts().duplicates, 0u);
    EXPECT_EQ(stream.facts().out_of_order, 1u); // d = 15
}

TEST(continuity, without_payload_the_counter_stays)
{
    counted_stream stream;
    stream.payload(3);
    EXPECT_FALSE(stream.with_control(2, 3).error);
    EXPECT_FALSE(stream.with_control(2, 3).error);
    EXPECT_FALSE(stream.payload(4).error);
    EXPECT_TRUE(stream.with_control(2, 5).error);
    EXPECT_EQ(stream.facts().lost_packets_estimate, 1u);
    EXPECT_EQ(stream.facts().duplicates, 0u);
}

TEST(continuity, with_adaptation_field_and_payload_it_goes_on)
{
    counted_stream stream;
    stream.payload(3);
    EXPECT_FALSE(stream.with_control(3, 4).error);
    EXPECT_TRUE(stream.with_control(3, 4).error);
}

TEST(continuity, a_discontinuity_indicator_allows_any_value)
{
    for (unsigned counter = 0; counter < 16; ++counter) {
        counted_stream stream;
        stream.payload(3);
        const packet_sequence sequence = stream.add(flagged(stream.packet(counter)));
        EXPECT_FALSE(sequence.error);
        EXPECT_EQ(sequence.broken, counter != 4);
        EXPECT_FALSE(stream.payload((counter + 1) % 16).error);
        EXPECT_EQ(stream.facts().continuity_errors, 0u);
    }
}

TEST(continuity, the_reserved_adaptation_field_control_is_left_out)
{
    counted_stream stream;
    stream.payload(3);
    EXPECT_FALSE(stream.with_control(0, 9).error);
    EXPECT_FALSE(stream.payload(4).error);
    stream.copy(4);
    stream.with_control(0, 4);
    EXPECT_TRUE(stream.copy(4).error) << "it does not come between copies";
}

TEST(continuity, behind_a_transport_error_the_next_packet_sets_the_counter)
{
    counted_stream stream;
    stream.payload(3);
    ts_packet bad = stream.packet(9);
    bad.transport_error_indicator = true;
    EXPECT_FALSE(stream.add(bad).error);
    EXPECT_FALSE(stream.payload(12).error);
    EXPECT_TRUE(stream.payload(12).error);
}

TEST(continuity, a_transport_error_of_another_pid_does_not_matter)
{
    counted_stream stream;
    stream.payload(3);
    ts_packet bad = stream.packet(9);
    bad.pid = 0x200;
    bad.transport_error_indicator = true;
    stream.add(bad);
    EXPECT_TRUE(stream.payload(12).error);
}

TEST(continuity, at_regained_sync_the_next_packet_of_each_pid_sets_the_counter)
{
    counted_stream stream;
    stream.payload(3);
    ts_packet other = stream.packet(3);
    other.pid = 0x200;
    stream.add(other);
    stream.meter.on_sync_loss();
    EXPECT_FALSE(stream.payload(12).error);
    other.continuity_counter = 1;
    EXPECT_FALSE(stream.add(other).error);
    EXPECT_TRUE(stream.payload(12).error);
}

TEST(continuity, null_packets_have_no_counter)
{
    counted_stream stream;
    for (const unsigned counter : {3u, 9u, 9u, 1u}) {
        ts_packet packet = stream.packet(counter);
        packet.pid = 0x1FFF;
        EXPECT_FALSE(stream.add(packet).error);
    }
    EXPECT_EQ(stream.facts(0x1FFF).continuity_errors, 0u);
}

TEST(continuity, pids_count_by_themselves_and_the_log_holds_all)
{
    counted_stream stream;
    stream.payload(3);
    ts_packet other = stream.packet(3);
    other.pid = 0x200;
    stream.add(other);
    stream.payload(5);
    other = stream.packet(7);
    other.pid = 0x200;
    stream.add(other);
    stream.payload(5);
    stream.copy(5);
    stream.copy(5);
    EXPECT_EQ(stream.facts().continuity_errors, 3u);
    EXPECT_EQ(stream.facts(0x200).continuity_errors, 1u);
    EXPECT_EQ(stream.facts(0x200).lost_packets_estimate, 3u);
    EXPECT_EQ(stream.facts(0x300).continuity_errors, 0u);

    const violation_log &log = stream.meter.errors();
    ASSERT_EQ(log.details.size(), 4u);
    EXPECT_EQ(log.count, 4u);
    EXPECT_EQ(log.first.packet, 2u);
    EXPECT_EQ(log.last.packet, 6u);
    EXPECT_EQ(log.details[0].text, "1 packet lost");
    EXPECT_EQ(log.details[1].text, "3 packets lost");
    EXPECT_EQ(log.details[1].pid, 0x200);
    EXPECT_EQ(log.details[2].text, "counter unchanged, other bytes");
    EXPECT_EQ(log.details[3].text, "a packet sent more than twice");
    EXPECT_FALSE(log.worst);
}
