// The analyser's words for each distinct section of a recording, and the faults that it names.
#pragma once

#include "mpeg_ts_overview/model/transcript_facts.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/transcript/analyser.h"
#include "mpeg_ts_overview/transcript/fault_groups.h"
#include "mpeg_ts_overview/transcript/section_memory.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Bytes of text that are kept.
constexpr size_t transcript_text_limit = size_t{4} << 20;
/// Bytes of them that may come from event information tables.
constexpr size_t transcript_event_text_limit = transcript_text_limit / 2;

class transcript {
public:
    explicit transcript(const transcript_settings &from_command_line = {});

    /// A packet of the ATSC base PID 0x1FFB has come; before any section that it brings.
    void on_atsc_packet() { words.on_atsc_packet(); }

    /// Takes every section that is collected; where its CRC_32 is looked at, that is right.
    void on_section(const table_section &section);

    /// A section comes soon that begins so.
    void on_section_begun(const table_section &section) { last_receptions.fetch(section); }

    transcript_facts finish();

private:
    /// What is known of something that the analyser has printed.
    struct printed_text {
        size_t entry = no_entry; ///< its place in the entries, if it is kept
        fault_tally faults;
        bool of_one_table = false; ///< that gives the time: the faults are those of its last reception
    };
    static constexpr size_t no_entry = SIZE_MAX;

    void take_new(const table_section &section);
    std::string print(const table_section &section);
    uint32_t number_of(std::string text, const table_section &section);
    uint32_t with_faults_of(std::string_view text, const table_section &section, uint32_t number);
    uint32_t add_text(std::string text, const table_section &section, uint64_t hash);
    bool has_room_for(std::string_view text, const table_section &section) const;
    void keep(std::string text, const table_section &section);
    void count(uint32_t text, const table_section &section);

    analyser words;
    bool ended = false;
    section_memory last_receptions;
    std::vector<printed_text> texts;
    std::map<uint64_t, uint32_t> with_hash; ///< places in texts
    fault_groups faults;
    size_t text_size = 0;
    size_t event_text_size = 0;
    size_t faulty_texts_not_kept = 0;
    transcript_facts facts;
};
