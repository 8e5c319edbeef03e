// What the descriptors of a stream say of its coding: for streams whose headers never come or are scrambled.
#pragma once

#include <optional>

#include "mpeg_ts_overview/contents/header_finder.h"
#include "mpeg_ts_overview/model/codec_details.h"
#include "mpeg_ts_overview/tables/byte_range.h"

/// Of video_stream_descriptor, AVC_video_descriptor, HEVC_video_descriptor, audio_stream_descriptor,
/// MPEG-2_AAC_audio_descriptor, and those of AC-3 and Enhanced AC-3 in DVB and ATSC, the first that belongs
/// to the family and is not cut. Nothing when there is none.
std::optional<codec_details> described_details(byte_range ES_info, codec_family family);
