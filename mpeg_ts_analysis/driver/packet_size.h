// Tells 188-byte packets from 192-byte packets.
#pragma once

/// Bytes of the input that the detection looks at.
constexpr unsigned long packet_size_detection_length = 6144;

/// Returns 188 or 192, by where the length bytes at buffer have sync bytes, or -1 when neither is seen 4
/// times.
int detect_packet_size(const unsigned char *buffer, unsigned long length);
