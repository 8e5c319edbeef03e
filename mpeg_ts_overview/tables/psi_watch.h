// How often PAT and PMTs come, ISO/IEC 13818-1 2.4.4; ETSI TR 101 290 1.3a and 1.5a, ATSC A/53 Part 3.
#pragma once

#include "mpeg_ts_overview/model/limits.h"
#include "mpeg_ts_overview/tables/program_map.h"
#include "mpeg_ts_overview/tables/repetition_watch.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/table_repetition.h"

#include <cstdint>
#include <functional>
#include <unordered_map>

class psi_watch {
public:
    psi_watch(const time_stretches &times, const limits &values, bool is_whole_multiplex);

    /// Takes every section whose CRC_32 is right, once the program map knows what it says. has_packets: a
    /// packet of the PID has come.
    void on_section(const table_section &section, const table_key &of_table, const program_map &programs,
                    const std::function<bool(uint16_t pid)> &has_packets);

    /// The recording ends.
    void finish(const moment &end_of_recording, const std::function<bool(uint16_t pid)> &has_packets);

    // After the end: the limits of the PAT and of the PMTs of programs that are not absent.
    const repetition_limit &pat() const { return pat_sections.limit(0); }
    const repetition_limit &atsc_pat() const { return pat_sections.limit(1); }
    const repetition_limit &pmt() const { return pmts.limit(0); }
    const repetition_limit &atsc_pmt() const { return pmts.limit(1); }
    /// True when there was a program whose PMT was watched.
    bool had_program() const { return watched_program; }
    bool had_pat() const { return pat_sections.came(); }

private:
    struct program_clock {
        uint16_t pmt_pid = 0;
        repetition_clock clock;
    };

    void end(uint16_t program_number, program_clock of_program, const moment &at, bool is_absent);

    bool whole_multiplex;
    bool watched_program = false;
    table_repetition pat_sections;
    repetition_watch pmts;
    std::unordered_map<uint16_t, program_clock> clocks; ///< by program_number, of those that the PAT lists
};
