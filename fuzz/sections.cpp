// Sections with valid checksums, one after the other, on PIDs of every kind that carries them. Each is a
// record: kind, table_id, flags, length (2 bytes), then what follows section_length.
#include "fuzz/support.h"

#include "mpeg12_ts/crc32.h"
#include "mpeg_ts_analysis/health/tracking.h"
#include "mpeg_ts_analysis/tables/table_dispatch.h"

#include <iterator>
#include <vector>

namespace {

constexpr unsigned longest_section_length = 0xFFF;

struct kind_of_pid {
    uint16_t pid;
    uint16_t type;
};

constexpr kind_of_pid kinds[] = {
    {0x0000, TRACK_PAT      },
    {0x0100, TRACK_PMT      },
    {0x0010, TRACK_NIT      },
    {0x0011, TRACK_SDT      },
    {0x0012, TRACK_EIT      },
    {0x1FFB, TRACK_ATSC_PSIP},
    {0x1D00, TRACK_ATSC_EIT },
    {0x1E00, TRACK_ATSC_ETT },
    {0x0103, TRACK_SCTE35   },
};

void track_all_kinds()
{
    mpeg_ts_pid_tracking_init_tracking();
    for (const kind_of_pid &kind : kinds) {
        mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_start(kind.pid, kind.type, 1);
        mpeg_ts_table_assembly_init(&t->tbl_asm, private_section_storage);
    }
}

/// A pointer_field of 0 and the section, whole and with a checksum unless the flags ask for another.
std::vector<uint8_t> payload_of(uint8_t table_id, unsigned flags, fuzz_input body)
{
    const bool is_long = (flags & 1) == 0;
    const size_t section_length = body.left() + (is_long ? 4 : 0);
    std::vector<uint8_t> payload = {
        0, table_id,
        static_cast<uint8_t>((is_long ? 0x80 : 0) | (flags & 2) << 5 | 0x30 | section_length >> 8),
        static_cast<uint8_t>(section_length)};
    payload.insert(payload.end(), body.p, body.fence);
    if (is_long) {
        const uint32_t crc =
            mpeg_ts_crc32(payload.data() + 1, payload.data() + payload.size()) ^ ((flags & 4) << 6);
        for (int shift = 24; shift >= 0; shift -= 8) payload.push_back(static_cast<uint8_t>(crc >> shift));
    }
    return payload;
}

void handle_section(fuzz_input &in)
{
    mpeg_ts_packet packet = {};
    packet.pid = kinds[in.byte() % std::size(kinds)].pid;
    const uint8_t table_id = in.byte();
    const unsigned flags = in.byte();
    const std::vector<uint8_t> payload =
        payload_of(table_id, flags, in.part(in.word() % (longest_section_length - 3)));

    packet.payload_unit_start_indicator = 1;
    packet.payload = payload.data();
    packet.fence = payload.data() + payload.size();
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(packet.pid);
    if (t != nullptr && carries_sections(t->type)) on_ts_table_packet(t, &packet);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static fuzz_input in;

    in = {data, data + size};
    fuzz_start();
    fuzz_settings(in);
    track_all_kinds();
    if (setjmp(fuzz_entry) == 0) {
        while (in.left() > 0) handle_section(in);
    }
    return 0;
}
