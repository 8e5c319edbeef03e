// HEVC, ISO/IEC 23008-2 7.3.2: what its parameter sets say.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "mpeg_ts_overview/model/codec_details.h"

/// The first sequence parameter set of the base layer in [start, fence) that is whole and valid to its last
/// bit; nothing when there is none. The frame rate is its own, else that of the last video parameter set
/// before it.
std::optional<codec_details> hevc_details(const uint8_t *start, const uint8_t *fence);

/// Annex A.3: "Main 10"; empty for others.
const char *hevc_profile(unsigned general_profile_idc);

/// Annex A.4: "4.1", "5.0 high tier".
std::string hevc_level(bool general_tier_flag, unsigned general_level_idc);
