#include "mpeg12_ts/program_map.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

namespace {

/// The result and the record of one body, in a block of exactly its size.
struct decoded_map {
    explicit decoded_map(const bytes &body)
        : block(body), result(mpeg_ts_pat_map_header_decode(&map, block.data(), block.data() + block.size()))
    {
    }

    size_t offset(const uint8_t *p) const { return static_cast<size_t>(p - block.data()); }

    bytes block;
    mpeg_ts_pat_map_header map;
    int result;
};

bytes stream_entry(unsigned stream_type, unsigned elementary_PID, const bytes &ES_info)
{
    return join({big_endian(stream_type, 1), big_endian(0xE000u | elementary_PID, 2),
                 big_endian(0xF000u | ES_info.size(), 2), ES_info});
}

} // namespace

TEST(program_map, every_field_is_read_without_its_reserved_bits)
{
    const decoded_map all(hex("E1 00  F0 03 AA BB CC  1B E1 01 F0 00  FF FF FF F0 02 DD EE"));
    ASSERT_NE(all.result, 0);
    EXPECT_EQ(all.map.PCR_PID, 0x0100);
    EXPECT_EQ(all.map.program_info_length, 3);
    EXPECT_EQ(all.offset(all.map.program_info), 4u);
    ASSERT_EQ(all.map.stream_count, 2);
    EXPECT_EQ(all.map.streams[0].stream_type, 0x1B);
    EXPECT_EQ(all.map.streams[0].elementary_PID, 0x0101);
    EXPECT_EQ(all.map.streams[0].ES_info_length, 0);
    EXPECT_EQ(all.offset(all.map.streams[0].ES_info), 12u);
    EXPECT_EQ(all.map.streams[1].stream_type, 0xFF);
    EXPECT_EQ(all.map.streams[1].elementary_PID, 0x1FFF);
    EXPECT_EQ(all.map.streams[1].ES_info_length, 2);
    EXPECT_EQ(all.offset(all.map.streams[1].ES_info), 17u);
}

TEST(program_map, reserved_bits_of_zero_change_nothing)
{
    const decoded_map zeros(hex("1F FF 00 00  02 00 21 00 00"));
    ASSERT_NE(zeros.result, 0);
    EXPECT_EQ(zeros.map.PCR_PID, 0x1FFF);
    EXPECT_EQ(zeros.map.program_info_length, 0);
    ASSERT_EQ(zeros.map.stream_count, 1);
    EXPECT_EQ(zeros.map.streams[0].elementary_PID, 0x0021);
}

TEST(program_map, lengths_have_twelve_bits)
{
    const decoded_map program(join({hex("FF FF FF FF"), repeated(0x55, 0xFFF), stream_entry(2, 0x20, {})}));
    ASSERT_NE(program.result, 0);
    EXPECT_EQ(program.map.program_info_length, 0xFFF);
    EXPECT_EQ(program.map.stream_count, 1);

    const decoded_map stream(join({hex("E1 00 F0 00"), stream_entry(2, 0x20, repeated(0x55, 0xFFF))}));
    ASSERT_NE(stream.result, 0);
    ASSERT_EQ(stream.map.stream_count, 1);
    EXPECT_EQ(stream.map.streams[0].ES_info_length, 0xFFF);
}

TEST(program_map, a_body_with_no_stream_entries_succeeds_with_a_count_of_zero)
{
    const decoded_map four_bytes(hex("E1 00 F0 00"));
    EXPECT_NE(four_bytes.result, 0);
    EXPECT_EQ(four_bytes.map.stream_count, 0);
    EXPECT_EQ(four_bytes.map.PCR_PID, 0x0100);

    const decoded_map with_info(hex("E1 00 F0 02 09 00"));
    EXPECT_NE(with_info.result, 0);
    EXPECT_EQ(with_info.map.stream_count, 0);
    EXPECT_EQ(with_info.map.program_info_length, 2);
}

TEST(program_map, a_body_below_four_bytes_fails)
{
    for (size_t size = 0; size < 4; ++size) EXPECT_EQ(decoded_map(repeated(0x00, size)).result, 0) << size;
}

TEST(program_map, program_info_past_the_fence_fails)
{
    EXPECT_EQ(decoded_map(hex("E1 00 F0 01")).result, 0);
    EXPECT_EQ(decoded_map(hex("E1 00 F0 03 AA BB")).result, 0);
    EXPECT_NE(decoded_map(hex("E1 00 F0 02 AA BB")).result, 0);
}

TEST(program_map, a_failed_decode_leaves_nothing_of_an_earlier_one)
{
    mpeg_ts_pat_map_header map;
    const bytes good(join({hex("E1 00 F0 00"), stream_entry(0x1B, 0x101, {})}));
    const bytes bad(hex("E1 00 F0"));
    ASSERT_NE(mpeg_ts_pat_map_header_decode(&map, good.data(), good.data() + good.size()), 0);
    ASSERT_EQ(mpeg_ts_pat_map_header_decode(&map, bad.data(), bad.data() + bad.size()), 0);
    EXPECT_EQ(map.stream_count, 0);
    EXPECT_EQ(map.program_info, nullptr);
    EXPECT_EQ(map.streams[0].ES_info, nullptr);
}

TEST(program_map, es_info_past_the_fence_ends_the_list)
{
    const decoded_map all(
        join({hex("E1 00 F0 00"), stream_entry(0x1B, 0x101, hex("0A")), hex("03 E1 02 F0 02 EE")}));
    ASSERT_NE(all.result, 0);
    EXPECT_EQ(all.map.stream_count, 1);
    EXPECT_EQ(all.map.streams[1].stream_type, 0);
}

TEST(program_map, a_stream_entry_that_does_not_fit_ends_the_list)
{
    for (size_t missing = 1; missing < 5; ++missing) {
        bytes body = join({hex("E1 00 F0 00"), stream_entry(0x1B, 0x101, {}), stream_entry(0x03, 0x102, {})});
        body.resize(body.size() - missing);
        const decoded_map all(body);
        ASSERT_NE(all.result, 0);
        EXPECT_EQ(all.map.stream_count, 1) << missing;
    }
}

TEST(program_map, sixteen_streams_are_kept_and_more_are_left_out)
{
    bytes body = hex("E1 00 F0 00");
    for (unsigned i = 0; i < 17; ++i) {
        const decoded_map so_far(body);
        ASSERT_NE(so_far.result, 0);
        EXPECT_EQ(so_far.map.stream_count, i);
        body = join({body, stream_entry(i, 0x100 + i, {})});
    }
    const decoded_map all(body);
    ASSERT_NE(all.result, 0);
    ASSERT_EQ(all.map.stream_count, 16);
    EXPECT_EQ(all.map.streams[15].stream_type, 15);
    EXPECT_EQ(all.map.streams[15].elementary_PID, 0x10F);
}

/// Bodies of one byte value at every length, so that the address sanitizer sees one byte too many.
TEST(program_map, no_length_is_read_past_its_fence)
{
    for (const uint8_t byte : hex("00 01 10 FF"))
        for (size_t size = 0; size <= 200; ++size) {
            const decoded_map all(repeated(byte, size));
            for (unsigned i = 0; i < all.map.stream_count; ++i)
                EXPECT_LE(all.offset(all.map.streams[i].ES_info) + all.map.streams[i].ES_info_length, size);
        }
}
