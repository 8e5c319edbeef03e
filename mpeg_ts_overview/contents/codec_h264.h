// H.264, ISO/IEC 14496-10 7.3.2.1.1: what its sequence parameter set says.
#pragma once

#include <cstdint>
#include <optional>

#include "mpeg_ts_overview/model/codec_details.h"

/// The first sequence parameter set in [start, fence) that is whole and valid to its last bit; nothing when
/// there is none.
std::optional<codec_details> h264_details(const uint8_t *start, const uint8_t *fence);
