#include "mpeg_ts_overview/input/packet.h"

#include "tests/support/stream_builder.h"

#include <gtest/gtest.h>

namespace {

bytes packet_of(std::string_view start)
{
    bytes packet = hex(start);
    packet.resize(188, 0xFF);
    return packet;
}

} // namespace

TEST(packet, the_header_field_by_field)
{
    const bytes data = packet_of("47 F2 34 9B 00");
    const ts_packet packet = read_packet(data.data());
    EXPECT_TRUE(packet.transport_error_indicator);
    EXPECT_TRUE(packet.payload_unit_start_indicator);
    EXPECT_EQ(packet.pid, 0x1234);
    EXPECT_EQ(packet.transport_scrambling_control, 2);
    EXPECT_EQ(packet.adaptation_field_control, 1);
    EXPECT_EQ(packet.continuity_counter, 11);
    EXPECT_EQ(packet.payload, data.data() + 4);
    EXPECT_EQ(packet.fence, data.data() + 188);
}

TEST(packet, the_adaptation_field_and_the_payload_behind_it)
{
    const bytes data = packet_of("47 01 00 30 07 D0 00000001 FE 02 AB");
    const ts_packet packet = read_packet(data.data());
    EXPECT_TRUE(packet.discontinuity_indicator);
    EXPECT_TRUE(packet.random_access_indicator);
    EXPECT_EQ(packet.PCR, 3u * 300 + 2);
    EXPECT_EQ(packet.payload, data.data() + 12);
}

TEST(packet, a_pcr_that_does_not_fit_is_none)
{
    EXPECT_FALSE(read_packet(packet_of("47 01 00 30 06 10").data()).PCR);
    EXPECT_TRUE(read_packet(packet_of("47 01 00 30 07 10").data()).PCR);
}

TEST(packet, of_an_adaptation_field_longer_than_the_packet_only_the_header_counts)
{
    for (const char *start : {"47 01 00 30 B8 F0", "47 01 00 20 FF F0"}) {
        const bytes data = packet_of(start);
        const ts_packet packet = read_packet(data.data());
        EXPECT_EQ(packet.pid, 0x0100);
        EXPECT_FALSE(packet.discontinuity_indicator);
        EXPECT_FALSE(packet.PCR);
        EXPECT_EQ(packet.payload, packet.fence);
    }
}

TEST(packet, an_adaptation_field_that_fills_the_packet_leaves_no_payload)
{
    const bytes data = packet_of("47 01 00 30 B7 80");
    const ts_packet packet = read_packet(data.data());
    EXPECT_TRUE(packet.discontinuity_indicator);
    EXPECT_EQ(packet.payload, packet.fence);
}

TEST(packet, without_payload_there_is_none)
{
    for (const char *start : {"47 01 00 00", "47 01 00 20 01 00"}) {
        const bytes data = packet_of(start);
        EXPECT_EQ(read_packet(data.data()).payload, data.data() + 188);
    }
}
