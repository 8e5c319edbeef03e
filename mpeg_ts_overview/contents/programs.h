// The streams of the programs, as their PMTs and their headers describe them.
#pragma once

#include "mpeg_ts_overview/contents/stream_description.h"
#include "mpeg_ts_overview/contents/stream_headers.h"
#include "mpeg_ts_overview/model/pid_facts.h"
#include "mpeg_ts_overview/model/program_facts.h"
#include "mpeg_ts_overview/model/rate_facts.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

class program_descriptions {
public:
    /// Takes what a program's current PMT says each time that it comes. Returns what is new in it: its
    /// streams, in its order, with their PIDs.
    struct described_stream {
        uint16_t pid = 0;
        stream_description description;
    };
    const std::vector<described_stream> *on_current_map(const table_section &section);

    /// Adds to programs, whose numbers, PIDs and stream types are there, what is known of their streams.
    void add_to(std::vector<program_facts> &programs, const std::vector<pid_facts> &pids,
                const rates_facts &rates, const stream_headers &headers) const;

private:
    struct described_map {
        uint32_t crc_32 = 0;
        std::vector<described_stream> streams;
    };

    void describe(program_stream &stream, const stream_description &description,
                  const stream_headers &headers) const;

    std::unordered_map<uint16_t, described_map> maps; ///< by program_number
    size_t stream_count = 0;
};
