// The CA_descriptor, ISO/IEC 13818-1 2.6.16, and the CAT, 2.4.4.6, which is a loop of descriptors.
#pragma once

#include "mpeg_ts_overview/tables/byte_range.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <vector>

constexpr uint8_t cat_table_id = 0x01;
constexpr uint16_t cat_pid = 0x0001;

struct ca_descriptor {
    uint16_t CA_system_ID = 0;
    uint16_t CA_PID = 0; ///< ECM in a PMT, EMM in the CAT
};

/// The CA_descriptors of a loop.
std::vector<ca_descriptor> read_ca_descriptors(byte_range loop);

/// The CA_descriptors of a CAT section.
std::vector<ca_descriptor> read_cat(const table_section &section);
