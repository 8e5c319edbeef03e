// The descriptor that marks a stream of splice information, SCTE-35 (2020) 8.2.
#pragma once

#include <cstdint>

/// cue_identifier_descriptor, 8.2. Prints the length bytes at body, at least 1.
void desc_scte35_2020_8_2_cue_identifier_descriptor(const uint8_t *body, unsigned length);
