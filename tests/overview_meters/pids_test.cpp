#include "mpeg_ts_overview/meters/pids.h"

#include "tests/overview_meters/meter_times.h"

#include <gtest/gtest.h>

namespace {

ts_packet payload_packet(uint16_t pid, uint64_t index)
{
    ts_packet packet = packet_of(pid, moment_at(index, std::nullopt));
    packet.adaptation_field_control = 1;
    return packet;
}

packet_run run_of(uint16_t pid, uint64_t first, uint64_t count, unsigned scrambling = 0)
{
    packet_run run;
    run.pid = pid;
    run.first = first;
    run.count = count;
    run.transport_scrambling_control = static_cast<uint8_t>(scrambling);
    return run;
}

/// What the meter counts of one packet.
pid_facts facts_of(const ts_packet &packet)
{
    const line_times line(0, 100, 1000);
    pids_meter meter;
    meter.begin(line.times);
    meter.on_packet(packet);
    meter.end();
    return meter.finish().at(0);
}

} // namespace

TEST(pids, packets_and_runs_add_up_with_their_first_and_last)
{
    const line_times line(0, 100, 1000);
    pids_meter meter;
    meter.begin(line.times);
    meter.on_packet(payload_packet(0x100, 2));
    meter.on_run(run_of(0x100, 3, 5));
    meter.on_run(run_of(0x200, 8, 10));
    meter.on_packet(payload_packet(0x100, 20));
    meter.end();
    const std::vector<pid_facts> rows = meter.finish();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].pid, 0x100);
    EXPECT_EQ(rows[0].packets, 7u);
    EXPECT_EQ(rows[0].first_packet, 2u);
    EXPECT_EQ(rows[0].last_packet, 20u);
    EXPECT_EQ(rows[0].first_ticks, 2000);
    EXPECT_EQ(rows[0].last_ticks, 20000);
    EXPECT_EQ(rows[1].packets, 10u);
    EXPECT_EQ(rows[1].first_packet, 8u);
    EXPECT_EQ(rows[1].last_packet, 17u);
    EXPECT_EQ(rows[1].last_ticks, 17000);
    EXPECT_TRUE(meter.has_packets(0x200));
    EXPECT_FALSE(meter.has_packets(0x300));
    EXPECT_EQ(meter.packets_of(0x100), 7u);
}

TEST(pids, rows_stand_in_order_of_first_arrival)
{
    const line_times line(0, 100, 1000);
    pids_meter meter;
    meter.begin(line.times);
    for (const uint16_t pid : std::initializer_list<uint16_t>{0x300, 0x100, 0x200, 0x100, 0x300})
        meter.on_run(run_of(pid, 7, 1));
    meter.end();
    std::vector<uint16_t> order;
    for (const pid_facts &row : meter.finish()) order.push_back(row.pid);
    EXPECT_EQ(order, (std::vector<uint16_t>{0x300, 0x100, 0x200}));
}

TEST(pids, a_last_time_is_that_of_the_times_in_which_the_packet_lay)
{
    const line_times early(0, 100, 1000);
    const line_times late(100, 200, 5000);
    pids_meter meter;
    meter.begin(early.times);
    meter.on_run(run_of(0x100, 0, 10));
    meter.on_run(run_of(0x200, 10, 10));
    meter.end();
    meter.begin(late.times);
    meter.on_run(run_of(0x200, 150, 1));
    meter.end();
    const std::vector<pid_facts> rows = meter.finish();
    EXPECT_EQ(rows[0].last_ticks, 9000);
    EXPECT_EQ(rows[1].last_ticks, 750000);
}

TEST(pids, without_times_there_are_none)
{
    const no_times none(0, 100);
    pids_meter meter;
    meter.begin(none.times);
    meter.on_run(run_of(0x100, 0, 10));
    meter.end();
    const pid_facts row = meter.finish().at(0);
    EXPECT_EQ(row.packets, 10u);
    EXPECT_FALSE(row.first_ticks || row.last_ticks);
}

TEST(pids, each_flag_counts_where_it_belongs)
{
    ts_packet packet = payload_packet(0x100, 0);
    pid_facts row = facts_of(packet);
    EXPECT_EQ(row.scrambled + row.unit_starts + row.random_access_points + row.without_payload +
                  row.reserved_control + row.discontinuities + row.transport_errors,
              0u);
    packet.transport_scrambling_control = 1;
    EXPECT_EQ(facts_of(packet).scrambled, 1u);
    packet = payload_packet(0x100, 0);
    packet.payload_unit_start_indicator = true;
    EXPECT_EQ(facts_of(packet).unit_starts, 1u);
    packet = payload_packet(0x100, 0);
    packet.random_access_indicator = true;
    EXPECT_EQ(facts_of(packet).random_access_points, 1u);
    EXPECT_EQ(facts_of(flagged(payload_packet(0x100, 0))).discontinuities, 1u);
    packet.adaptation_field_control = 2;
    EXPECT_EQ(facts_of(packet).without_payload, 1u);
    EXPECT_EQ(facts_of(packet).reserved_control, 0u);
    packet.adaptation_field_control = 0;
    EXPECT_EQ(facts_of(packet).reserved_control, 1u);
    EXPECT_EQ(facts_of(packet).without_payload, 0u);
}

TEST(pids, scrambled_runs_count_with_all_their_packets)
{
    const line_times line(0, 100, 1000);
    pids_meter meter;
    meter.begin(line.times);
    meter.on_run(run_of(0x100, 0, 10, 3));
    meter.on_run(run_of(0x100, 10, 5));
    meter.on_run(run_of(0x100, 15, 2, 2));
    meter.end();
    EXPECT_EQ(meter.finish().at(0).scrambled, 12u);
}

TEST(pids, a_packet_with_a_transport_error_counts_as_such_and_as_a_packet_only)
{
    ts_packet packet = flagged(payload_packet(0x100, 0));
    packet.transport_error_indicator = true;
    packet.transport_scrambling_control = 2;
    packet.payload_unit_start_indicator = true;
    packet.random_access_indicator = true;
    for (const uint8_t control : std::initializer_list<uint8_t>{0, 2}) {
        packet.adaptation_field_control = control;
        const pid_facts row = facts_of(packet);
        EXPECT_EQ(row.packets, 1u);
        EXPECT_EQ(row.transport_errors, 1u);
        EXPECT_EQ(row.scrambled + row.unit_starts + row.random_access_points + row.without_payload +
                      row.reserved_control + row.discontinuities,
                  0u);
    }
}
