// The splice_insert command and what it is made of, ANSI/SCTE-35 2016 9.3.3, 9.4 and 10.3.1. The command's
// parts are not held to the section: their fence is that of the storage, which a whole splice_insert never
// reaches.
#pragma once

#include <cstdint>

/// Prints a splice_insert, 9.3.3. Returns one past its last byte.
const uint8_t *scte35_splice_insert(const uint8_t *p, const uint8_t *fence);

/// Prints a splice_time, 9.4.1. Returns p + 5, or p + 1 when it specifies no time.
const uint8_t *scte35_splice_time(const uint8_t *p, const uint8_t *fence);

/// Prints a break_duration, 9.4.2. Returns p + 5.
const uint8_t *scte35_break_duration(const uint8_t *p, const uint8_t *fence);

/// Prints an avail_descriptor, 10.3.1, with its fields when the body [p, fence) has 8 bytes.
void scte35_avail_descriptor(const uint8_t *p, const uint8_t *fence);
