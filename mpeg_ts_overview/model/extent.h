// The least, the mean and the greatest of what was measured.
#pragma once

#include <cstdint>
#include <optional>

struct extent {
    uint64_t count = 0;
    int64_t min = 0; ///< of no meaning while count is 0
    int64_t max = 0;
    int64_t sum = 0;

    void add(int64_t value)
    {
        if (count == 0 || value < min) min = value;
        if (count == 0 || value > max) max = value;
        sum += value;
        ++count;
    }
};

/// The least and the greatest of a bucket, or none.
struct bucket_extent {
    std::optional<int64_t> min;
    std::optional<int64_t> max;
};
