// The analyser's words for each distinct section, and the faults that it names.
#pragma once

#include "mpeg_ts_overview/model/moment.h"

#include <cstdint>
#include <string>
#include <vector>

struct transcript_entry {
    uint16_t pid = 0;
    uint8_t table_id = 0;
    std::string heading; ///< the first line, UTF-8
    std::string lines;   ///< all lines, each with its line end, UTF-8
    uint64_t count = 0;
    moment first;
    moment last;
};

struct fault_group {
    std::string text; ///< of the first
    uint16_t pid = 0;
    uint8_t table_id = 0;
    uint64_t count = 0; ///< with repetitions
    moment first;
    moment last;
    std::vector<uint64_t> packets; ///< indexes of the first 100
};

struct transcript_facts {
    std::vector<transcript_entry> entries; ///< in order of first appearance
    std::vector<fault_group> faults;
    std::string note; ///< why the transcript ends early; empty when it does not
    uint64_t sections_not_kept = 0;
    uint64_t faults_not_kept = 0;
};
