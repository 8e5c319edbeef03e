#include "mpeg12_ts/service_description.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

namespace {

/// The result and the record of one body, in a block of exactly its size.
struct decoded_sdt {
    explicit decoded_sdt(const bytes &body)
        : block(body), result(mpeg_ts_decode_service_description_section(&section, block.data(),
                                                                         block.data() + block.size()))
    {
    }

    bool next() { return mpeg_ts_decode_service_description_section_entry(&section) != 0; }

    size_t offset(const uint8_t *p) const { return static_cast<size_t>(p - block.data()); }

    unsigned remaining_entries()
    {
        unsigned count = 0;
        for (; next(); ++count) {
            EXPECT_LE(section.descriptors, section.descriptors_fence);
            EXPECT_LE(offset(section.descriptors_fence), block.size());
        }
        return count;
    }

    bytes block;
    mpeg_ts_service_description_section section;
    int result;
};

} // namespace

TEST(service_description, every_field_of_a_service_is_read_without_its_reserved_bits)
{
    decoded_sdt sdt(hex("20 3A FF  10 01 FE 90 03 AA BB CC"));
    ASSERT_NE(sdt.result, 0);
    EXPECT_EQ(sdt.section.original_network_id, 0x203A);
    ASSERT_TRUE(sdt.next());
    EXPECT_EQ(sdt.section.original_network_id, 0x203A);
    EXPECT_EQ(sdt.section.service_id, 0x1001);
    EXPECT_EQ(sdt.section.EIT_schedule_flag, 1);
    EXPECT_EQ(sdt.section.EIT_present_following_flag, 0);
    EXPECT_EQ(sdt.section.running_status, 4);
    EXPECT_EQ(sdt.section.free_CA_mode, 1);
    EXPECT_EQ(sdt.offset(sdt.section.descriptors), 8u);
    EXPECT_EQ(sdt.offset(sdt.section.descriptors_fence), 11u);
    EXPECT_FALSE(sdt.next());
}

TEST(service_description, each_flag_is_a_bit_of_its_own)
{
    decoded_sdt sdt(hex("00 01 FF  00 01 01 00 00  00 02 02 00 00  00 03 FC E0 00  00 04 00 10 00"));
    ASSERT_TRUE(sdt.next());
    EXPECT_EQ(sdt.section.EIT_schedule_flag, 0);
    EXPECT_EQ(sdt.section.EIT_present_following_flag, 1);
    EXPECT_EQ(sdt.section.running_status, 0);
    EXPECT_EQ(sdt.section.free_CA_mode, 0);
    ASSERT_TRUE(sdt.next());
    EXPECT_EQ(sdt.section.EIT_schedule_flag, 1);
    EXPECT_EQ(sdt.section.EIT_present_following_flag, 0);
    ASSERT_TRUE(sdt.next());
    EXPECT_EQ(sdt.section.EIT_schedule_flag, 0);
    EXPECT_EQ(sdt.section.EIT_present_following_flag, 0);
    EXPECT_EQ(sdt.section.running_status, 7);
    EXPECT_EQ(sdt.section.free_CA_mode, 0);
    ASSERT_TRUE(sdt.next());
    EXPECT_EQ(sdt.section.service_id, 4);
    EXPECT_EQ(sdt.section.running_status, 0);
    EXPECT_EQ(sdt.section.free_CA_mode, 1);
    EXPECT_EQ(sdt.section.descriptors, sdt.section.descriptors_fence);
    EXPECT_FALSE(sdt.next());
    EXPECT_FALSE(sdt.next()) << "the end stays the end";
}

TEST(service_description, a_body_of_exactly_three_bytes_succeeds_without_services)
{
    decoded_sdt sdt(hex("12 34 00"));
    EXPECT_NE(sdt.result, 0);
    EXPECT_EQ(sdt.section.original_network_id, 0x1234);
    EXPECT_FALSE(sdt.next());
}

TEST(service_description, a_body_below_three_bytes_fails_and_has_no_services)
{
    for (size_t size = 0; size < 3; ++size) {
        decoded_sdt sdt(repeated(0xFF, size));
        EXPECT_EQ(sdt.result, 0) << size;
        EXPECT_FALSE(sdt.next());
    }
}

TEST(service_description, the_next_service_lies_behind_the_descriptors_of_this_one)
{
    decoded_sdt sdt(hex("00 01 FF  00 11 FC 80 02 55 55  00 12 FC 80 00  00 13 FC 80 01 66"));
    ASSERT_TRUE(sdt.next());
    EXPECT_EQ(sdt.section.service_id, 0x11);
    ASSERT_TRUE(sdt.next());
    EXPECT_EQ(sdt.section.service_id, 0x12);
    ASSERT_TRUE(sdt.next());
    EXPECT_EQ(sdt.section.service_id, 0x13);
    EXPECT_FALSE(sdt.next());
}

TEST(service_description, descriptors_past_the_fence_end_the_iteration)
{
    EXPECT_EQ(decoded_sdt(hex("00 01 FF  00 11 FC 80 01")).remaining_entries(), 0u);
    EXPECT_EQ(decoded_sdt(hex("00 01 FF  00 11 FC 80 00  00 12 FC 8F FF AA")).remaining_entries(), 1u);
    EXPECT_EQ(decoded_sdt(hex("00 01 FF  00 11 FC 80 01 AA")).remaining_entries(), 1u);
}

TEST(service_description, five_fixed_bytes_that_do_not_fit_end_the_iteration)
{
    const bytes two = hex("00 01 FF  00 11 FC 80 00  00 12 FC 80 00");
    for (size_t size = 3; size <= two.size(); ++size)
        EXPECT_EQ(decoded_sdt(bytes(two.begin(), two.begin() + static_cast<long>(size))).remaining_entries(),
                  (size - 3) / 5);
}

TEST(service_description, descriptors_have_twelve_bits_of_length)
{
    EXPECT_EQ(decoded_sdt(join({hex("00 01 FF  00 11 FC FF FF"), repeated(0x55, 0xFFF)})).remaining_entries(),
              1u);
    EXPECT_EQ(decoded_sdt(join({hex("00 01 FF  00 11 FC FF FF"), repeated(0x55, 0xFFE)})).remaining_entries(),
              0u);
}

/// Bodies of one byte value at every length, so that the address sanitizer sees one byte too many.
TEST(service_description, no_length_is_read_past_its_fence)
{
    for (const uint8_t byte : hex("00 01 10 FF"))
        for (size_t size = 0; size <= 100; ++size) decoded_sdt(repeated(byte, size)).remaining_entries();
}
