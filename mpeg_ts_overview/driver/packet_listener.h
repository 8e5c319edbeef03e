// Who is told of the packets of a recording, in order, with their times.
#pragma once

#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/model/time_break.h"
#include "mpeg_ts_overview/timeline/packet_times.h"

#include <cstdint>

class packet_listener {
public:
    virtual ~packet_listener() = default;

    /// The packets that are told next lie in these times, which stay where they are until end_times.
    virtual void begin_times(const packet_times &times) = 0;
    virtual void end_times() = 0;

    /// A stretch without a time break begins at the packet that comes next.
    virtual void begin_stretch(const moment &at) = 0;
    /// A break ends with the packet that comes next.
    virtual void on_break(const time_break &ended) = 0;

    /// start is the sync byte of the first packet, the next ones follow a packet size behind.
    virtual void on_run(const packet_run &run, const uint8_t *start) = 0;
    virtual void on_packet(const ts_packet &packet) = 0;
    virtual void on_bad_slot(const moment &at) = 0;

protected:
    packet_listener() = default;
    packet_listener(const packet_listener &) = default;
    packet_listener &operator=(const packet_listener &) = default;
};
