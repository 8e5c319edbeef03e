// What is promised of every text that a recording brings.
#pragma once

#include <string_view>

/// The text is valid UTF-8, RFC 3629.
void promise_utf8(std::string_view text);

/// The text is valid UTF-8 without C0 controls, but for line ends, DEL and C1 controls.
void promise_no_controls(std::string_view text);
