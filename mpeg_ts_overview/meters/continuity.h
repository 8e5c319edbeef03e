// Continuity counters, ISO/IEC 13818-1 2.4.3.3: Continuity_count_error of ETSI TR 101 290 (1.4).
#pragma once

#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/model/pid_array.h"
#include "mpeg_ts_overview/model/pid_facts.h"
#include "mpeg_ts_overview/model/sequence.h"
#include "mpeg_ts_overview/model/violation_log.h"

#include <cstdint>
#include <map>

class continuity_meter {
public:
    /// What the counter of the packet says.
    packet_sequence on_packet(const ts_packet &packet);

    /// Packets that are known to be in sequence.
    void on_run(const packet_run &run)
    {
        counter_state &state = states[run.pid];
        state.counter = run.last_counter;
        state.last_packet = run.first + run.count - 1;
        state.after_duplicate = false;
    }

    /// The next packet of each PID sets its counter.
    void on_sync_loss();

    /// Adds duplicates, continuity_errors, lost_packets_estimate and out_of_order.
    void add_to(pid_facts &facts) const;

    const violation_log &errors() const { return log; }

private:
    struct counter_state {
        uint64_t last_packet = 0;
        uint8_t counter = 0;
        bool known = false;           ///< the counter says what the next one must be
        bool after_duplicate = false; ///< the last packet was a duplicate
    };
    struct counts {
        uint64_t duplicates = 0;
        uint64_t errors = 0;
        uint64_t lost = 0;
        uint64_t out_of_order = 0;
    };

    packet_sequence on_copy(const ts_packet &packet, counter_state &state);
    void on_error(const ts_packet &packet, unsigned ahead, bool same_counter);

    pid_array<counter_state> states;
    std::map<uint16_t, counts> counted;
    violation_log log;
};
