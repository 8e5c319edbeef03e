// What the headers of each PID's packets say, counted.
#pragma once

#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/model/pid_array.h"
#include "mpeg_ts_overview/model/pid_facts.h"
#include "mpeg_ts_overview/timeline/packet_times.h"

#include <cstdint>
#include <vector>

class pids_meter {
public:
    /// The packets that come lie in such times.
    void begin(const packet_times &next) { times = next; }
    /// No more packets come of those times.
    void end();

    void on_packet(const ts_packet &packet);

    void on_run(const packet_run &run)
    {
        count(run.pid, run.first, run.count);
        if (run.transport_scrambling_control != 0) rows[row_of[run.pid]].scrambled += run.count;
    }

    bool has_packets(uint16_t pid) const { return states[pid].packets != 0; }
    uint64_t packets_of(uint16_t pid) const { return states[pid].packets; }

    /// In order of first arrival.
    std::vector<pid_facts> finish();

private:
    struct pid_state {
        uint64_t packets = 0;
        uint64_t last_packet = 0;
    };

    void count(uint16_t pid, uint64_t first, uint64_t packets)
    {
        pid_state &state = states[pid];
        if (state.packets == 0) add_row(pid, first);
        if (state.packets == 0 || state.last_packet < times.first) touched.push_back(pid);
        state.packets += packets;
        state.last_packet = first + packets - 1;
    }
    void add_row(uint16_t pid, uint64_t first);

    packet_times times;
    pid_array<pid_state> states;
    pid_array<uint16_t> row_of;    ///< of no meaning for PIDs without packets
    std::vector<uint16_t> touched; ///< PIDs that had a packet in the times in hand
    std::vector<pid_facts> rows;
};
