// The service description section, EN 300 468 5.2.3.
#pragma once

#include "mpeg_ts_overview/tables/byte_range.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <optional>
#include <vector>

constexpr uint8_t sdt_actual_table_id = 0x42;
constexpr uint8_t sdt_other_table_id = 0x46;
constexpr uint16_t sdt_pid = 0x0011; ///< of the BAT too

struct sdt_service {
    uint16_t service_id = 0;
    bool EIT_schedule_flag = false;
    bool EIT_present_following_flag = false;
    uint8_t running_status = 0; ///< 0 to 7
    bool free_CA_mode = false;
    byte_range descriptors;
};

struct sdt {
    uint16_t transport_stream_id = 0;
    uint16_t original_network_id = 0;
    std::vector<sdt_service> services;
};

/// The section, its services as far as they fit; nothing when it is shorter than its fixed part.
std::optional<sdt> read_sdt(const table_section &section);
