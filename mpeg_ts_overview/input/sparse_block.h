// A block that holds few packets among other bytes: what waits of it for its times are the packets alone.
#pragma once

#include "mpeg_ts_overview/input/block.h"
#include "mpeg_ts_overview/input/packet_grid.h"

#include <memory>

/// True when packets take less than seven eighths of the bytes of the block.
bool is_sparse(const block &scanned, const packet_grid &grid);

/// A block with the same steps and the same packets, one behind the other.
std::unique_ptr<block> packets_of(const block &scanned, const packet_grid &grid);
