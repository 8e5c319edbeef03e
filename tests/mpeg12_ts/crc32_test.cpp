#include "mpeg12_ts/crc32.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <random>

namespace {

uint32_t crc_of(const bytes &content)
{
    const bytes block(content);
    return mpeg_ts_crc32(block.data(), block.data() + block.size());
}

/// The shift register of ISO/IEC 13818-1 Annex A, bit by bit.
uint32_t reference_crc(const bytes &content)
{
    uint32_t crc = 0xFFFFFFFF;
    for (const uint8_t byte : content)
        for (int bit = 7; bit >= 0; --bit) {
            const uint32_t feedback = crc >> 31 ^ (byte >> bit & 1u);
            crc = crc << 1 ^ (feedback != 0 ? 0x04C11DB7u : 0u);
        }
    return crc;
}

} // namespace

TEST(crc32, the_check_value_is_that_of_crc_32_mpeg_2)
{
    EXPECT_EQ(crc_of(text_bytes("123456789")), 0x0376E6E7u);
}

TEST(crc32, no_bytes_leave_the_initial_value)
{
    EXPECT_EQ(crc_of({}), 0xFFFFFFFFu);
}

TEST(crc32, every_length_agrees_with_the_shift_register)
{
    std::mt19937 random(5);
    for (size_t size = 0; size <= 600; ++size) {
        bytes content(size);
        for (uint8_t &byte : content) byte = static_cast<uint8_t>(random());
        ASSERT_EQ(crc_of(content), reference_crc(content)) << size;
    }
}

TEST(crc32, the_residue_of_a_section_with_its_own_crc_is_zero)
{
    const bytes section = hex("00 B0 0D 00 01 C1 00 00 00 01 E1 00");
    EXPECT_EQ(crc_of(join({section, big_endian(reference_crc(section), 4)})), 0u);
}

TEST(crc32, every_flipped_bit_leaves_a_residue)
{
    bytes section = hex("00 B0 0D 00 01 C1 00 00 00 01 E1 00");
    section = join({section, big_endian(reference_crc(section), 4)});
    for (size_t bit = 0; bit < 8 * section.size(); ++bit) {
        bytes broken = section;
        broken[bit / 8] ^= static_cast<uint8_t>(0x80 >> bit % 8);
        EXPECT_NE(crc_of(broken), 0u) << bit;
    }
}
