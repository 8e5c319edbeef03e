// The recording as a whole: its size, its packets, its time base.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

enum class time_base_kind { pcr, arrival, bitrate, none };

struct recording_facts {
    std::string path; ///< as given, UTF-8
    uint64_t bytes = 0;
    unsigned packet_size = 0; ///< bytes: 188, 192 or 204
    uint64_t leading_bytes = 0;
    uint64_t skipped_bytes = 0;
    uint64_t trailing_bytes = 0;
    uint64_t packets = 0; ///< slots, those with a bad sync byte included
    uint64_t sync_byte_errors = 0;
    uint64_t sync_losses = 0;
    std::optional<int64_t> duration_ticks; ///< time of a packet behind the last, 27 MHz
    time_base_kind time_base = time_base_kind::none;
    std::optional<uint16_t> clock_pid; ///< the first clock PID where the time base is pcr
    bool constant_bitrate = false;
};
