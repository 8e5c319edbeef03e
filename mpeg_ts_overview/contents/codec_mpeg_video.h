// MPEG-1 and MPEG-2 video, ISO/IEC 11172-2 2.4.2.3 and 13818-2 6.2.2: what its sequence header says.
#pragma once

#include <cstdint>
#include <optional>

#include "mpeg_ts_overview/model/codec_details.h"

/// The first whole sequence header in [start, fence) with the sequence_extension behind it, or in MPEG-1 the
/// start code that shows that there is none. Nothing when there is none, or none of valid values.
std::optional<codec_details> mpeg_video_details(const uint8_t *start, const uint8_t *fence);

/// 13818-2 8.1, tables 8-2 to 8-4: "Main", "High 1440"; empty for reserved values.
const char *mpeg_video_profile(unsigned profile_and_level_indication);
const char *mpeg_video_level(unsigned profile_and_level_indication);

/// 13818-2 table 6-4; nothing for forbidden and reserved codes.
std::optional<frame_rate> mpeg_video_frame_rate(unsigned frame_rate_code);
