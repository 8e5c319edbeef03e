// Which table a section belongs to: its PID, its table_id, and what else tells tables of one table_id apart.
#pragma once

#include "mpeg_ts_overview/tables/section.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>

struct table_key {
    uint16_t pid = 0;
    uint8_t table_id = 0;
    std::optional<uint16_t> table_id_extension;  ///< none of a short section
    std::optional<uint16_t> transport_stream_id; ///< of EIT, EN 300 468 5.2.4
    std::optional<uint16_t> original_network_id; ///< of EIT and SDT
    std::optional<uint32_t> ETM_id;              ///< of the ETT, A/65 6.6

    auto operator<=>(const table_key &) const = default;
};

struct table_key_hash {
    size_t operator()(const table_key &key) const;
};

/// The key of a section. What the section is too short for is left out.
table_key key_of(const table_section &section);

/// True unless the section says that it is not applicable yet.
inline bool is_current(const table_section &section)
{
    return section.header.section_syntax_indicator == 0 || section.header.current_next_indicator == 1;
}

inline bool is_long(const table_section &section)
{
    return section.header.section_syntax_indicator == 1;
}
