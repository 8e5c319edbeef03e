// The programme guide of the actual stream: one entry an event, what came last stands.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct guide_event {
    uint16_t service = 0; ///< service_id, or source_id in ATSC
    uint16_t event_id = 0;
    std::optional<int64_t> start_utc_s; ///< seconds since 1970-01-01T00:00:00Z; none when undefined
    std::optional<uint32_t> duration_s;
    std::string title;       ///< UTF-8, as the texts below
    std::string text;        ///< short and extended text, joined
    std::string language;    ///< ISO 639-2
    const char *source = ""; ///< "present", "following", "schedule" or "atsc" of the last reception
    std::optional<int64_t> present_ticks; ///< when it was first received as present, 27 MHz
    bool was_present = false;
};

struct guide_facts {
    std::vector<guide_event> events;  ///< in order of first arrival
    uint64_t events_of_others = 0;    ///< receptions of events of other transport streams
    uint64_t not_kept = 0;            ///< receptions of events beyond the limit
    uint64_t text_bytes_not_kept = 0; ///< of events that are kept, each time that they changed
};
