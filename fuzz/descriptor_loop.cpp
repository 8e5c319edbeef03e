// The walk over a descriptor loop and every decoder behind it.
#include "fuzz/support.h"

#include "mpeg_ts_analysis/descriptors/descriptor_loop.h"

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    mpeg_ts_pid_tracking t;

    fuzz_start_settings();
    fuzz_settings(in);
    t.type = TRACK_PMT;
    t.private_data_specifier = settings.assume_country;
    descriptor_loop(&t, in.p, in.fence);
    return 0;
}
