// A recording that a few bytes of input write: packets of a clock that mostly goes on, and what happens to
// it.
#pragma once

#include "fuzz/support.h"

#include <vector>

/// The recording, in packets of 188, 192 or 204 bytes, that the rest of the input tells.
std::vector<uint8_t> scripted_recording(fuzz_input &in, unsigned packet_size);
