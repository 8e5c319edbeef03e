// For tests of invariants: what a stopped program has written.
#pragma once

#include <string>
#include <string_view>

/// From here on the report goes where standard error goes, so that a death test sees both in order. For the
/// statement of a death test.
void report_to_standard_error();

/// The regular expression that matches this text and nothing else.
std::string exactly(std::string_view text);
