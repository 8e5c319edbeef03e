// Packets of one PID into sections: any order of calls, any payload.
#include "fuzz/support.h"

#include "mpeg12_ts/table_assembly.h"

namespace {

void check_section(const mpeg_ts_table_assembly &assembly, const mpeg_ts_pat_main_header *header,
                   const uint8_t *base, const uint8_t *fence)
{
    fuzz_promise(header != nullptr && assembly.buffer <= base && base <= fence && fence <= assembly.write);
    fuzz_promise(assembly.fence - fence >= static_cast<long>(mpeg_ts_table_assembly_reserve));
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    mpeg_ts_table_assembly assembly;
    const mpeg_ts_pat_main_header *header = nullptr;
    const uint8_t *base = nullptr;
    const uint8_t *fence = nullptr;

    mpeg_ts_table_assembly_init(&assembly, in.word() & 0x1FFF);
    while (in.left() > 0) {
        const unsigned call = in.byte();
        mpeg_ts_packet packet = {};
        if ((call & 0x80) == 0) {
            const fuzz_input payload = in.part(in.byte());
            packet.payload = payload.left() > 0 ? payload.p : nullptr;
            packet.fence = payload.fence;
        }
        switch (call & 7) {
        case 0:
            mpeg_ts_table_assembly_complete(&assembly);
            break;
        case 1:
            mpeg_ts_table_assembly_discard(&assembly);
            break;
        case 2:
            mpeg_ts_table_assembly_init(&assembly, in.word() & 0x1FFF);
            break;
        case 3:
        case 4:
            mpeg_ts_table_assembly_begin(&assembly, nullptr, &packet);
            break;
        default:
            mpeg_ts_table_assembly_add(&assembly, &packet);
            break;
        }
        if (mpeg_ts_table_assembly_take_ready(&assembly, &header, &base, &fence) == 1)
            check_section(assembly, header, base, fence);
    }
    mpeg_ts_table_assembly_init(&assembly, 0);
    return 0;
}
