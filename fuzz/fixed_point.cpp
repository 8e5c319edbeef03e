// Fixed-point numbers of the report: digit for digit what the C library prints.
#include "fuzz/support.h"

#include "mpeg_ts_analysis/report/fixed_point.h"

#include <bit>
#include <cstdio>
#include <string_view>

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr unsigned precision_limit = 10;
    fuzz_input in = {data, data + size};

    while (in.left() > 0) {
        const unsigned precision = in.byte() % precision_limit;
        uint64_t bits = 0;
        for (unsigned i = 0; i < 8; ++i) bits = bits << 8 | in.byte();
        const auto value = std::bit_cast<double>(bits);

        char expected[400];
        char actual[330];
        const int length =
            std::snprintf(expected, sizeof(expected), "%.*f", static_cast<int>(precision), value);
        const char *const end = put_fixed_point(actual, value, precision);
        fuzz_promise(std::string_view(actual, static_cast<size_t>(end - actual)) ==
                     std::string_view(expected, static_cast<size_t>(length)));
    }
    return 0;
}
