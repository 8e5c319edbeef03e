// AAC in ADTS, ISO/IEC 13818-7 6.2 and 14496-3 1.A.2.2: what its frame header says.
#pragma once

#include <cstdint>
#include <optional>

#include "mpeg_ts_overview/model/codec_details.h"

/// The first frame in [start, fence) that another one follows, or one at start that the data ends in. The
/// sample rate is the core's: spectral band replication is not in the header. Nothing when there is none.
std::optional<codec_details> adts_details(const uint8_t *start, const uint8_t *fence);

/// "Main", "LC" or "SSR" by profile_ObjectType of MPEG-2; empty for others.
const char *mpeg_2_aac_profile(unsigned profile);

/// The channels of a channel_configuration: 6 is 5.1, 7 is 7.1; nothing for 0, whose channels stand in a
/// program_config_element, and for reserved values.
void set_aac_channels(unsigned channel_configuration, codec_details &details);
