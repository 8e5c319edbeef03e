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
    bool watches(uint16_t pid) const { return watched[pid] != nullptr; }

    /// Packets [first, first + count) of a PID that is watched.
    void on_packets(uint16_t pid, uint64_t first, uint64_t count)
    {
        watched_pid &one = *watched[pid];
        if (!one.in_times || first - one.last_packet > good_gap) look_closer(one, first);
        one.last_packet = first + count - 1;
    }

    /// The recording ends; a PID that never occurred is a fault where all must be there.
    void finish(const moment &end, const std::function<bool(uint16_t pid)> &occurred, bool all_must_occur);

    const repetition_limit &limit() const { return absence.limit(0); }
    const violation_log &never_there() const { return never; }

private:
    struct watched_pid {
        uint16_t pid = 0;
        repetition_clock clock;
        uint64_t last_packet = 0; ///< of no meaning unless in_times
        bool in_times = false;    ///< had a packet in the times in hand
    };

    void look_closer(watched_pid &one, uint64_t packet);
    void set_good_gap();
    watched_thing thing_of(const watched_pid &one) const;

    repetition_watch absence;
    packet_times times;
    uint64_t good_gap = 0; ///< packets so far apart are no longer apart than others were
    pid_array<std::unique_ptr<watched_pid>> watched;
    std::bitset<mpeg_ts_pid_count> ever_watched;
    std::vector<watched_pid *> touched; ///< with packets in the times in hand
    violation_log never;
};
