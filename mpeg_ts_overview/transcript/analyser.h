// The analyser, as one that is shown sections and says what it prints for each.
#pragma once

#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <string>

/// The analyser's settings that the command line has too; the values are those of analysis_settings.
struct transcript_settings {
    uint32_t assume_country = 0;
    int32_t atsc_mode = -1;
};

/// The analyser keeps its state in global variables: there may be one of these at a time.
class analyser {
public:
    explicit analyser(const transcript_settings &from_command_line);
    ~analyser();
    analyser(const analyser &) = delete;
    analyser &operator=(const analyser &) = delete;

    /// A packet of the ATSC base PID has come.
    void on_atsc_packet();

    /// True while the analyser collects sections of the PID.
    bool follows(uint16_t pid) const;

    struct answer {
        std::string text;   ///< as it is printed: of any bytes
        bool stops = false; ///< the analyser ends its run here, on purpose: it must be shown nothing more
    };

    /// What it prints for a section of a PID that it follows.
    answer show(const table_section &section);
};
