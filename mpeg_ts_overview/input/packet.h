// One packet as the meters see it: header, adaptation field flags, PCR and payload, ISO/IEC 13818-1 2.4.3.2
// to 2.4.3.5. Of an adaptation field longer than the packet the header counts, and nothing behind it.
#pragma once

#include "mpeg_ts_overview/model/moment.h"

#include <cstdint>
#include <optional>

struct ts_packet {
    const uint8_t *start = nullptr; ///< its sync byte, 188 bytes follow
    const uint8_t *payload = nullptr;
    const uint8_t *fence = nullptr; ///< one past the payload; equal to payload when there is none
    uint16_t pid = 0;
    bool transport_error_indicator = false;
    bool payload_unit_start_indicator = false;
    uint8_t transport_scrambling_control = 0; ///< 0 to 3
    uint8_t adaptation_field_control = 0;     ///< bit 1: adaptation field, bit 0: payload
    uint8_t continuity_counter = 0;           ///< 0 to 15
    bool discontinuity_indicator = false;
    bool random_access_indicator = false;
    std::optional<uint64_t> PCR; ///< 27 MHz, when it is there and fits
    /// Equal counter, a payload, and but for the PCR the bytes of the PID's packet before.
    bool repeats_previous = false;
    std::optional<int64_t> arrival_ticks; ///< unwrapped arrival time of a 192-byte packet, 0 at packet 0
    moment at;
};

/// Reads the packet at start, which has a sync byte. Sets neither repeats_previous, arrival_ticks nor at.
ts_packet read_packet(const uint8_t *start);

/// Packets in sequence of one PID with payload only, all clear or all scrambled, that start no unit.
struct packet_run {
    uint16_t pid = 0;
    uint8_t transport_scrambling_control = 0; ///< 0 to 3
    uint8_t last_counter = 0;                 ///< continuity_counter of the last
    uint64_t first = 0;                       ///< index of the first
    uint64_t count = 0;
};
