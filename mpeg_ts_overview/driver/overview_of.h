// From a recording to its overview.
#pragma once

#include "mpeg_ts_overview/input/packet_scanner.h"
#include "mpeg_ts_overview/model/limits.h"
#include "mpeg_ts_overview/model/overview.h"

#include <cstdint>
#include <optional>

/// How a recording is to be read.
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

enum class reading_outcome {
    done,
    no_packets,             ///< no transport packets were found
    read_error,             ///< the reading failed; what was read before is there
    no_arrival_time_stamps, ///< they are the time base that is asked for, but packets are not of 192 bytes
};

/// Reads the source to its end and tells what is in it.
reading_outcome overview_of(byte_source source, const overview_request &request, overview &found);
