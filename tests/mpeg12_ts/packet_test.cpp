#include "mpeg12_ts/packet.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

/// The result and the record of one packet, in a block of exactly its size.
struct decoded_packet {
    explicit decoded_packet(const bytes &content) : block(content)
    {
        std::memset(&packet, 0xEE, sizeof(packet));
        result = mpeg_ts_decode(&packet, block.data(), block.size());
    }

    long offset(const uint8_t *p) const { return p - block.data(); }

    bytes block;
    mpeg_ts_packet packet;
    int result;
};

/// These bytes, filled up to a packet.
bytes packet_of(bytes start, size_t size = 188)
{
    start.resize(size, 0xFF);
    return start;
}

void expect_cleared(const mpeg_ts_packet &packet)
{
    EXPECT_EQ(packet.arrival_time, 0u);
    EXPECT_EQ(packet.pid, 0);
    EXPECT_EQ(packet.continuity_counter, 0);
    EXPECT_EQ(packet.adaptation_field_control, 0);
    EXPECT_EQ(packet.adaptation_field_fence, nullptr);
    EXPECT_EQ(packet.adaptation_field, nullptr);
    EXPECT_EQ(packet.payload, nullptr);
    EXPECT_EQ(packet.fence, nullptr);
    EXPECT_EQ(packet.packet, nullptr);
    EXPECT_EQ(packet.PCR_flag, 0);
    EXPECT_EQ(packet.PCR, 0u);
    EXPECT_EQ(packet.OPCR, 0u);
    EXPECT_EQ(packet.transport_private_data, nullptr);
    EXPECT_EQ(packet.adaptation_field_extension, nullptr);
}

} // namespace

TEST(packet, header_fields_stand_in_their_bits)
{
    const decoded_packet d(packet_of(hex("47 BA BC 9D")));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.packet.transport_error_indicator, 1);
    EXPECT_EQ(d.packet.payload_unit_start_indicator, 0);
    EXPECT_EQ(d.packet.transport_priority, 1);
    EXPECT_EQ(d.packet.pid, 0x1ABC);
    EXPECT_EQ(d.packet.transport_scrambling_control, 2);
    EXPECT_EQ(d.packet.adaptation_field_control, 1);
    EXPECT_EQ(d.packet.continuity_counter, 13);
}

TEST(packet, every_header_bit_is_in_one_field_only)
{
    for (unsigned bit = 0; bit < 24; ++bit) {
        const unsigned header = 1u << bit;
        const decoded_packet d(packet_of(join({hex("47"), big_endian(header, 3), hex("00")})));
        ASSERT_NE(d.result, 0) << bit;
        EXPECT_EQ(d.packet.transport_error_indicator, header >> 23 & 1);
        EXPECT_EQ(d.packet.payload_unit_start_indicator, header >> 22 & 1);
        EXPECT_EQ(d.packet.transport_priority, header >> 21 & 1);
        EXPECT_EQ(d.packet.pid, header >> 8 & 0x1FFF);
        EXPECT_EQ(d.packet.transport_scrambling_control, header >> 6 & 3);
        EXPECT_EQ(d.packet.adaptation_field_control, header >> 4 & 3);
        EXPECT_EQ(d.packet.continuity_counter, header & 0xF);
    }
}

TEST(packet, all_header_bits_set_give_the_greatest_values)
{
    const decoded_packet d(packet_of(hex("47 FF FF FF 00")));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.packet.transport_error_indicator, 1);
    EXPECT_EQ(d.packet.payload_unit_start_indicator, 1);
    EXPECT_EQ(d.packet.transport_priority, 1);
    EXPECT_EQ(d.packet.pid, 0x1FFF);
    EXPECT_EQ(d.packet.transport_scrambling_control, 3);
    EXPECT_EQ(d.packet.adaptation_field_control, 3);
    EXPECT_EQ(d.packet.continuity_counter, 15);
}

TEST(packet, pointers_of_a_188_byte_packet_point_into_the_buffer)
{
    const decoded_packet d(packet_of(hex("47 00 21 10")));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.packet.arrival_time, 0u);
    EXPECT_EQ(d.offset(d.packet.packet), 0);
    EXPECT_EQ(d.offset(d.packet.fence), 188);
    EXPECT_EQ(d.offset(d.packet.payload), 4);
    EXPECT_EQ(d.offset(d.packet.adaptation_field_fence), 4);
    EXPECT_EQ(d.packet.adaptation_field, nullptr);
}

TEST(packet, pointers_of_a_192_byte_packet_count_the_prefix)
{
    const decoded_packet d(packet_of(hex("12 34 56 78 47 00 21 30 01 00"), 192));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.packet.arrival_time, 0x12345678u);
    EXPECT_EQ(d.packet.pid, 0x0021);
    EXPECT_EQ(d.offset(d.packet.packet), 0);
    EXPECT_EQ(d.offset(d.packet.fence), 192);
    EXPECT_EQ(d.offset(d.packet.adaptation_field), 8);
    EXPECT_EQ(d.offset(d.packet.adaptation_field_fence), 10);
    EXPECT_EQ(d.offset(d.packet.payload), 10);
}

TEST(packet, a_prefix_of_zeros_is_arrival_time_0)
{
    const decoded_packet d(packet_of(hex("00 00 00 00 47 00 21 10"), 192));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.packet.arrival_time, 0u);
}

TEST(packet, the_arrival_time_keeps_all_32_bits)
{
    const decoded_packet d(packet_of(hex("FF FF FF FE 47 00 21 10"), 192));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.packet.arrival_time, 0xFFFFFFFEu);
}

TEST(packet, adaptation_field_control_0_is_decoded_without_payload)
{
    const decoded_packet d(packet_of(hex("47 00 21 00 FF FF")));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.packet.adaptation_field_control, 0);
    EXPECT_EQ(d.packet.adaptation_field, nullptr);
    EXPECT_EQ(d.packet.payload, nullptr);
    EXPECT_EQ(d.packet.PCR_flag, 0);
    EXPECT_EQ(d.offset(d.packet.fence), 188);
}

TEST(packet, adaptation_field_control_2_has_no_payload_behind_a_short_field)
{
    const decoded_packet d(packet_of(hex("47 00 21 20 05 00")));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.offset(d.packet.adaptation_field), 4);
    EXPECT_EQ(d.offset(d.packet.adaptation_field_fence), 10);
    EXPECT_EQ(d.packet.payload, nullptr);
}

TEST(packet, adaptation_field_control_3_has_its_payload_behind_the_field)
{
    const decoded_packet d(packet_of(hex("47 00 21 30 05 00")));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.offset(d.packet.payload), 10);
}

TEST(packet, a_field_up_to_the_last_byte_but_one_leaves_one_byte_of_payload)
{
    const decoded_packet d(packet_of(join({hex("47 00 21 30"), big_endian(182, 1), hex("00")})));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.offset(d.packet.payload), 187);
}

TEST(packet, a_field_of_183_bytes_leaves_no_payload_although_it_is_announced)
{
    const decoded_packet d(packet_of(join({hex("47 00 21 30"), big_endian(183, 1), hex("00")})));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.packet.adaptation_field_control, 3);
    EXPECT_EQ(d.packet.payload, nullptr);
    EXPECT_EQ(d.offset(d.packet.adaptation_field_fence), 188);
}

TEST(packet, a_field_that_passes_the_fence_rejects_the_packet)
{
    for (const char *control : {"20", "30"})
        for (const size_t size : {size_t{188}, size_t{192}}) {
            const bytes prefix = repeated(0x11, size - 188);
            const decoded_packet d(
                packet_of(join({prefix, hex("47 00 21"), hex(control), hex("B8 00")}), size));
            EXPECT_EQ(d.result, 0);
            expect_cleared(d.packet);
        }
}

TEST(packet, without_a_sync_byte_a_packet_is_rejected)
{
    for (unsigned first = 0; first <= 0xFF; ++first) {
        const bytes start = join({big_endian(first, 1), hex("00 21 10")});
        const decoded_packet plain(packet_of(start));
        EXPECT_EQ(plain.result != 0, first == 0x47) << first;
        const decoded_packet prefixed(packet_of(join({hex("47 47 47 47"), start}), 192));
        EXPECT_EQ(prefixed.result != 0, first == 0x47) << first;
        if (first != 0x47) {
            expect_cleared(plain.packet);
            expect_cleared(prefixed.packet);
        }
    }
}

TEST(packet, another_size_is_rejected)
{
    for (const unsigned size : {0u, 1u, 4u, 187u, 189u, 190u, 191u, 193u, 204u, 208u}) {
        const decoded_packet d(packet_of(hex("47 47 47 47 47 47"), size));
        EXPECT_EQ(d.result, 0) << size;
        expect_cleared(d.packet);
    }
}
