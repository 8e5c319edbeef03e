// What the programs of a recording carry and what is said of them: services, codec headers, guide, cues,
// teletext and the time of day.
#pragma once

#include "mpeg_ts_overview/contents/cues.h"
#include "mpeg_ts_overview/contents/day_clock.h"
#include "mpeg_ts_overview/contents/dvb_text.h"
#include "mpeg_ts_overview/contents/guide.h"
#include "mpeg_ts_overview/contents/network.h"
#include "mpeg_ts_overview/contents/programs.h"
#include "mpeg_ts_overview/contents/services.h"
#include "mpeg_ts_overview/contents/stream_headers.h"
#include "mpeg_ts_overview/contents/teletext_pages.h"
#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/meters/program_clock.h"
#include "mpeg_ts_overview/model/overview.h"
#include "mpeg_ts_overview/model/sequence.h"
#include "mpeg_ts_overview/tables/pid_directory.h"
#include "mpeg_ts_overview/tables/program_map.h"
#include "mpeg_ts_overview/tables/section.h"

#include <bitset>
#include <cstdint>

class recording_contents {
public:
    /// All take sections and packets before this does.
    recording_contents(const pid_directory &uses, const program_map &programs, const program_clocks &followed)
        : directory(uses), map(programs), clocks(followed)
    {
    }

    /// True while the packets of the PID are looked into: on_packet needs each of them, but of scrambled ones
    /// in a row no more than the first.
    bool wants(uint16_t pid) const { return headers.wants(pid) || has_teletext[pid]; }

    /// Takes the packets of the PIDs that it wants, before the sections that end in them.
    void on_packet(const ts_packet &packet, const packet_sequence &sequence);

    /// Takes every section that is whole; where it has a CRC_32 that is looked at, that is right.
    void on_section(const table_section &section);
    /// A section comes soon that begins so.
    void on_section_begun(const table_section &section) const { guide.on_section_begun(section); }

    void on_sync_loss();

    /// The recording is over. The model has what was counted of the PIDs, their rates, and the programs with
    /// the PIDs and types of their streams; adds what was found.
    void finish(overview &found);

private:
    void on_map(const table_section &section);
    void describe_programs(overview &found) const;
    void note_limits(overview &found) const;

    const pid_directory &directory;
    const program_map &map;
    const program_clocks &clocks;
    dvb_text_converter texts;
    service_list services{texts};
    network_information network{texts};
    program_descriptions descriptions;
    stream_headers headers;
    programme_guide guide{texts};
    cue_list cues;
    teletext_pages teletext;
    day_clock clock;
    std::bitset<mpeg_ts_pid_count> has_teletext; ///< by PID
};
