// The summary for the terminal.
#pragma once

#include "mpeg_ts_overview/model/overview.h"

#include <string>

/// Lines of at most 100 columns, UTF-8 without controls but for their line ends; with color also the escape
/// sequences that colour them. Lines for parts without contents are left out.
std::string summary_text(const overview &found, bool color);
