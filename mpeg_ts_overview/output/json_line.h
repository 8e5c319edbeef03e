// A JSON value as text.
#pragma once

#include "mpeg_ts_overview/output/json_values.h"

#include <string>

/// The value on one line: numbers in the shortest form that is read back as the same, which the library's own
/// dump() misses now and then. Always valid UTF-8: what is not becomes U+FFFD. What is no number is null.
std::string json_line(const ordered_json &value);
