// The event information table, ATSC A/65 6.5, and the extended text table, 6.6.
#pragma once

#include "mpeg_ts_overview/tables/byte_range.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <optional>
#include <vector>

struct atsc_event {
    uint16_t event_id = 0;          ///< 14 bits
    uint32_t start_time = 0;        ///< seconds since the epoch of GPS
    uint8_t ETM_location = 0;       ///< 0 to 3
    uint32_t length_in_seconds = 0; ///< 20 bits
    byte_range title_text;          ///< a multiple_string_structure
    byte_range descriptors;
};

/// The events of an EIT section, as far as they fit; none of another protocol_version than 0.
std::vector<atsc_event> read_atsc_eit(const table_section &section);

struct ett {
    uint32_t ETM_id = 0;
    byte_range extended_text_message; ///< a multiple_string_structure

    /// True when the text is of an event, not of a channel.
    bool is_of_event() const { return (ETM_id & 3) == 2; }
    uint16_t source_id() const { return static_cast<uint16_t>(ETM_id >> 16); }
    uint16_t event_id() const { return (ETM_id >> 2) & 0x3FFF; }
};

/// The section; nothing when it is shorter than its fixed part, or of another protocol_version than 0.
std::optional<ett> read_ett(const table_section &section);
