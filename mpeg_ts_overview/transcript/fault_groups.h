// The lines of the analyser that name a fault, those that differ in numbers only as one group.
#pragma once

#include "mpeg_ts_overview/model/transcript_facts.h"
#include "mpeg_ts_overview/tables/section.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

constexpr size_t fault_group_limit = 500;
constexpr size_t fault_packet_limit = 100;

/// How often a text names the faults of one group.
struct fault_share {
    uint32_t group = 0;
    uint32_t lines = 0;

    bool operator==(const fault_share &) const = default;
};
using fault_tally = std::vector<fault_share>;

/// The line with every number made '#': digits, with a sign and a decimal point, or "0x" and its digits.
std::string without_numbers(std::string_view line);

class fault_groups {
public:
    /// The faults that the text of a section names: its lines that begin, but for blanks, with "!!". New
    /// ones get a group, as long as there is room.
    fault_tally in_text(std::string_view text, const table_section &section);

    /// Counts the faults of a reception of the section.
    void count(const fault_tally &faults, const table_section &section);

    /// The groups in order of first appearance.
    std::vector<fault_group> take_groups() { return std::move(groups); }
    /// Lines that found no group.
    uint64_t not_kept() const { return lines_not_kept; }

private:
    uint32_t group_of(std::string_view line, const table_section &section);

    std::vector<fault_group> groups;
    std::unordered_map<std::string, uint32_t> with_words; ///< by PID, table_id and line without numbers
    uint64_t lines_not_kept = 0;
};
