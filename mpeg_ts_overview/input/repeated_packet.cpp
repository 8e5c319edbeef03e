#include "mpeg_ts_overview/input/repeated_packet.h"

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_overview/input/packet.h"

#include <cstring>

bool is_repeated_packet(const uint8_t *original, const uint8_t *repeated)
{
    constexpr unsigned PCR_first = 6;
    constexpr unsigned PCR_fence = 12;

    if (!read_packet(repeated).PCR) return std::memcmp(original, repeated, mpeg_ts_packet_size) == 0;
    return std::memcmp(original, repeated, PCR_first) == 0 &&
           std::memcmp(original + PCR_fence, repeated + PCR_fence, mpeg_ts_packet_size - PCR_fence) == 0;
}
