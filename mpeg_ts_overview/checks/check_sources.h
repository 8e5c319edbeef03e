// What the checks are judged by: the meters and the tables of a recording that has ended, and the facts that
// they gave.
#pragma once

#include "mpeg_ts_overview/meters/absence.h"
#include "mpeg_ts_overview/meters/continuity.h"
#include "mpeg_ts_overview/meters/pcr.h"
#include "mpeg_ts_overview/meters/recording_end.h"
#include "mpeg_ts_overview/meters/time_stamps.h"
#include "mpeg_ts_overview/meters/transport_faults.h"
#include "mpeg_ts_overview/model/limits.h"
#include "mpeg_ts_overview/model/overview.h"
#include "mpeg_ts_overview/tables/stream_tables.h"

struct check_sources {
    const transport_faults &faults;
    const continuity_meter &continuity;
    const stream_tables &tables;
    const pcr_meter &pcr;
    const time_stamp_meter &time_stamps;
    const absence_meter &absence;
    const overview &facts; ///< recording, pids, programs, pcr and time_stamps are there
    const recording_end &end;
    const limits &other_limits;
    bool whole_multiplex = false;

    /// True when only times between clock points count.
    bool sure_times_only() const { return end.sure_between_clock_points_only(); }
    bool has_times() const { return facts.recording.duration_ticks.has_value(); }
};
