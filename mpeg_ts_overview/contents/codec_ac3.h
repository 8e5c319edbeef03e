// AC-3 and Enhanced AC-3, ETSI TS 102 366 4.3 and E.1.2: what the frame header says.
#pragma once

#include <cstdint>
#include <optional>

#include "mpeg_ts_overview/model/codec_details.h"

/// The first frame of AC-3, or of the first independent substream of Enhanced AC-3, in [start, fence) that
/// another frame follows, or one at start that the data ends in. Where more substreams than that one come,
/// channels and bit rate are not said. Nothing when there is none.
std::optional<codec_details> ac3_details(const uint8_t *start, const uint8_t *fence);

/// Of fscod 0 to 2.
unsigned ac3_sample_rate_hz(unsigned fscod);

/// Of half of frmsizecod; nothing for reserved values.
std::optional<unsigned> ac3_bit_rate_bps(unsigned code);

/// Full range channels of acmod 0 to 7.
unsigned ac3_channels(unsigned acmod);
