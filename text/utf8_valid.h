// Bytes of unknown origin as UTF-8, RFC 3629.
#pragma once

#include <string>
#include <string_view>

/// The text with U+FFFD for what is not well-formed: one for each longest beginning of a sequence, one for
/// each byte that begins none.
std::string utf8_valid(std::string_view text);
