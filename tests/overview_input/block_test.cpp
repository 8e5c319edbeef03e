#include "mpeg_ts_overview/input/block.h"

#include <gtest/gtest.h>

TEST(block_pool, blocks_are_used_again_last_in_first_out)
{
    block_pool pool(1000);
    std::unique_ptr<block> early = pool.take();
    std::unique_ptr<block> late = pool.take();
    const block *const last = late.get();
    const block *const first = early.get();
    pool.give_back(std::move(early));
    pool.give_back(std::move(late));
    const std::unique_ptr<block> again = pool.take();
    const std::unique_ptr<block> next = pool.take();
    EXPECT_EQ(again.get(), last);
    EXPECT_EQ(next.get(), first);
}

TEST(block_pool, a_block_that_is_used_again_has_no_steps)
{
    block_pool pool(1000);
    std::unique_ptr<block> used = pool.take();
    used->steps.emplace_back();
    used->arrival.push_back(1);
    used->clock_steps.push_back(0);
    pool.give_back(std::move(used));
    const std::unique_ptr<block> again = pool.take();
    EXPECT_TRUE(again->steps.empty() && again->arrival.empty() && again->clock_steps.empty());
}
