// Duplicate packets, ISO/IEC 13818-1 2.4.3.3: every byte is the same, but that a PCR has a value of its own.
#pragma once

#include <cstdint>

/// True when the 188 bytes at repeated are those at original, PCR aside.
bool is_repeated_packet(const uint8_t *original, const uint8_t *repeated);
