#include "mpeg12_ts/crc32.h"

#include "tests/support/hex.h"

#include <gtest/gtest.h>

#include <random>

namespace {

/// Both ways over the same bytes, in a block of exactly their size.
void expect_same(uint32_t crc, const bytes &content)
{
    const bytes block(content);
    const uint8_t *const fence = block.data() + block.size();
    ASSERT_EQ(mpeg_ts_crc32_by_folding(crc, block.data(), fence),
              mpeg_ts_crc32_by_tables(crc, block.data(), fence))
        << block.size();
}

} // namespace

TEST(crc32_folding, every_length_gives_what_the_tables_give)
{
    if (!mpeg_ts_crc32_can_fold()) GTEST_SKIP() << "no carry-less multiplication";
    std::mt19937 random(11);
    for (size_t size = 0; size <= 4098; size += size < 600 ? 1 : 7) {
        bytes content(size);
        for (uint8_t &byte : content) byte = static_cast<uint8_t>(random());
        expect_same(0xFFFFFFFF, content);
        expect_same(0, content);
        expect_same(static_cast<uint32_t>(random()), content);
    }
}

TEST(crc32_folding, every_single_bit_gives_what_the_tables_give)
{
    if (!mpeg_ts_crc32_can_fold()) GTEST_SKIP() << "no carry-less multiplication";
    for (size_t bit = 0; bit < size_t{8} * 150; ++bit) {
        bytes content(150);
        content[bit / 8] = static_cast<uint8_t>(0x80 >> bit % 8);
        expect_same(0, content);
    }
}

TEST(crc32_folding, a_start_at_any_address_gives_what_the_tables_give)
{
    if (!mpeg_ts_crc32_can_fold()) GTEST_SKIP() << "no carry-less multiplication";
    bytes block(300);
    std::mt19937 random(12);
    for (uint8_t &byte : block) byte = static_cast<uint8_t>(random());
    for (size_t start = 0; start < 32; ++start)
        EXPECT_EQ(mpeg_ts_crc32_by_folding(0xFFFFFFFF, block.data() + start, block.data() + 300),
                  mpeg_ts_crc32_by_tables(0xFFFFFFFF, block.data() + start, block.data() + 300));
}

TEST(crc32_folding, both_go_on_from_where_they_stopped)
{
    const bytes content(200, 0x5A);
    const uint8_t *const start = content.data();
    const uint8_t *const fence = start + content.size();
    const uint32_t whole = mpeg_ts_crc32(start, fence);
    for (const long cut : {0, 1, 63, 64, 65, 128, 199, 200}) {
        const uint32_t first = mpeg_ts_crc32_by_tables(0xFFFFFFFF, start, start + cut);
        EXPECT_EQ(mpeg_ts_crc32_by_tables(first, start + cut, fence), whole);
        if (mpeg_ts_crc32_can_fold()) {
            EXPECT_EQ(mpeg_ts_crc32_by_folding(first, start + cut, fence), whole);
        }
    }
}
