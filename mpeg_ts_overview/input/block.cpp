#include "mpeg_ts_overview/input/block.h"

#include <algorithm>
#include <iterator>

uint64_t block::offset_in_piece(const uint8_t *byte) const
{
    const auto next =
        std::upper_bound(pieces.begin(), pieces.end(), byte,
                         [](const uint8_t *place, const block_piece &piece) { return place < piece.first; });
    const block_piece &holder = *std::prev(next);
    return holder.offset + static_cast<uint64_t>(byte - holder.first);
}

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
