// The packet decoder, and the dump of what it found.
#include "fuzz/support.h"

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_analysis/driver/packet_dump.h"

namespace {

void check_places(const mpeg_ts_packet &packet, const uint8_t *start, size_t size)
{
    const uint8_t *const fence = start + size;
    const auto inside = [&](const uint8_t *p, size_t length) {
        return p == nullptr || (p >= start && p <= fence && static_cast<size_t>(fence - p) >= length);
    };

    fuzz_promise(packet.packet == start && packet.fence == fence && packet.pid < mpeg_ts_pid_count);
    fuzz_promise(inside(packet.payload, 1) && inside(packet.adaptation_field, 1));
    fuzz_promise(packet.adaptation_field_fence >= start && packet.adaptation_field_fence <= fence);
    fuzz_promise(inside(packet.transport_private_data, packet.transport_private_data_length));
    fuzz_promise(inside(packet.adaptation_field_extension, packet.adaptation_field_extension_length));
    fuzz_promise((packet.adaptation_field_control & 2) == 0 || packet.adaptation_field != nullptr);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    mpeg_ts_packet packet;

    fuzz_start_settings();
    fuzz_settings(in);
    if (!mpeg_ts_decode(&packet, in.p, in.left())) return 0;
    check_places(packet, in.p, in.left());
    settings.packet_size = static_cast<uint32_t>(in.left());
    if (settings.dump_ts_mode != dump_ts_off) dump_packet(&packet, 1ull << 33, 0.5);
    return 0;
}
