// Presentation and decoding time stamps of each video and audio PID: when they arrive, their order, and how
// far ahead of the program's clock they are. ISO/IEC 13818-1 2.4.3.7 and 2.7.4; ETSI TR 101 290 5.2.2.
#pragma once

#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/meters/bucket_series.h"
#include "mpeg_ts_overview/meters/program_clock.h"
#include "mpeg_ts_overview/meters/recording_end.h"
#include "mpeg_ts_overview/meters/time_stamp_header.h"
#include "mpeg_ts_overview/model/pid_array.h"
#include "mpeg_ts_overview/model/sequence.h"
#include "mpeg_ts_overview/model/time_stamp_facts.h"
#include "mpeg_ts_overview/tables/repetition_watch.h"
#include "mpeg_ts_overview/tables/stream_role.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

/// PIDs beyond these have no series of margins.
constexpr size_t margin_series_limit = 256;

class time_stamp_meter {
public:
    /// The clocks of the programs, which take each packet before the meter does, and the longest interval
    /// between arrivals of PTS that is good.
    time_stamp_meter(const program_clocks &followed, const time_stretches &stretches,
                     int64_t pts_interval_limit_ticks);

    /// Takes each packet that starts a unit or has the discontinuity_indicator, in order, and what its PID
    /// is.
    void on_packet(const ts_packet &packet, const packet_sequence &sequence, const stream_role &role);

    /// No PMT names the PID as video or audio any more.
    void on_unlisted(uint16_t pid, const moment &at);

    /// A scrambled packet of the PID, or many.
    void on_scrambled(uint16_t pid);

    /// The rows, in order of first unit starts. role_of tells of a PID at the end of the recording.
    std::vector<time_stamp_facts> finish(const recording_end &end,
                                         const std::function<stream_role(uint16_t pid)> &role_of);

    // What the checks read, after finish.

    /// Intervals between arrivals of PTS, streams of still pictures aside.
    const repetition_limit &pts_intervals() const { return pts_repetition.limit(0); }
    /// Time stamps behind the program's clock.
    const violation_log &late() const { return late_log; }
    /// DTS above PTS, and DTS that go back.
    const violation_log &decoding_order() const { return order_log; }
    /// True when there was a DTS, or a PTS of an audio stream.
    bool decoding_order_measured() const { return has_decoding_time; }
    /// PIDs with margins that have no series of them.
    size_t margin_series_not_kept() const { return series_not_kept; }

private:
    /// The last stamp by which a unit is decoded.
    struct decoding_point {
        int64_t stamp = 0;
        moment at;
        std::optional<uint16_t> pcr_pid;
        uint64_t clock_discontinuities = 0;
    };
    enum class series_state { none, kept, not_kept };
    struct pid_stamps {
        time_stamp_facts facts;
        std::optional<moment> pts_at; ///< none behind a scrambled packet
        std::optional<moment> dts_at;
        std::optional<int64_t> PTS;
        std::optional<decoding_point> decoded;
        std::optional<repetition_clock> wait; ///< for the next PTS, from the first on
        series_state series = series_state::none;
        bucket_series margin_series;
    };

    pid_stamps *stamps_of(uint16_t pid);
    pid_stamps &new_stamps_of(uint16_t pid);
    void take_unit_start(const ts_packet &packet, const stream_role &role);
    void take_arrivals(pid_stamps &stamps, const pes_time_stamps &read, const ts_packet &packet,
                       bool still_pictures);
    void end_wait(pid_stamps &stamps, const moment &at);
    void take_order(pid_stamps &stamps, const pes_time_stamps &read, const ts_packet &packet,
                    const stream_role &role);
    void take_margin(pid_stamps &stamps, int64_t stamp, const ts_packet &packet, const stream_role &role);
    void count_margin(pid_stamps &stamps, const ts_packet &packet, int64_t margin);
    void add_to_series(pid_stamps &stamps, const moment &at, int64_t margin);

    const program_clocks &clocks;
    repetition_watch pts_repetition;
    violation_log late_log;
    violation_log order_log;
    bool has_decoding_time = false;
    pid_array<uint16_t> stamps_number; ///< 1 + place in all_stamps; 0: none
    std::vector<pid_stamps> all_stamps;
    size_t series_count = 0;
    size_t series_not_kept = 0;
};
