#include "mpeg_ts_overview/input/packet_grid.h"

#include "mpeg12_ts/packet.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr std::array<unsigned, 3> packet_sizes = {188, 192, 204};

/// How many packets must have their sync bytes so that they are taken for such: five, or as many as there is
/// room for in an input that is shorter.
size_t wanted_packets(size_t input_size, size_t offset, unsigned packet_size)
{
    if (input_size >= size_t{trusted_sync_bytes} * packet_size) return trusted_sync_bytes;
    return (input_size - offset) / packet_size;
}

/// True when the count packets from first on have their sync bytes.
bool in_sync(const uint8_t *first, size_t count, packet_grid grid)
{
    const uint8_t *p = first + grid.sync_offset;
    for (size_t i = 0; i < count; ++i, p += grid.packet_size)
        if (*p != mpeg_ts_sync_byte) return false;
    return true;
}

/// Bytes from a packet's start to behind the sync byte of the last of count packets.
size_t in_sync_reach(size_t count, packet_grid grid)
{
    return grid.sync_offset + (count - 1) * grid.packet_size + 1;
}

} // namespace

packet_grid grid_of(unsigned packet_size)
{
    return {packet_size, packet_size == mpeg_ts_m2ts_packet_size ? arrival_stamp_size : 0};
}

std::optional<found_grid> find_grid(const uint8_t *first, const uint8_t *fence, unsigned only_size)
{
    const auto size = static_cast<size_t>(fence - first);

    for (size_t offset = 0; offset < std::min(size, longest_lead); ++offset) {
        for (const unsigned packet_size : packet_sizes) {
            if (only_size != 0 && packet_size != only_size) continue;
            const packet_grid grid = grid_of(packet_size);
            const size_t wanted = wanted_packets(size, offset, packet_size);
            if (wanted == 0 || in_sync_reach(wanted, grid) > size - offset) continue;
            if (in_sync(first + offset, wanted, grid)) return found_grid{grid, offset};
        }
    }
    return std::nullopt;
}

const uint8_t *find_sync(const uint8_t *first, const uint8_t *fence, packet_grid grid)
{
    const auto reach = static_cast<ptrdiff_t>(in_sync_reach(trusted_sync_bytes, grid));

    for (const uint8_t *p = first; fence - p >= reach; ++p) {
        const auto candidates = static_cast<size_t>(fence - p - reach) + 1;
        const void *const sync = std::memchr(p + grid.sync_offset, mpeg_ts_sync_byte, candidates);
        if (sync == nullptr) return nullptr;
        p = static_cast<const uint8_t *>(sync) - grid.sync_offset;
        if (in_sync(p, trusted_sync_bytes, grid)) return p;
    }
    return nullptr;
}
