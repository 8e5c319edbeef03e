// Goes through the steps of the blocks in order, as far as the times of their packets are known.
#pragma once

#include "mpeg_ts_overview/driver/packet_listener.h"
#include "mpeg_ts_overview/input/packet_scanner.h"
#include "mpeg_ts_overview/timeline/timeline.h"

#include <cstdint>
#include <deque>
#include <memory>

class recording_walk {
public:
    /// Tells the listener; gives the blocks back to the scanner.
    recording_walk(packet_scanner &blocks_from, packet_listener &listener)
        : scanner(blocks_from), told(listener)
    {
        span.fence = 0;
    }

    /// Takes the next block. One without a step has nothing to wait for, however long sync is lost.
    void add(std::unique_ptr<block> scanned);

    /// Measures what has known times by now.
    void go_on(timeline &known);

    /// The moment of a packet behind the last one, which has that time and offset.
    moment end(uint64_t byte, std::optional<int64_t> ticks) const;

private:
    bool measure(block &b, timeline &known);
    bool begin_times(const block &b, const scan_step &step, timeline &known);
    void end_times();
    void begin_span(const scan_step &step);
    uint32_t tell(const block &b, const scan_step &step);
    void tell_packet(const block &b, const scan_step &step);
    void tell_run(const scan_step &step, uint32_t count);
    void tell_break(const scan_step &step, time_break_kind kind);

    packet_scanner &scanner;
    packet_listener &told;
    std::deque<std::unique_ptr<block>> waiting;
    size_t next_step = 0; ///< of the first block
    time_span span;       ///< fence 0: there was none yet
    packet_times times;
    bool in_times = false;
    bool had_times = false; ///< a packet with a time has been told
    uint64_t next_packet = 0;
    int64_t stretch = 0;
};
