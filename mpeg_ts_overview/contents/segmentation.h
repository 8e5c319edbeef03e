// The segmentation_descriptor of cues, ANSI/SCTE 35 10.3.3.
#pragma once

#include "mpeg_ts_overview/model/cue_facts.h"

#include <cstdint>

/// Reads [start, fence), behind the descriptor_length and the identifier "CUEI", into a cue. What runs past
/// the descriptor's end is left out. True when the event is cancelled and says nothing else.
bool read_segmentation(const uint8_t *start, const uint8_t *fence, cue &message);
