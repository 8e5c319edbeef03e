// The PES scanner over a whole range, and the header lines of the packet dump.
#include "fuzz/support.h"

#include "mpeg12_pes/pes_scanner.h"
#include "mpeg_ts_analysis/driver/pes_dump.h"

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const uint8_t *const fence = data + size;
    mpeg_pes *const pes = mpeg_pes_create();

    fuzz_start_settings();
    for (const uint8_t *start = data;;) {
        const uint8_t *const next = mpeg_pes_scan(pes, start, fence);
        fuzz_promise(next >= start && next <= fence);
        fuzz_promise(pes->header == nullptr || (pes->header >= data && fence - pes->header >= 6));
        fuzz_promise(pes->PTS >> 33 == 0 && pes->DTS >> 33 == 0);
        if (next == start || pes->done) break;
        start = next;
    }
    mpeg_pes_destroy(pes);
    print_pes_header(data, fence, 0x0100);
    return 0;
}
