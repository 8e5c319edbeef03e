// The time stamps of a PES packet, ISO/IEC 13818-1 2.4.3.6 and 2.4.3.7.
#pragma once

#include <cstdint>
#include <optional>

struct pes_time_stamps {
    std::optional<int64_t> PTS; ///< 90 kHz, 33 bits
    std::optional<int64_t> DTS;
};

/// Reads the header of the PES packet that begins at [first, fence), the payload of one transport packet.
/// Returns nothing when no PES packet with such a header begins there, or when the stamps that it announces
/// do not lie in it.
std::optional<pes_time_stamps> read_time_stamps(const uint8_t *first, const uint8_t *fence);
