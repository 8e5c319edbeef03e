// The event information section, EN 300 468 5.2.4.
#pragma once

#include "mpeg_ts_overview/tables/byte_range.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <optional>

constexpr uint8_t eit_present_following_actual_table_id = 0x4E;
constexpr uint8_t eit_present_following_other_table_id = 0x4F;
constexpr uint8_t eit_first_schedule_actual_table_id = 0x50; ///< up to 0x5F
constexpr uint8_t eit_first_schedule_other_table_id = 0x60;  ///< up to 0x6F
constexpr uint8_t eit_last_table_id = 0x6F;
constexpr uint16_t eit_pid = 0x0012;

constexpr bool is_eit(uint8_t table_id)
{
    return table_id >= eit_present_following_actual_table_id && table_id <= eit_last_table_id;
}

constexpr bool is_eit_schedule(uint8_t table_id)
{
    return table_id >= eit_first_schedule_actual_table_id && table_id <= eit_last_table_id;
}

struct eit_event {
    uint16_t event_id = 0;
    byte_range start_time;      ///< MJD and UTC, 5 bytes
    byte_range duration;        ///< 3 bytes
    uint8_t running_status = 0; ///< 0 to 7
    bool free_CA_mode = false;
    byte_range descriptors;

    /// Seconds since 1970-01-01T00:00:00Z; none when undefined.
    std::optional<int64_t> start_utc_s() const;
    /// None when undefined.
    std::optional<uint32_t> duration_s() const;
};

struct eit {
    uint16_t service_id = 0;
    uint16_t transport_stream_id = 0;
    uint16_t original_network_id = 0;
    uint8_t segment_last_section_number = 0;
    uint8_t last_table_id = 0;
    byte_range events;
};

/// The section; nothing when it is shorter than its fixed part.
std::optional<eit> read_eit(const table_section &section);

/// Gives one event after the other; one that does not fit ends the loop.
class eit_event_loop {
public:
    explicit eit_event_loop(byte_range events) : in(events.reader()) {}

    /// The next event; false at the end.
    bool next(eit_event &found);

private:
    bit_reader in;
};
