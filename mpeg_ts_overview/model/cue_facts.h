// Splice information sections, ANSI/SCTE 35: one entry a section, repeats counted.
#pragma once

#include "mpeg_ts_overview/model/moment.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct cue_segmentation {
    uint8_t type = 0; ///< segmentation_type_id
    std::string name;
    std::string upid; ///< hexadecimal digits, or text where its type is one
};

struct cue {
    uint16_t pid = 0;
    std::optional<uint16_t> program; ///< program_number
    moment at;
    std::string command; ///< "splice_insert", "time_signal" ...
    uint64_t count = 1;  ///< receptions
    std::optional<uint32_t> splice_event_id;
    std::optional<bool> out_of_network;
    std::optional<bool> immediate;
    std::optional<uint64_t> pts_time;       ///< with pts_adjustment, 90 kHz, 33 bits
    std::optional<uint64_t> break_duration; ///< 90 kHz
    std::optional<bool> auto_return;
    std::optional<int64_t> pre_roll_ticks; ///< pts_time minus the program's clock at the section, 27 MHz
    std::vector<cue_segmentation> segmentations;
    bool cancelled = false;
};

struct cues_facts {
    std::vector<cue> cues;
    uint64_t not_kept = 0;
};
