// The splice_info_section, ANSI/SCTE 35 9.6, as a cue.
#pragma once

#include "mpeg_ts_overview/model/cue_facts.h"

#include <cstdint>

/// Reads the section [start, fence), its CRC_32 included, into what it says: all but pid, program, moment,
/// count and pre-roll. Of a splice_schedule the first event counts, of a splice by components the first
/// splice_time. A message is cancelled when its splice is, or when its segmentations all are. The command
/// is "encrypted" when nothing behind it can be read, "reserved" for types and protocols that have no
/// meaning, "cut off" in a section too short to name one.
cue read_splice_info(const uint8_t *start, const uint8_t *fence);
