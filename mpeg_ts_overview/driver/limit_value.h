// One value of --limit: NAME=VALUE.
#pragma once

#include "mpeg_ts_overview/model/limits.h"

#include <string>
#include <string_view>

/// Sets the limit that the text names. VALUE is a decimal number above 0 with a unit of ns, us, ms or s
/// behind it, or without one in the unit that the limit is given in by the manual. Returns what is wrong with
/// the text, empty when nothing is.
std::string set_limit(std::string_view text, limits *values);
