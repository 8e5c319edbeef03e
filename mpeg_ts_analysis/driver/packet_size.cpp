#include "mpeg_ts_analysis/driver/packet_size.h"

#include "mpeg12_ts/packet.h"

namespace {

constexpr unsigned long prefix_size = 4;
constexpr unsigned least_hits = 4;

} // namespace

int detect_packet_size(const unsigned char *buffer, unsigned long length)
{
    if (length < mpeg_ts_packet_size) return -1;

    unsigned hits_188 = 0;
    unsigned hits_192 = 0;
    const unsigned long n = length / mpeg_ts_packet_size;
    for (unsigned long i = 0; i < n; ++i) {
        const unsigned long sync_188 = mpeg_ts_packet_size * i;
        const unsigned long sync_192 = mpeg_ts_m2ts_packet_size * i + prefix_size;
        if (sync_188 + 1 < length && buffer[sync_188] == mpeg_ts_sync_byte) ++hits_188;
        if (sync_192 + 1 < length && buffer[sync_192] == mpeg_ts_sync_byte) ++hits_192;
    }
    if (hits_188 < least_hits && hits_192 < least_hits) return -1;
    return hits_188 < hits_192 ? static_cast<int>(mpeg_ts_m2ts_packet_size)
                               : static_cast<int>(mpeg_ts_packet_size);
}
