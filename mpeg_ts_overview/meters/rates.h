// Bit rates over time: packets are counted by PID until a bucket of time is over.
#pragma once

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_overview/model/pid_array.h"
#include "mpeg_ts_overview/model/rate_facts.h"
#include "mpeg_ts_overview/model/series_buckets.h"
#include "mpeg_ts_overview/timeline/packet_times.h"

#include <cstdint>
#include <optional>
#include <vector>

/// Series are kept of so many PIDs.
constexpr size_t rate_series_limit = 256;

class rates_meter {
public:
    rates_meter();

    /// The packets that come lie in such times.
    void begin(const packet_times &next);
    /// No more packets come of those times.
    void end() { last_ticks = times.ticks_of(times.fence - 1); }

    /// Packets [first, first + packets) of the PID.
    void on_packets(uint16_t pid, uint64_t first, uint64_t packets)
    {
        while (first + packets > next_bucket) {
            const uint64_t before = next_bucket - first;
            if (before > 0) count(pid, first, before);
            first += before;
            packets -= before;
            end_bucket();
            begin_bucket(first);
        }
        if (packets > 0) count(pid, first, packets);
    }

    /// A slot without a sync byte.
    void on_bad_slot(uint64_t index) { on_packets(no_pid, index, 1); }

    /// The bit rates of a recording of that duration.
    rates_facts finish(std::optional<int64_t> duration_ticks);

    /// The time of the last packet.
    std::optional<int64_t> last_packet_ticks() const { return last_ticks; }

    /// PIDs beyond those that have a series.
    size_t series_not_kept() const
    {
        return order.size() > rate_series_limit ? order.size() - rate_series_limit : 0;
    }

private:
    static constexpr uint16_t no_pid = mpeg_ts_pid_count; ///< of slots that have none

    /// What is known of a PID, or of the whole.
    struct rate_state {
        uint64_t packets = 0;               ///< but for the bucket in hand
        int64_t first_window = 0;           ///< the first whole second; of no meaning before there is a time
        int64_t window = -1;                ///< the second in hand; below 0 before there is a time
        uint64_t in_window = 0;             ///< packets in it
        std::optional<uint64_t> min_window; ///< packets of the whole seconds so far
        std::optional<uint64_t> max_window;
        bool has_series = false;
        std::vector<uint64_t> series; ///< packets per bucket
    };

    void count(uint16_t pid, uint64_t first, uint64_t packets)
    {
        if (in_bucket[pid] == 0) note_first(pid, first);
        in_bucket[pid] += packets;
    }
    void note_first(uint16_t pid, uint64_t first);
    void note_first_time(rate_state &state, uint64_t first) const;
    void begin_bucket(uint64_t first);
    void end_bucket();
    void end_bucket_of(rate_state &state, uint64_t packets);
    void double_width();
    rate_facts facts_of(rate_state &state, int64_t duration_ticks, size_t buckets) const;

    packet_times times;
    std::optional<int64_t> last_ticks; ///< of the last packet
    int64_t bucket = -1;               ///< the bucket of 0.1 s in hand; below 0 before there is a time
    uint64_t next_bucket = 0;          ///< index of the first packet that is beyond it
    uint64_t joined = 1;               ///< buckets of 0.1 s that are one of the series
    pid_array<uint64_t> in_bucket;     ///< packets of the bucket in hand, by PID
    std::vector<rate_state> states;    ///< by PID
    rate_state whole;
    std::vector<uint16_t> order;   ///< of first arrival
    std::vector<uint16_t> touched; ///< with packets in the bucket in hand
};
