#include "mpeg12_ts/network_information.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

namespace {

/// The result and the record of one body, in a block of exactly its size.
struct decoded_nit {
    explicit decoded_nit(const bytes &body)
        : block(body), result(mpeg_ts_decode_nit_header(&header, block.data(), block.data() + block.size()))
    {
    }

    size_t offset(const uint8_t *p) const { return static_cast<size_t>(p - block.data()); }

    bytes block;
    mpeg_ts_nit_header header;
    int result;
};

/// The number of entries that a loop of exactly these bytes has; the last in entry.
unsigned entry_count(const bytes &loop, mpeg_ts_nit_entry *entry)
{
    const bytes block(loop);
    unsigned count = 0;
    for (int more = mpeg_ts_decode_nit_first_entry(entry, block.data(), block.data() + block.size());
         more != 0; more = mpeg_ts_decode_nit_next_entry(entry)) {
        EXPECT_LE(entry->transport_descriptors, entry->transport_descriptors_fence);
        EXPECT_LE(entry->transport_descriptors_fence, block.data() + block.size());
        ++count;
    }
    return count;
}

} // namespace

TEST(network_information, the_header_gives_both_loops)
{
    const decoded_nit nit(hex("F0 02 40 00  F0 03 11 22 33"));
    ASSERT_NE(nit.result, 0);
    EXPECT_EQ(nit.header.network_descriptors_length, 2);
    EXPECT_EQ(nit.offset(nit.header.network_descriptors), 2u);
    EXPECT_EQ(nit.offset(nit.header.network_descriptors_fence), 4u);
    EXPECT_EQ(nit.header.transport_stream_loop_length, 3);
    EXPECT_EQ(nit.offset(nit.header.transport_stream_loop), 6u);
    EXPECT_EQ(nit.offset(nit.header.transport_stream_loop_fence), 9u);
}

TEST(network_information, reserved_bits_do_not_count)
{
    const decoded_nit nit(hex("00 00 00 00"));
    ASSERT_NE(nit.result, 0);
    EXPECT_EQ(nit.header.network_descriptors_length, 0);
    EXPECT_EQ(nit.header.network_descriptors, nit.header.network_descriptors_fence);
    EXPECT_EQ(nit.header.transport_stream_loop_length, 0);
}

TEST(network_information, lengths_have_twelve_bits)
{
    const decoded_nit descriptors(join({hex("FF FF"), repeated(0x55, 0xFFF), hex("F0 00")}));
    ASSERT_NE(descriptors.result, 0);
    EXPECT_EQ(descriptors.header.network_descriptors_length, 0xFFF);

    const decoded_nit loop(join({hex("F0 00 FF FF"), repeated(0x55, 0xFFF)}));
    ASSERT_NE(loop.result, 0);
    EXPECT_EQ(loop.header.transport_stream_loop_length, 0xFFF);
}

TEST(network_information, the_loop_ends_where_its_length_says)
{
    const decoded_nit nit(hex("F0 00 F0 01 AA BB CC"));
    ASSERT_NE(nit.result, 0);
    EXPECT_EQ(nit.offset(nit.header.transport_stream_loop_fence), 5u);
}

TEST(network_information, a_length_past_the_fence_fails)
{
    EXPECT_EQ(decoded_nit(hex("F0 01")).result, 0);
    EXPECT_EQ(decoded_nit(hex("F0 02 40")).result, 0);
    EXPECT_EQ(decoded_nit(hex("F0 03 40 00 F0 00")).result, 0) << "no room for the loop's length";
    EXPECT_EQ(decoded_nit(hex("F0 00 F0 01")).result, 0);
    EXPECT_EQ(decoded_nit(hex("F0 00 F0 03 AA BB")).result, 0);
    EXPECT_NE(decoded_nit(hex("F0 00 F0 02 AA BB")).result, 0);
}

TEST(network_information, a_length_field_that_does_not_fit_fails)
{
    EXPECT_EQ(decoded_nit({}).result, 0);
    EXPECT_EQ(decoded_nit(hex("F0")).result, 0);
    EXPECT_EQ(decoded_nit(hex("F0 00")).result, 0);
    EXPECT_EQ(decoded_nit(hex("F0 00 F0")).result, 0);
}

TEST(network_information, an_entry_gives_every_field_without_its_reserved_bits)
{
    const bytes loop(hex("12 34 56 78 F0 02 AA BB"));
    mpeg_ts_nit_entry entry;
    ASSERT_NE(mpeg_ts_decode_nit_first_entry(&entry, loop.data(), loop.data() + loop.size()), 0);
    EXPECT_EQ(entry.transport_stream_id, 0x1234);
    EXPECT_EQ(entry.original_network_id, 0x5678);
    EXPECT_EQ(entry.transport_descriptors_length, 2);
    EXPECT_EQ(entry.transport_descriptors, loop.data() + 6);
    EXPECT_EQ(entry.transport_descriptors_fence, loop.data() + 8);
    EXPECT_EQ(mpeg_ts_decode_nit_next_entry(&entry), 0);
}

TEST(network_information, the_next_entry_lies_behind_the_descriptors_of_this_one)
{
    const bytes loop(hex("00 01 00 02 F0 01 AA  00 03 00 04 00 00  FF FF FF FE F0 00"));
    mpeg_ts_nit_entry entry;
    ASSERT_NE(mpeg_ts_decode_nit_first_entry(&entry, loop.data(), loop.data() + loop.size()), 0);
    EXPECT_EQ(entry.transport_stream_id, 1);
    ASSERT_NE(mpeg_ts_decode_nit_next_entry(&entry), 0);
    EXPECT_EQ(entry.transport_stream_id, 3);
    EXPECT_EQ(entry.original_network_id, 4);
    EXPECT_EQ(entry.transport_descriptors_length, 0);
    EXPECT_EQ(entry.transport_descriptors, entry.transport_descriptors_fence);
    ASSERT_NE(mpeg_ts_decode_nit_next_entry(&entry), 0);
    EXPECT_EQ(entry.transport_stream_id, 0xFFFF);
    EXPECT_EQ(entry.original_network_id, 0xFFFE);
    EXPECT_EQ(mpeg_ts_decode_nit_next_entry(&entry), 0);
    EXPECT_EQ(mpeg_ts_decode_nit_next_entry(&entry), 0) << "the end stays the end";
}

TEST(network_information, a_transport_stream_loop_of_length_zero_has_no_first_entry)
{
    const decoded_nit nit(hex("F0 00 F0 00"));
    ASSERT_NE(nit.result, 0);
    mpeg_ts_nit_entry entry;
    EXPECT_EQ(mpeg_ts_decode_nit_first_entry(&entry, nit.header.transport_stream_loop,
                                             nit.header.transport_stream_loop_fence),
              0);
}

TEST(network_information, an_entry_that_does_not_fit_ends_the_loop)
{
    mpeg_ts_nit_entry entry;
    const bytes two = hex("00 01 00 02 F0 00  00 03 00 04 F0 00");
    for (size_t size = 0; size < two.size(); ++size)
        EXPECT_EQ(entry_count(bytes(two.begin(), two.begin() + static_cast<long>(size)), &entry), size / 6);
    EXPECT_EQ(entry_count(two, &entry), 2u);
    EXPECT_EQ(entry_count(hex("00 01 00 02 F0 02 AA"), &entry), 0u);
    EXPECT_EQ(entry_count(hex("00 01 00 02 F0 00  00 03 00 04 FF FF"), &entry), 1u);
}

TEST(network_information, descriptors_of_an_entry_have_twelve_bits_of_length)
{
    mpeg_ts_nit_entry entry;
    EXPECT_EQ(entry_count(join({hex("00 01 00 02 FF FF"), repeated(0x55, 0xFFF)}), &entry), 1u);
    EXPECT_EQ(entry_count(join({hex("00 01 00 02 FF FF"), repeated(0x55, 0xFFE)}), &entry), 0u);
}

/// Bodies of one byte value at every length, so that the address sanitizer sees one byte too many.
TEST(network_information, no_length_is_read_past_its_fence)
{
    for (const uint8_t byte : hex("00 01 10 FF"))
        for (size_t size = 0; size <= 100; ++size) {
            mpeg_ts_nit_entry entry;
            const decoded_nit nit(repeated(byte, size));
            if (nit.result != 0) {
                EXPECT_LE(nit.offset(nit.header.transport_stream_loop_fence), size);
            }
            entry_count(repeated(byte, size), &entry);
        }
}
