// What the packet headers of one PID say, counted. ISO/IEC 13818-1 2.4.3.2 to 2.4.3.5.
#pragma once

#include <cstdint>
#include <optional>

struct pid_facts {
    uint16_t pid = 0;
    uint64_t packets = 0;
    uint64_t first_packet = 0; ///< index
    uint64_t last_packet = 0;  ///< index
    std::optional<int64_t> first_ticks;
    std::optional<int64_t> last_ticks;
    uint64_t scrambled = 0;
    uint64_t transport_errors = 0;
    uint64_t unit_starts = 0;
    uint64_t random_access_points = 0;
    uint64_t without_payload = 0;  ///< adaptation_field_control 10
    uint64_t reserved_control = 0; ///< adaptation_field_control 00
    uint64_t duplicates = 0;
    uint64_t continuity_errors = 0;
    uint64_t lost_packets_estimate = 0;
    uint64_t out_of_order = 0;
    uint64_t discontinuities = 0; ///< packets with the discontinuity_indicator
    uint64_t crc_errors = 0;
    uint64_t incomplete_sections = 0;
};
