// Everything that is measured of a recording while it goes by: packets in, model out.
#pragma once

#include "mpeg_ts_overview/driver/overview_request.h"
#include "mpeg_ts_overview/driver/packet_listener.h"
#include "mpeg_ts_overview/meters/continuity.h"
#include "mpeg_ts_overview/meters/pcr.h"
#include "mpeg_ts_overview/meters/pids.h"
#include "mpeg_ts_overview/meters/rates.h"
#include "mpeg_ts_overview/meters/recording_end.h"
#include "mpeg_ts_overview/meters/time_stamps.h"
#include "mpeg_ts_overview/meters/transport_faults.h"
#include "mpeg_ts_overview/model/overview.h"
#include "mpeg_ts_overview/tables/pid_directory.h"
#include "mpeg_ts_overview/tables/program_map.h"
#include "mpeg_ts_overview/tables/section_router.h"
#include "mpeg_ts_overview/timeline/timeline.h"

class survey final : public packet_listener, private section_consumer {
public:
    /// Of packets so many bytes apart.
    survey(const overview_request &request, unsigned packet_size);

    void begin_times(const packet_times &next) override;
    void end_times() override;
    void begin_stretch(const moment &at) override;
    void on_break(const time_break &ended) override;
    void on_run(const packet_run &run, const uint8_t *start) override;
    void on_packet(const ts_packet &packet) override;
    void on_bad_slot(const moment &at) override;

    /// Adds what was found. The recording ended at that moment, and the facts of the recording are there
    /// already.
    void finish(const timeline &known, const moment &end, overview &found);

private:
    void on_section(const table_section &section) override;
    recording_end end_of(const timeline &known, const moment &end) const;

    unsigned stride; ///< bytes from packet to packet
    const packet_times *times = nullptr;
    time_break_list breaks;
    transport_faults faults;
    pids_meter pids;
    rates_meter rates;
    continuity_meter continuity;
    pid_directory directory;
    section_router sections;
    program_map programs;
    pcr_meter pcr;
    time_stamp_meter time_stamps;
};
