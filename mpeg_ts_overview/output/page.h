// An overview as one HTML file that people open in a browser.
#pragma once

#include "mpeg_ts_overview/model/overview.h"
#include "mpeg_ts_overview/output/json.h"

/// Writes the page with a reduced copy of what was found: at most 10 MB, whatever the recording is; what is
/// left out is said in it. Returns false when the sink did.
bool write_page(const overview &found, const output_sink &write);
