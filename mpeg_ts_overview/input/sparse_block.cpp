#include "mpeg_ts_overview/input/sparse_block.h"

#include <algorithm>

namespace {

size_t size_of_packets(const block &scanned, const packet_grid &grid)
{
    return static_cast<size_t>(scanned.fence_index - scanned.first_index) * grid.packet_size;
}

} // namespace

bool is_sparse(const block &scanned, const packet_grid &grid)
{
    return size_of_packets(scanned, grid) / 7 < static_cast<size_t>(scanned.fence - scanned.first) / 8;
}

std::unique_ptr<block> packets_of(const block &scanned, const packet_grid &grid)
{
    auto copy = std::make_unique<block>(size_of_packets(scanned, grid), 0);
    uint8_t *to = copy->room();
    copy->first = to;
    copy->offset = scanned.offset;
    copy->first_index = scanned.first_index;
    copy->fence_index = scanned.fence_index;
    copy->arrival.assign(scanned.arrival.begin(), scanned.arrival.end());
    copy->clock_steps.assign(scanned.clock_steps.begin(), scanned.clock_steps.end());
    copy->steps.assign(scanned.steps.begin(), scanned.steps.end());

    // The packet of a step without one is that of the next step.
    const uint8_t *next = nullptr;
    for (scan_step &step : copy->steps) {
        const uint8_t *const from = step.start - grid.sync_offset;
        if (from != next) copy->pieces.push_back({to, scanned.offset_of(from)});
        const size_t size = size_t{step.count} * grid.packet_size;
        step.start = to + grid.sync_offset;
        to = std::copy_n(from, size, to);
        next = from + size;
    }
    copy->fence = to;
    return copy;
}
