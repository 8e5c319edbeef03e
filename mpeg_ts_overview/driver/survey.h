// Everything that is measured of a recording while it goes by: packets in, model out.
#pragma once

#include "mpeg_ts_overview/contents/contents.h"
#include "mpeg_ts_overview/driver/overview_request.h"
#include "mpeg_ts_overview/driver/packet_listener.h"
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
#include "mpeg_ts_overview/tables/stream_tables.h"
#include "mpeg_ts_overview/timeline/timeline.h"
#include "mpeg_ts_overview/transcript/transcript.h"

#include <bitset>

class survey final : public packet_listener, private section_consumer {
public:
    /// Of packets so many bytes apart.
    survey(const overview_request &how, unsigned packet_size);

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
    void on_section_begun(const table_section &section) override;
    void look_into(const packet_run &run, const uint8_t *start, bool is_collected, bool is_looked_into);
    void look_for_sections(const ts_packet &packet, const packet_sequence &sequence);
    void on_changed_pid(uint16_t pid, const moment &at);
    recording_end end_of(const timeline &known, const moment &end) const;
    void finish_meters(const recording_end &end, overview &found);
    void note_limits_reached(overview &found) const;

    overview_request request;
    unsigned stride;    ///< bytes from packet to packet
    packet_times times; ///< of the packets that come, until the next break
    time_break_list breaks;
    transport_faults faults;
    pids_meter pids;
    rates_meter rates;
    continuity_meter continuity;
    stream_tables tables;
    absence_meter absence;
    pcr_meter pcr;
    program_clocks clocks;
    time_stamp_meter time_stamps;
    transcript words;
    recording_contents contents;
    std::bitset<mpeg_ts_pid_count> clock_pids; ///< PCR PIDs of programs whose PMT is current
};
