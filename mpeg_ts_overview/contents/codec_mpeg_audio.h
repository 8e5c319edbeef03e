// MPEG audio, ISO/IEC 11172-3 2.4.1.3 and 13818-3: what its frame header says.
#pragma once

#include <cstdint>
#include <optional>

#include "mpeg_ts_overview/model/codec_details.h"

/// The first frame in [start, fence) that another one follows, or one at start that the data ends in. Frames
/// of free format, whose length is not known, are none. Sampling rates below those of MPEG-2 are MPEG-2.5.
/// Nothing when there is none.
std::optional<codec_details> mpeg_audio_details(const uint8_t *start, const uint8_t *fence);

/// "MPEG-1 audio layer II", else "MPEG-2 audio layer II"; layer is 1 to 3.
const char *mpeg_audio_name(bool is_mpeg_1, unsigned layer);
