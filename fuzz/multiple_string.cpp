// The text of ATSC: the structure, and one segment into a buffer of any size.
#include "fuzz/support.h"

#include "mpeg_ts_analysis/descriptors/multiple_string.h"

#include <cstring>
#include <memory>

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};

    fuzz_start_settings();
    fuzz_settings(in);
    const size_t dest_size = in.byte();
    const unsigned compression_type = in.byte();
    const unsigned mode = in.byte();
    const std::unique_ptr<char[]> dest(new char[dest_size]);

    atsc_multiple_string_segment_to_utf8(dest.get(), dest_size, in.p, static_cast<unsigned>(in.left()),
                                         compression_type, mode);
    fuzz_promise(dest_size == 0 || std::memchr(dest.get(), 0, dest_size) != nullptr);
    desc_atsc_A65_2009_6_39_multiple_string_structure(in.p, static_cast<unsigned>(in.left()), 8);
    return 0;
}
