#include "mpeg12_ts/bit_reader.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

namespace {

/// Bit by bit, zeros past the end.
unsigned long long reference_bits(const bytes &block, size_t start, unsigned width)
{
    unsigned long long value = 0;
    for (size_t bit = start; bit < start + width; ++bit) {
        const unsigned byte = bit / 8 < block.size() ? block[bit / 8] : 0u;
        value = value << 1 | (byte >> (7 - bit % 8) & 1);
    }
    return value;
}

} // namespace

TEST(bit_reader, fields_are_read_in_order_most_significant_bit_first)
{
    const bytes block(hex("A5 5A FF 00 12 34 56 78 9A"));
    bit_reader in(block.data(), block.data() + block.size());
    EXPECT_EQ(in.bits(1), 1u);
    EXPECT_EQ(in.bits(2), 1u);
    EXPECT_EQ(in.bits(13), 0x055Au);
    EXPECT_EQ(in.bits(4), 0xFu);
    EXPECT_EQ(in.bits(12), 0xF00u);
    EXPECT_EQ(in.bits(32), 0x12345678u);
    EXPECT_EQ(in.bits(8), 0x9Au);
    EXPECT_EQ(in.bytes_left(), 0u);
}

TEST(bit_reader, every_width_at_every_bit_of_a_byte_is_read)
{
    std::mt19937 random(3);
    for (unsigned start = 0; start < 8; ++start)
        for (unsigned width = 1; width <= 56; ++width)
            for (size_t size = 0; size <= 9; ++size) {
                bytes block(size);
                for (uint8_t &byte : block) byte = static_cast<uint8_t>(random());
                bit_reader in(block.data(), block.data() + size);
                if (start > 0) in.bits(start);
                ASSERT_EQ(in.bits64(width), reference_bits(block, start, width)) << start << " " << width;
                ASSERT_EQ(in.bytes_read(), (start + width + 7) / 8);
            }
}

TEST(bit_reader, sequences_of_random_widths_are_read_without_a_gap)
{
    std::mt19937 random(4);
    for (int round = 0; round < 2000; ++round) {
        bytes block(random() % 40);
        for (uint8_t &byte : block) byte = static_cast<uint8_t>(random());
        bit_reader in(block.data(), block.data() + block.size());
        size_t position = 0;
        while (position < 8 * block.size() + 80) {
            const unsigned width = 1 + static_cast<unsigned>(random() % 32);
            ASSERT_EQ(in.bits(width), reference_bits(block, position, width));
            position += width;
            ASSERT_EQ(in.bytes_read(), (position + 7) / 8);
        }
    }
}

TEST(bit_reader, past_its_fence_the_range_reads_as_zeros_and_the_position_counts_on)
{
    const bytes block(hex("FF FF"));
    bit_reader in(block.data(), block.data() + 2);
    EXPECT_EQ(in.bits(12), 0xFFFu);
    EXPECT_EQ(in.bits(8), 0xF0u);
    EXPECT_EQ(in.bytes_read(), 3u);
    EXPECT_EQ(in.bits(32), 0u);
    EXPECT_EQ(in.bytes_read(), 7u);
    EXPECT_EQ(in.bytes_left(), 0u);
    EXPECT_EQ(in.position(), block.data() + 2);
}

TEST(bit_reader, bytes_that_stand_behind_the_fence_are_not_seen)
{
    const bytes storage = repeated(0xFF, 16);
    for (size_t size = 0; size <= 8; ++size) {
        bit_reader in(storage.data(), storage.data() + size);
        for (size_t i = 0; i < size; ++i) ASSERT_EQ(in.bits(8), 0xFFu) << size;
        ASSERT_EQ(in.bits(8), 0u) << size;
        ASSERT_EQ(in.bits64(56), 0u) << size;
    }
}

TEST(bit_reader, an_empty_range_and_one_whose_fence_lies_below_its_start_have_no_bytes)
{
    const bytes block(hex("FF FF"));
    bit_reader nothing(nullptr, nullptr);
    EXPECT_EQ(nothing.bits(32), 0u);
    EXPECT_FALSE(nothing.has(1));
    EXPECT_EQ(nothing.position(), nullptr);
    bit_reader reversed(block.data() + 1, block.data());
    EXPECT_FALSE(reversed.has(1));
    EXPECT_TRUE(reversed.has(0));
    EXPECT_EQ(reversed.bits(8), 0u);
    EXPECT_EQ(reversed.position(), block.data() + 1);
}

TEST(bit_reader, has_counts_only_bytes_that_are_not_touched)
{
    const bytes block(hex("00 00 00"));
    bit_reader in(block.data(), block.data() + 3);
    EXPECT_TRUE(in.has(3));
    EXPECT_FALSE(in.has(4));
    in.bits(1);
    EXPECT_TRUE(in.has(2));
    EXPECT_FALSE(in.has(3));
    EXPECT_EQ(in.bytes_left(), 2u);
    in.bits(7);
    EXPECT_EQ(in.bytes_left(), 2u);
    in.bits(16);
    EXPECT_TRUE(in.has(0));
    EXPECT_FALSE(in.has(1));
}

TEST(bit_reader, the_position_is_the_next_byte_not_yet_touched)
{
    const bytes block(hex("01 02 03"));
    bit_reader in(block.data(), block.data() + 3);
    EXPECT_EQ(in.position(), block.data());
    in.bits(3);
    EXPECT_EQ(in.position(), block.data() + 1);
    in.bits(5);
    EXPECT_EQ(in.position(), block.data() + 1);
    in.skip(1);
    EXPECT_EQ(in.position(), block.data() + 2);
    in.skip(1000);
    EXPECT_EQ(in.position(), block.data() + 3);
    EXPECT_EQ(in.bytes_read(), 1002u);
}

TEST(bit_reader, a_skip_goes_over_whole_bytes)
{
    const bytes block(hex("01 02 03 04"));
    bit_reader in(block.data(), block.data() + 4);
    in.skip(0);
    EXPECT_EQ(in.bits(8), 1u);
    in.skip(2);
    EXPECT_EQ(in.bits(8), 4u);
}

TEST(bit_reader, a_fixed_code_fills_its_buffer_and_is_terminated)
{
    const bytes block(text_bytes("engfra"));
    bit_reader in(block.data(), block.data() + 6);
    char language[4];
    in.text(language);
    EXPECT_STREQ(language, "eng");
    in.text(language);
    EXPECT_STREQ(language, "fra");
    EXPECT_EQ(in.bytes_left(), 0u);
}

TEST(bit_reader, a_text_that_passes_the_fence_ends_in_zeros)
{
    const bytes block(text_bytes("en"));
    bit_reader in(block.data(), block.data() + 2);
    char language[4] = {'x', 'x', 'x', 'x'};
    in.text(language);
    EXPECT_EQ(std::memcmp(language, "en\0\0", 4), 0);
    EXPECT_EQ(in.bytes_read(), 3u);
}

TEST(bit_reader, a_counted_name_is_terminated_behind_its_length)
{
    const bytes block(text_bytes("name and more"));
    bit_reader in(block.data(), block.data() + block.size());
    bytes buffer(5, 'x');
    in.text(reinterpret_cast<char *>(buffer.data()), 4);
    EXPECT_EQ(buffer, (bytes{'n', 'a', 'm', 'e', 0}));
    in.text(reinterpret_cast<char *>(buffer.data()), 0);
    EXPECT_EQ(buffer, (bytes{0, 'a', 'm', 'e', 0}));
    EXPECT_EQ(in.bytes_read(), 4u);
}

TEST(bit_reader, a_text_from_any_bit_on_is_its_characters_and_zeros_past_the_fence)
{
    const bytes block(hex("48 65 6C 6C 6F 20 77 6F 72 6C 64 21"));
    for (unsigned start = 0; start < 24; ++start)
        for (size_t length = 0; length <= 14; ++length) {
            bit_reader by_text(block.data(), block.data() + block.size());
            if (start > 0) by_text.bits(start);
            bit_reader by_bits = by_text;
            bytes text = repeated(0xEE, length + 1);
            by_text.text(reinterpret_cast<char *>(text.data()), length);
            for (size_t i = 0; i < length; ++i) ASSERT_EQ(text[i], by_bits.bits(8)) << start << " " << length;
            ASSERT_EQ(text[length], 0);
            ASSERT_EQ(by_text.bytes_read(), by_bits.bytes_read());
        }
}
