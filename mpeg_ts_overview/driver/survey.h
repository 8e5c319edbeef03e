// Everything that is measured of a recording while it goes by: packets in, model out.
#pragma once

#include "mpeg_ts_overview/driver/packet_listener.h"
#include "mpeg_ts_overview/input/packet_scanner.h"
#include "mpeg_ts_overview/meters/continuity.h"
#include "mpeg_ts_overview/meters/pids.h"
#include "mpeg_ts_overview/meters/rates.h"
#include "mpeg_ts_overview/model/overview.h"
#include "mpeg_ts_overview/timeline/timeline.h"

class survey final : public packet_listener {
public:
    explicit survey(unsigned packet_size) : stride(packet_size) {}

    void begin_times(const packet_times &times) override;
    void end_times() override;
    void begin_stretch(const moment &at) override;
    void on_break(const time_break &ended) override;
    void on_run(const packet_run &run, const uint8_t *start) override;
    void on_packet(const ts_packet &packet) override;
    void on_bad_slot(const moment &at) override;

    /// Adds what was found. The recording ended at that moment, and the facts of the recording are there
    /// already.
    void finish(const timeline &times, const moment &end, overview &found);

private:
    unsigned stride; ///< bytes from packet to packet
    time_break_list breaks;
    pids_meter pids;
    rates_meter rates;
    continuity_meter continuity;
};
