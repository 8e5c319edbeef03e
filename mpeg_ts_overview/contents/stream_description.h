// What a stream of a program is, as its entry in the PMT says it.
#pragma once

#include "mpeg_ts_overview/contents/header_finder.h"
#include "mpeg_ts_overview/tables/pmt.h"

#include <optional>
#include <string>

struct stream_description {
    const char *name = "";                ///< "MPEG-2 video", "DVB subtitles"
    const char *kind = "data";            ///< "video", "audio", "teletext", "subtitles", "cues" or "data"
    std::string language;                 ///< ISO 639-2, UTF-8, each once, joined by ","
    std::optional<codec_family> family;   ///< where headers in the stream tell more
    std::optional<codec_details> details; ///< what descriptors say, where no header tells more
    bool is_teletext = false;             ///< its packets carry EBU Teletext
};

/// blu_ray_program: program_info is registered as HDMV.
stream_description describe_stream(const pmt_entry &stream, bool blu_ray_program);
