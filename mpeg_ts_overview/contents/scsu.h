// A Standard Compression Scheme for Unicode, Unicode Technical Standard #6.
#pragma once

#include <cstdint>
#include <string>

/// The text as UTF-8; reserved tags and windows, and what the end cuts, are U+FFFD.
std::string scsu_text(const uint8_t *start, const uint8_t *fence);
