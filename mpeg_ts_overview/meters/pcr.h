// The program clock references of each PID: their intervals, their discontinuities and how straight they run.
// ISO/IEC 13818-1 2.4.3.4 and 2.4.3.5; ETSI TR 101 290 5.2.2.
#pragma once

#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/meters/bucket_series.h"
#include "mpeg_ts_overview/meters/pcr_window.h"
#include "mpeg_ts_overview/meters/recording_end.h"
#include "mpeg_ts_overview/model/pcr_facts.h"
#include "mpeg_ts_overview/model/pid_array.h"
#include "mpeg_ts_overview/model/sequence.h"
#include "mpeg_ts_overview/tables/repetition_watch.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

/// PIDs with two PCRs or more beyond these are only counted.
constexpr size_t pcr_pid_limit = 256;

/// So many points of a PID, in windows that have closed, wait for losses that show later.
constexpr size_t waiting_point_limit = 1024;

class pcr_meter {
public:
    /// The longest interval between PCRs that is good, and the greatest residual.
    pcr_meter(const time_stretches &stretches, int64_t interval_limit_ticks, double accuracy_limit_ns);

    /// Takes each packet with an adaptation field or a transport error, in order. is_program_clock: a program
    /// whose PMT is current has its PCRs on the PID.
    void on_packet(const ts_packet &packet, const packet_sequence &sequence, bool is_program_clock);

    /// A PMT begins to name the PID as its PCR_PID.
    void on_program_clock(uint16_t pid, const moment &at);
    /// No PMT names it so any more.
    void on_program_clock_end(uint16_t pid, const moment &at);

    /// A PID has lost packets somewhere behind its last packet before, if there was one. Comes before
    /// on_packet of the packet that shows it; not for a further copy of a duplicate.
    void on_continuity_error(std::optional<uint64_t> last_packet_before);

    /// A bad slot, or a time break.
    void on_disturbance() { close_windows(); }

    /// The rows, in order of first PCRs. is_program_clock tells of a PID at the end of the recording.
    std::vector<pcr_facts> finish(const recording_end &end,
                                  const std::function<bool(uint16_t pid)> &is_program_clock);

    // What the checks read, after finish.

    /// PCR intervals, on program clocks.
    const repetition_limit &intervals() const { return repetition.limit(0); }
    /// Leaps without the discontinuity_indicator, on program clocks.
    const violation_log &unflagged() const { return leaps; }
    /// True when two PCRs of a program clock followed each other.
    bool program_clock_measured() const { return has_program_clock; }
    /// Residuals over the packet index, of all PIDs but the null PID, which is no program's; worst is in ns,
    /// none when no window was measured.
    const violation_log &residuals() const { return fits.beyond_limit(); }
    /// PIDs with two PCRs or more that have no row.
    uint64_t pids_not_kept() const { return not_kept; }

private:
    struct pid_clock {
        pcr_facts facts;           ///< of no PID beyond the limit
        uint64_t first_packet = 0; ///< of the first PCR
        int64_t PCR = 0;           ///< the last one
        moment at;
        bool flagged = false;                 ///< a discontinuity_indicator came behind the PCR
        bool kept = false;                    ///< has a row
        bool dropped = false;                 ///< is beyond the limit
        std::optional<repetition_clock> wait; ///< for the next PCR of a program's clock
        bool arrived = false;                 ///< a PCR since that began
        bucket_series intervals;
        pcr_window window;
        std::vector<pcr_window> closed; ///< not yet measured
        pcr_straightness straightness;
        bool listed = false; ///< stands in with_points
        bool waits = false;  ///< stands in with_closed
    };

    pid_clock &clock_of(uint16_t pid);
    bool keep(pid_clock &clock);
    void take_pcr(pid_clock &clock, const ts_packet &packet, bool is_program_clock);
    void take_pair(pid_clock &clock, const ts_packet &packet, bool is_program_clock);
    void take_arrival(pid_clock &clock, const moment &at, std::optional<int64_t> clock_ticks);
    void add_point(pid_clock &clock, const ts_packet &packet, int64_t difference);
    void close_window(pid_clock &clock);
    void close_windows();
    void measure_closed(pid_clock &clock, size_t points_that_wait);
    static pcr_facts row_of(const pid_clock &clock, const recording_end &end);

    repetition_watch repetition;
    violation_log leaps;
    pcr_fitter fits;
    bool has_program_clock = false;
    pid_array<uint16_t> number_of;     ///< 1 + place in clocks; 0: none
    std::vector<pid_clock> clocks;     ///< in order of first mention
    std::vector<uint16_t> with_points; ///< places in clocks whose windows may hold points
    std::vector<uint16_t> with_closed; ///< places in clocks that had windows which closed
    size_t kept_count = 0;
    uint64_t not_kept = 0;
};
