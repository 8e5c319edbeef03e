// The least and the greatest value of each bucket of time. Buckets are 0.1 s wide and grow with the
// recording.
#pragma once

#include "mpeg_ts_overview/model/extent.h"
#include "mpeg_ts_overview/model/series_buckets.h"

#include <cstdint>
#include <vector>

class bucket_series {
public:
    /// A value at a time, 27 MHz ticks from the start of the recording; before it, it goes nowhere.
    void add(int64_t ticks, int64_t value);

    /// The series in count buckets of that width; what lies behind the last one goes into it.
    std::vector<bucket_extent> finish(int64_t bucket_ticks, size_t count) const;

private:
    struct range {
        int64_t min = 0;
        int64_t max = -1; ///< below min: empty
        bool empty() const { return max < min; }
        void join(const range &other);
    };

    void widen();

    std::vector<range> buckets; ///< at most bucket_limit
    int64_t width = first_bucket_ticks;
};
