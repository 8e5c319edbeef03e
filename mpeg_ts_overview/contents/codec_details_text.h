// One line of an elementary stream's codec parameters.
#pragma once

#include <string>

#include "mpeg_ts_overview/model/codec_details.h"

/// What stands behind the codec's name: "1920x1080 25i High@4.0", "LC 48 kHz 2 ch", "48 kHz 5.1 ch 448
/// kbit/s"; empty when nothing is known.
std::string codec_details_text(const codec_details &details);
