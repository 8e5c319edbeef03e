// From a recording to its overview.
#pragma once

#include "mpeg_ts_overview/driver/overview_request.h"
#include "mpeg_ts_overview/input/packet_scanner.h"
#include "mpeg_ts_overview/model/overview.h"

enum class reading_outcome {
    done,
    no_packets,             ///< no transport packets were found
    read_error,             ///< the reading failed; what was read before is there
    no_arrival_time_stamps, ///< they are the time base that is asked for, but packets are not of 192 bytes
};

/// Reads the source to its end and tells what is in it.
reading_outcome overview_of(byte_source source, const overview_request &request, overview &found);
