#include "mpeg_ts_overview/input/block.h"

std::unique_ptr<block> block_pool::take()
{
    if (free_blocks.empty()) return std::make_unique<block>(bytes_of_a_block);
    std::unique_ptr<block> last = std::move(free_blocks.back());
    free_blocks.pop_back();
    last->steps.clear();
    last->arrival.clear();
    last->clock_steps.clear();
    return last;
}
