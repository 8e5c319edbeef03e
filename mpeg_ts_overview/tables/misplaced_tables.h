// What is wrong with PSI and SI apart from how often it comes: tables where they have no business, scrambled
// packets, wrong CRCs. ETSI TR 101 290 1.3a, 1.5a, 2.2, 2.6, 3.1a, 3.5a, 3.6a, 3.7, 3.8.
#pragma once

#include "mpeg_ts_overview/model/violation_log.h"
#include "mpeg_ts_overview/tables/pid_directory.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstdint>
#include <map>

class misplaced_tables {
public:
    explicit misplaced_tables(const pid_directory &uses) : directory(uses) {}

    /// A current section whose CRC_32, where it has one, is right.
    void on_section(const table_section &section);
    /// A section whose CRC_32 is wrong.
    void on_bad_section(const table_section &section);
    /// A scrambled packet of a PID whose sections are collected.
    void on_scrambled_packet(uint16_t pid, const moment &at);

    /// Tables that have no business on a PID of 0x00, 0x01 and 0x10 to 0x14.
    const violation_log &on_pid(uint16_t pid) const;
    const violation_log &scrambled_pat() const { return pat_log; }
    const violation_log &scrambled_pmt() const { return pmt_log; }
    /// Wrong CRCs of PSI, SI and PSIP on their own PIDs.
    const violation_log &crc_errors() const { return crc_log; }

private:
    const pid_directory &directory;
    std::map<uint16_t, violation_log> by_pid;
    violation_log pat_log;
    violation_log pmt_log;
    violation_log crc_log;
};
