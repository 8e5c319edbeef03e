// How a recording is to be read.
#pragma once

#include "mpeg_ts_overview/input/block.h"
#include "mpeg_ts_overview/model/limits.h"
#include "mpeg_ts_overview/model/recording.h"

#include <cstdint>
#include <optional>

struct overview_request {
    unsigned packet_size = 0;                ///< 188, 192 or 204; 0: find it
    std::optional<time_base_kind> time_base; ///< none: find it
    uint64_t bitrate_bps = 0;                ///< where the time base is bitrate
    bool whole_multiplex = false;
    limits other_limits;
    uint32_t assume_country = 0;   ///< private_data_specifier; 0: none
    std::optional<bool> atsc_mode; ///< none: find it
    size_t block_bytes = block_size;
};
