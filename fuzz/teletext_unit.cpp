// Teletext: the bytes as one data unit, and as the payload of a packet.
#include "fuzz/support.h"

#include "mpeg_ts_analysis/teletext/teletext_pes.h"
#include "mpeg_ts_analysis/teletext/teletext_unit.h"

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    mpeg_ts_pid_tracking t;
    mpeg_ts_packet packet = {};

    fuzz_start_settings();
    fuzz_settings(in);
    if (in.left() >= teletext_data_unit_length)
        teletext_decode_data_unit(in.fence - teletext_data_unit_length);

    t.type = TRACK_TELETEXT;
    packet.payload_unit_start_indicator = in.byte() & 1;
    packet.payload = in.left() > 0 ? in.p : nullptr;
    packet.fence = in.fence;
    on_teletext_packet(&t, &packet);
    return 0;
}
