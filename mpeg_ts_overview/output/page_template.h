// The page without its data: the HTML before and behind it, joined from mpeg_ts_overview/page when the
// program is built.
#pragma once

#include <span>
#include <string_view>

/// In pieces, ends inside the element that holds the data.
std::span<const std::string_view> page_before_data();

/// In pieces, from the end of that element.
std::span<const std::string_view> page_behind_data();
