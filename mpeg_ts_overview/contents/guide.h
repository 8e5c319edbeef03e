// The programme guide of the stream itself: of each event what came last. EIT, EN 300 468 5.2.4; EIT and ETT,
// ATSC A/65 6.5 and 6.6.
#pragma once

#include "mpeg_ts_overview/contents/dvb_text.h"
#include "mpeg_ts_overview/contents/event_texts.h"
#include "mpeg_ts_overview/model/guide_facts.h"
#include "mpeg_ts_overview/tables/eit.h"
#include "mpeg_ts_overview/tables/flat_map.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

constexpr size_t guide_event_limit = 20000;

/// Bytes of titles, texts and languages.
constexpr size_t guide_text_limit = 8 * 1024 * 1024;

class programme_guide {
public:
    explicit programme_guide(dvb_text_converter &converter) : texts(converter) {}

    /// Takes any current section, with a right CRC_32, of a table on its own PID; looks at EIT, and in ATSC
    /// at ETT and STT too. A section that repeats what it said before costs no more than a look at its
    /// events.
    void on_section(const table_section &section);

    /// Fetches what is remembered of the events of a section that comes soon and begins so.
    void on_section_begun(const table_section &section) const;

    /// The events in order of first arrival. Those of ATSC have a start when an STT told how far GPS is ahead
    /// of UTC.
    guide_facts finish();

private:
    /// What an event was written from.
    struct origin {
        uint64_t reception = 0; ///< of the section, when it came first
        uint8_t table_id = 0;
        uint32_t crc_32 = 0;                ///< of the section
        std::optional<uint32_t> gps_start;  ///< in ATSC
        std::optional<uint32_t> ett_crc_32; ///< of the section that its text is from, in ATSC
        /// Size and checksum of the loop that all of its texts are from, in DVB.
        std::optional<uint64_t> descriptors;
    };

    /// Events in a row, which mostly come together, stand together.
    struct key_hash {
        size_t operator()(uint32_t key) const;
    };

    void on_eit(const table_section &section);
    void take_descriptors(size_t place, byte_range descriptors);
    void on_atsc_eit(const table_section &section);
    void on_ett(const table_section &section);
    void on_stt(const table_section &section);

    /// The place of the event when the section says something new of it: a new event, or one that something
    /// else was written to last.
    std::optional<size_t> place_for(const table_section &section, uint16_t service, uint16_t event_id);
    void set_texts(guide_event &event, event_texts said);

    dvb_text_converter &texts;
    guide_facts facts;
    std::vector<origin> origins;                     ///< of each event
    flat_map<uint32_t, uint32_t, key_hash> place_of; ///< by service and event_id
    size_t text_bytes = 0;
    uint64_t receptions = 0; ///< of sections
    std::optional<uint8_t> GPS_UTC_offset;
};
