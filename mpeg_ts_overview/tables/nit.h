// The network information section, EN 300 468 5.2.1, and the bouquet association section, 5.2.2, which has
// the same form.
#pragma once

#include "mpeg_ts_overview/tables/byte_range.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <optional>
#include <vector>

constexpr uint8_t nit_actual_table_id = 0x40;
constexpr uint8_t nit_other_table_id = 0x41;
constexpr uint8_t bat_table_id = 0x4A;
constexpr uint16_t nit_pid = 0x0010;

struct nit_transport_stream {
    uint16_t transport_stream_id = 0;
    uint16_t original_network_id = 0;
    byte_range transport_descriptors;
};

struct nit {
    uint16_t network_id = 0; ///< bouquet_id in a BAT
    byte_range network_descriptors;
    std::vector<nit_transport_stream> transport_streams;
};

/// The section, its transport streams as far as they fit; nothing when the network descriptors do not fit.
std::optional<nit> read_nit(const table_section &section);
