// Everything that was found in a recording. Outputs read this and nothing else.
#pragma once

#include "mpeg_ts_overview/model/check_result.h"
#include "mpeg_ts_overview/model/clock_facts.h"
#include "mpeg_ts_overview/model/cue_facts.h"
#include "mpeg_ts_overview/model/guide_facts.h"
#include "mpeg_ts_overview/model/limits_reached.h"
#include "mpeg_ts_overview/model/pcr_facts.h"
#include "mpeg_ts_overview/model/pid_facts.h"
#include "mpeg_ts_overview/model/program_facts.h"
#include "mpeg_ts_overview/model/rate_facts.h"
#include "mpeg_ts_overview/model/recording.h"
#include "mpeg_ts_overview/model/table_facts.h"
#include "mpeg_ts_overview/model/teletext_facts.h"
#include "mpeg_ts_overview/model/time_break.h"
#include "mpeg_ts_overview/model/time_stamp_facts.h"
#include "mpeg_ts_overview/model/transcript_facts.h"

#include <string>
#include <vector>

struct transport_stream_facts {
    std::optional<uint16_t> transport_stream_id;
    std::optional<uint16_t> original_network_id;
    std::optional<std::string> network_name; ///< UTF-8
};

struct overview {
    recording_facts recording;
    std::string standard = "MPEG"; ///< "ATSC", "ISDB", "partial", "DVB" or "MPEG"
    transport_stream_facts transport_stream;
    std::vector<program_facts> programs; ///< in the order in which PATs first named them
    std::vector<pid_facts> pids;         ///< in order of first arrival
    rates_facts rates;
    std::vector<pcr_facts> pcr;                ///< in order of first arrival
    std::vector<time_stamp_facts> time_stamps; ///< in order of first arrival
    tables_facts tables;
    time_break_list breaks;
    std::vector<check_result> checks;
    guide_facts guide;
    cues_facts cues;
    teletext_facts teletext;
    clock_facts clock;
    transcript_facts transcript;
    std::vector<limit_reached> limits_reached;
};
