// The meters of a recording without its tables: which PID is what is given.
#pragma once

#include "mpeg_ts_overview/driver/recording_walk.h"
#include "mpeg_ts_overview/meters/absence.h"
#include "mpeg_ts_overview/meters/continuity.h"
#include "mpeg_ts_overview/meters/pcr.h"
#include "mpeg_ts_overview/meters/pids.h"
#include "mpeg_ts_overview/meters/program_clock.h"
#include "mpeg_ts_overview/meters/rates.h"
#include "mpeg_ts_overview/meters/recording_end.h"
#include "mpeg_ts_overview/meters/time_stamps.h"
#include "mpeg_ts_overview/meters/transport_faults.h"
#include "mpeg_ts_overview/model/overview.h"
#include "mpeg_ts_overview/tables/time_stretches.h"

/// Promises that every packet is told once, in order, at a time that does not go back.
class metered_walk final : public packet_listener {
public:
    /// Of packets so many bytes apart.
    explicit metered_walk(unsigned packet_size);

    void begin_times(const packet_times &next) override;
    void end_times() override;
    void begin_stretch(const moment &at) override;
    void on_break(const time_break &ended) override;
    void on_run(const packet_run &run, const uint8_t *start) override;
    void on_packet(const ts_packet &packet) override;
    void on_bad_slot(const moment &at) override;

    /// What was found, the recording itself included.
    overview finish(const packet_scanner &scanner, const timeline &known, const moment &end);

private:
    void tell(uint64_t first, uint64_t count);
    void note_recording(const packet_scanner &scanner, const timeline &known, overview &found) const;
    recording_end end_of(const timeline &known, const moment &end) const;
    void promise_logs(const overview &found) const;

    unsigned stride; ///< bytes from packet to packet
    packet_times times;
    bool in_times = false;
    uint64_t next_packet = 0;
    int64_t last_ticks = 0;
    int64_t last_stretch = -1;
    uint64_t duplicates = 0;
    uint64_t errors_told = 0;
    time_break_list breaks;
    time_stretches stretches;
    transport_faults faults;
    pids_meter pids;
    rates_meter rates;
    continuity_meter continuity;
    absence_meter absence;
    program_clocks clocks;
    pcr_meter pcr;
    time_stamp_meter time_stamps;
};
