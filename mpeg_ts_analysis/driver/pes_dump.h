// The PES header of a payload unit, for the packet dump.
#pragma once

#include <cstdint>

/// Scans [payload, fence) for the PES packet of an audio or video stream or of private_stream_1 and prints
/// its header, ISO/IEC 13818-1 2.4.3.6; before it a trace line for each scan.
void print_pes_header(const uint8_t *payload, const uint8_t *fence, uint16_t pid);
