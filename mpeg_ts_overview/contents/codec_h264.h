// H.264, ISO/IEC 14496-10 7.3.2.1.1: what its sequence parameter set says.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "mpeg_ts_overview/model/codec_details.h"

/// The first sequence parameter set in [start, fence) that is whole and valid to its last bit; nothing when
/// there is none.
std::optional<codec_details> h264_details(const uint8_t *start, const uint8_t *fence);

/// Annex A.2: "High", "Constrained Baseline"; empty for others. The six flags constraint_set0_flag to
/// constraint_set5_flag, that of set 5 lowest.
const char *h264_profile(unsigned profile_idc, unsigned constraint_set_flags);

/// Annex A.3: "4.0", "1b".
std::string h264_level(unsigned profile_idc, unsigned constraint_set_flags, unsigned level_idc);
