// The packet dump: header line, adaptation field and, in contents mode, every byte.
#pragma once

#include "mpeg12_ts/packet.h"

/// Prints a packet that was decoded. offset is the byte offset of its first byte in the file, t the packet
/// time in seconds. Counts an illegal adaptation_field_control as a second-priority error.
void dump_packet(const mpeg_ts_packet *packet, unsigned long long offset, double t);
