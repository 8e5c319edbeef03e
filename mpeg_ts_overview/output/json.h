// An overview as JSON, docs/overview.schema.json.
#pragma once

#include "mpeg_ts_overview/model/overview.h"

#include <functional>
#include <string_view>

/// Takes the next piece of an output. Returns false when it cannot be written: then no more comes.
using output_sink = std::function<bool(std::string_view)>;

/// Writes one object, its members in the schema's order, a row of a list at a time. Always valid UTF-8: what
/// is not becomes U+FFFD. Returns false when the sink did.
bool write_json(const overview &found, const output_sink &write);
