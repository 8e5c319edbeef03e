// AAC in ADTS, ISO/IEC 13818-7 6.2 and 14496-3 1.A.2.2: what its frame header says.
#pragma once

#include <cstdint>
#include <optional>

#include "mpeg_ts_overview/model/codec_details.h"

/// The first frame in [start, fence) that another one follows, or one at start that the data ends in. The
/// sample rate is the core's: spectral band replication is not in the header. Nothing when there is none.
std::optional<codec_details> adts_details(const uint8_t *start, const uint8_t *fence);
