#include "mpeg12_ts/packet.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

/// The record of a packet with this adaptation field (the bytes behind its length byte).
struct decoded_field {
    explicit decoded_field(const bytes &field)
        : block(join(
              {hex("47 01 00 30"), big_endian(field.size(), 1), field, repeated(0xA5, 183 - field.size())}))
    {
        std::memset(&packet, 0xEE, sizeof(packet));
        result = mpeg_ts_decode(&packet, block.data(), block.size());
    }

    /// Offset in the field: 0 is the flag byte.
    long offset(const uint8_t *p) const { return p - block.data() - 5; }

    bytes block;
    mpeg_ts_packet packet;
    int result;
};

unsigned flags_of(const mpeg_ts_packet &packet)
{
    unsigned flags = 0;
    for (const unsigned flag : {packet.discontinuity_indicator, packet.random_access_indicator,
                                packet.elementary_stream_priority_indicator, packet.PCR_flag,
                                packet.OPCR_flag, packet.splicing_point_flag,
                                packet.transport_private_data_flag, packet.adaptation_field_extension_flag})
        flags = flags << 1 | flag;
    return flags;
}

constexpr char greatest_clock[] = "FF FF FF FF FF 2B"; ///< base 2^33-1, extension 299, reserved bits set

} // namespace

TEST(packet_adaptation, every_flag_stands_in_its_bit)
{
    for (unsigned flags = 0; flags <= 0xFF; ++flags) {
        const decoded_field d(join({big_endian(flags, 1), repeated(0x00, 16)}));
        ASSERT_NE(d.result, 0);
        EXPECT_EQ(flags_of(d.packet), flags);
    }
}

TEST(packet_adaptation, a_length_of_0_gives_no_flags_and_no_optional_fields)
{
    const decoded_field d({});
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(flags_of(d.packet), 0u);
    EXPECT_EQ(d.packet.PCR, 0u);
    EXPECT_EQ(d.packet.OPCR, 0u);
    EXPECT_EQ(d.packet.splice_countdown, 0);
    EXPECT_EQ(d.packet.transport_private_data_length, 0);
    EXPECT_EQ(d.packet.transport_private_data, nullptr);
    EXPECT_EQ(d.packet.adaptation_field_extension, nullptr);
    EXPECT_EQ(d.packet.adaptation_field_extension_length, 0);
    EXPECT_EQ(d.offset(d.packet.adaptation_field), -1);
    EXPECT_EQ(d.offset(d.packet.payload), 0);
}

TEST(packet_adaptation, the_optional_fields_follow_in_the_order_of_the_standard)
{
    const decoded_field d(hex("1F  00 00 00 01 00 07  00 00 00 02 80 01  FF  03 AA BB CC  02 DD EE  55"));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.packet.PCR, 2u * 300 + 7);
    EXPECT_EQ(d.packet.OPCR, 5u * 300 + 1);
    EXPECT_EQ(d.packet.splice_countdown, 0xFF);
    EXPECT_EQ(d.packet.transport_private_data_length, 3);
    EXPECT_EQ(d.offset(d.packet.transport_private_data), 15);
    EXPECT_EQ(d.packet.adaptation_field_extension_length, 2);
    EXPECT_EQ(d.offset(d.packet.adaptation_field_extension), 19);
}

TEST(packet_adaptation, an_optional_field_is_read_only_when_its_flag_is_set)
{
    const decoded_field nothing(join({hex("E0"), repeated(0x77, 30)}));
    EXPECT_EQ(nothing.packet.PCR, 0u);
    EXPECT_EQ(nothing.packet.OPCR, 0u);
    EXPECT_EQ(nothing.packet.splice_countdown, 0);
    EXPECT_EQ(nothing.packet.transport_private_data_length, 0);
    EXPECT_EQ(nothing.packet.transport_private_data, nullptr);
    EXPECT_EQ(nothing.packet.adaptation_field_extension_length, 0);
    EXPECT_EQ(nothing.packet.adaptation_field_extension, nullptr);

    const decoded_field opcr(hex("08 00 00 00 00 80 00"));
    EXPECT_EQ(opcr.packet.PCR, 0u);
    EXPECT_EQ(opcr.packet.OPCR, 300u);

    const decoded_field countdown(hex("04 80"));
    EXPECT_EQ(countdown.packet.splice_countdown, 0x80);

    const decoded_field extension(hex("01 01 AA"));
    EXPECT_EQ(extension.packet.transport_private_data, nullptr);
    EXPECT_EQ(extension.packet.adaptation_field_extension_length, 1);
    EXPECT_EQ(extension.offset(extension.packet.adaptation_field_extension), 2);
}

TEST(packet_adaptation, the_greatest_clock_is_one_below_its_modulus)
{
    const decoded_field pcr(join({hex("10"), hex(greatest_clock)}));
    EXPECT_EQ(pcr.packet.PCR, 2576980377599u);
    const decoded_field opcr(join({hex("08"), hex(greatest_clock)}));
    EXPECT_EQ(opcr.packet.OPCR, 2576980377599u);
}

TEST(packet_adaptation, a_clock_leaves_out_its_six_reserved_bits)
{
    const decoded_field set(hex("10 00 00 00 00 7E 00"));
    EXPECT_EQ(set.packet.PCR, 0u);
    EXPECT_EQ(set.packet.PCR_flag, 1);
    const decoded_field base(hex("10 00 00 00 00 80 00"));
    EXPECT_EQ(base.packet.PCR, 300u);
    const decoded_field highest(hex("10 80 00 00 00 00 00"));
    EXPECT_EQ(highest.packet.PCR, (1ull << 32) * 300);
    const decoded_field extension(hex("10 00 00 00 00 01 FF"));
    EXPECT_EQ(extension.packet.PCR, 511u);
}

TEST(packet_adaptation, the_first_field_that_does_not_fit_ends_the_reading)
{
    const decoded_field pcr(hex("1F 00 00 00 01 00"));
    ASSERT_NE(pcr.result, 0);
    EXPECT_EQ(flags_of(pcr.packet), 0x1Fu);
    EXPECT_EQ(pcr.packet.PCR, 0u);
    EXPECT_EQ(pcr.packet.OPCR, 0u);
    EXPECT_EQ(pcr.packet.splice_countdown, 0);
    EXPECT_EQ(pcr.packet.transport_private_data_length, 0);

    const decoded_field opcr(hex("1F  00 00 00 01 00 07  00 00 00 02 80"));
    EXPECT_EQ(opcr.packet.PCR, 607u);
    EXPECT_EQ(opcr.packet.OPCR, 0u);
    EXPECT_EQ(opcr.packet.splice_countdown, 0);

    const decoded_field countdown(hex("07"));
    EXPECT_EQ(countdown.packet.splice_countdown, 0);
    EXPECT_EQ(countdown.packet.transport_private_data, nullptr);

    const decoded_field length(hex("07 09"));
    EXPECT_EQ(length.packet.splice_countdown, 9);
    EXPECT_EQ(length.packet.transport_private_data_length, 0);
    EXPECT_EQ(length.packet.transport_private_data, nullptr);
    EXPECT_EQ(length.packet.adaptation_field_extension_length, 0);
}

TEST(packet_adaptation, private_data_past_the_field_keeps_its_length_and_ends_the_reading)
{
    const decoded_field d(hex("03 04 AA BB CC"));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.packet.transport_private_data_length, 4);
    EXPECT_EQ(d.packet.transport_private_data, nullptr);
    EXPECT_EQ(d.packet.adaptation_field_extension_length, 0);
    EXPECT_EQ(d.packet.adaptation_field_extension, nullptr);
    EXPECT_EQ(d.offset(d.packet.payload), 5);
}

TEST(packet_adaptation, an_extension_past_the_field_keeps_its_length)
{
    const decoded_field d(hex("01 02 AA"));
    ASSERT_NE(d.result, 0);
    EXPECT_EQ(d.packet.adaptation_field_extension_length, 2);
    EXPECT_EQ(d.packet.adaptation_field_extension, nullptr);
}

TEST(packet_adaptation, an_announced_length_of_0_gives_a_pointer)
{
    const decoded_field d(hex("03 00 00"));
    EXPECT_EQ(d.packet.transport_private_data_length, 0);
    EXPECT_EQ(d.offset(d.packet.transport_private_data), 2);
    EXPECT_EQ(d.packet.adaptation_field_extension_length, 0);
    EXPECT_EQ(d.offset(d.packet.adaptation_field_extension), 3);
}

TEST(packet_adaptation, data_may_fill_the_field_to_its_last_byte)
{
    const decoded_field private_data(join({hex("02"), big_endian(181, 1), repeated(0xAA, 181)}));
    ASSERT_NE(private_data.result, 0);
    EXPECT_EQ(private_data.packet.transport_private_data_length, 181);
    EXPECT_EQ(private_data.offset(private_data.packet.transport_private_data), 2);
    EXPECT_EQ(private_data.packet.payload, nullptr);

    const decoded_field extension(join({hex("01"), big_endian(181, 1), repeated(0xAA, 181)}));
    EXPECT_EQ(extension.packet.adaptation_field_extension_length, 181);
    EXPECT_EQ(extension.offset(extension.packet.adaptation_field_extension), 2);
}
