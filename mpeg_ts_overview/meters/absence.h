// How long PIDs of programs stay away: PID_error of ETSI TR 101 290 (1.6). Times are computed only where
// packets of a PID are so far apart that it matters.
#pragma once

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_overview/model/pid_array.h"
#include "mpeg_ts_overview/model/violation_log.h"
#include "mpeg_ts_overview/tables/repetition_watch.h"
#include "mpeg_ts_overview/timeline/packet_times.h"

#include <bitset>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class absence_meter {
public:
    absence_meter(const time_stretches &stretches, int64_t limit_ticks);

    /// The packets that come lie in these times, without a break, until end_times.
    void begin_times(const packet_times &next);
    void end_times();

    /// A PMT begins to name the PID, or no PMT does any more. occurred: a packet of the PID came at any time.
    void start(uint16_t pid, const moment &at);
    void stop(uint16_t pid, const moment &at, bool occurred);

    /// True while the PID is named.
    bool watches(uint16_t pid) const { return of_pid[pid].watched != nullptr; }

    /// Packets [first, first + count) of a PID that is watched.
    void on_packets(uint16_t pid, uint64_t first, uint64_t count)
    {
        pid_state &state = of_pid[pid];
        if (first - state.last_packet > good_gap) look_closer(state, first);
        state.last_packet = first + count - 1;
    }

    /// The recording ends; a PID that never occurred is a fault where all must be there.
    void finish(const moment &end, const std::function<bool(uint16_t pid)> &occurred, bool all_must_occur);

    const repetition_limit &limit() const { return absence.limit(0); }
    const violation_log &never_there() const { return never; }

private:
    struct watched_pid {
        uint16_t pid = 0;
        repetition_clock clock;
    };
    /// What each packet looks at, apart from the rest.
    struct pid_state {
        uint64_t last_packet = not_in_times; ///< the PID's last in the times in hand
        std::unique_ptr<watched_pid> watched;
    };
    /// Far behind every packet, when the PID had none in the times in hand.
    static constexpr uint64_t not_in_times = uint64_t{1} << 63;

    void look_closer(pid_state &state, uint64_t packet);
    void note_last(pid_state &state);
    void set_good_gap();
    watched_thing thing_of(const watched_pid &one) const;

    repetition_watch absence;
    packet_times times;
    uint64_t good_gap = 0; ///< packets so far apart are no longer apart than others were
    pid_array<pid_state> of_pid;
    std::bitset<mpeg_ts_pid_count> ever_watched;
    std::vector<pid_state *> touched; ///< with packets in the times in hand
    violation_log never;
};
