// Time by program clock references, ISO/IEC 13818-1 2.4.3.5: the PCRs of one PID are clock points, and
// between two of them time goes on evenly.
#pragma once

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_overview/timeline/rate_steadiness.h"
#include "mpeg_ts_overview/timeline/time_span.h"

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

/// So many packets wait for a clock point, then time goes on without one.
constexpr uint64_t longest_wait = 65536;

/// A packet with a PCR, or with the discontinuity_indicator, or both.
struct clock_packet {
    uint64_t index = 0;
    uint16_t pid = 0;
    bool discontinuity_indicator = false;
    std::optional<uint64_t> PCR; ///< 27 MHz; none of a duplicate
    int64_t arrival_ticks = 0;   ///< of a 192-byte packet; else 0
};

class pcr_clock {
public:
    /// Takes the packets of a recording that matter, in order.
    void add(const clock_packet &packet);

    /// All packets before fence have been looked at.
    void scanned_to(uint64_t fence);

    /// The recording ends before fence.
    void end(uint64_t fence);

    /// Takes the next span whose times are known. Returns false when there is none yet.
    bool next_span(time_span *span);

    /// The time of the packet behind the last one, after the end.
    std::optional<int64_t> duration_ticks() const { return end_ticks; }

    std::optional<uint16_t> first_clock_pid() const { return first_pid; }
    /// Every PID that was the clock for a while, once, in order.
    const std::vector<uint16_t> &clock_pids() const { return pids; }
    bool is_bitrate_constant() const { return steadiness.is_constant(); }
    /// Of each regular span in the first 65536 packets, arrival ticks by PCR ticks.
    const std::vector<double> &arrival_ratios() const { return ratios; }

private:
    struct point {
        uint64_t index = 0;
        uint64_t PCR = 0;
        int64_t arrival_ticks = 0;
        bool valid = false;
        bool flagged = false; ///< a discontinuity_indicator came behind it
    };
    struct irregular_span {
        uint16_t pid = 0;
        uint64_t from = 0;
        uint64_t to = 0;
        int64_t jump_ticks = 0;
    };

    void search(const clock_packet &packet);
    void start_clock(const clock_packet &packet, const point &from, int64_t ticks);
    void follow(const clock_packet &packet);
    void add_lines_before(uint64_t first_regular);
    void hand_over(const clock_packet &packet);
    void note_regular(uint64_t from, int64_t from_arrival, const clock_packet &to, int64_t ticks);
    void add_line(uint64_t first, uint64_t fence, bool inside_break);
    void add_untimed(uint64_t fence);

    std::array<point, mpeg_ts_pid_count> points; ///< the last of each PID while the clock is sought
    std::vector<irregular_span> irregular;       ///< of any PID, while the clock is sought
    bool running = false;
    bool without_point = false; ///< too many packets have come since the last clock point
    uint16_t clock_pid = 0;
    point last;             ///< clock point
    int64_t last_ticks = 0; ///< its time
    int64_t rate_ticks = 0; ///< of the last regular span
    int64_t rate_packets = 1;
    int64_t all_ticks = 0; ///< of all regular spans
    int64_t all_packets = 0;
    uint64_t told = 0; ///< packets before this one are in a span
    std::deque<time_span> spans;
    std::optional<int64_t> end_ticks;
    std::optional<uint16_t> first_pid;
    std::vector<uint16_t> pids;
    rate_steadiness steadiness;
    std::vector<double> ratios;
};
