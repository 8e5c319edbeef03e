// Whose PID is this? What the current PAT and PMTs say, ISO/IEC 13818-1 2.4.4.3 and 2.4.4.8. A new version of
// a PAT section takes the place of the old one at once; a PMT is current from its first arrival on the PID
// that the PAT gives for the program, as long as the PAT does.
#pragma once

#include "mpeg_ts_overview/model/program_facts.h"
#include "mpeg_ts_overview/tables/pat.h"
#include "mpeg_ts_overview/tables/pid_directory.h"
#include "mpeg_ts_overview/tables/pmt.h"
#include "mpeg_ts_overview/tables/section.h"
#include "mpeg_ts_overview/tables/stream_role.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

/// Streams and CA systems of all programs together; what a PMT names beyond them is not kept.
constexpr uint64_t mapped_stream_limit = 4096;

class program_map {
public:
    explicit program_map(pid_directory &uses);

    /// Takes every section whose CRC_32 is right, and looks at PAT and PMTs.
    void on_section(const table_section &section);

    /// What the PID is to the first program of the PAT whose current PMT lists it.
    const stream_role &role_of(uint16_t pid) const { return roles[pid]; }

    /// True while a program with a current PMT has its PCRs on the PID.
    bool is_program_clock(uint16_t pid) const { return directory.is(pid, pid_use::clock); }

    /// True when the section, whose CRC_32 is right, is what a program's current PMT says.
    bool is_current_map(const table_section &section) const;

    /// True once a PMT has been current.
    bool had_map() const { return map_came; }

    /// True once a PMT has had a CA_descriptor.
    bool has_conditional_access() const { return had_ca_descriptor; }

    /// The PIDs whose role, or whose being a program's clock, the section that came last changed; a PID may
    /// stand there more than once.
    const std::vector<uint16_t> &changed_pids() const { return changed; }

    /// The transport_stream_id of the last PAT section.
    std::optional<uint16_t> transport_stream_id() const { return stream_id; }

    /// Every program that any current PAT named, in that order, with what its last PMT said: number, PIDs, CA
    /// systems, streams. What comes from elsewhere is left out.
    std::vector<program_facts> facts() const;

    /// The PAT begins, or ceases, to list a program with that PMT PID.
    struct listing_change {
        uint16_t program_number = 0;
        uint16_t pmt_pid = 0;
        bool is_listed = false;
    };
    /// What the section that came last changed; of a program whose PID changed first the end, then the start.
    const std::vector<listing_change> &listing_changes() const { return listing; }

    uint64_t streams_not_kept() const { return not_kept; }

private:
    struct kept_stream {
        uint16_t pid = 0;
        uint8_t stream_type = 0;
        bool still_pictures = false;
        stream_kind kind = stream_kind::other;
    };
    struct kept_map {
        uint32_t crc_32 = 0;
        uint16_t pcr_pid = 0;
        std::vector<kept_stream> streams;
        std::vector<ca_system> ca_systems;
        std::vector<std::pair<uint16_t, pid_use>> names; ///< every PID that it names, and what for
    };
    struct program {
        uint16_t number = 0;
        uint16_t pmt_pid = 0;
        std::map<uint32_t, uint16_t> places; ///< in the current PAT, in its order, and the PIDs there
        uint32_t place = 0;                  ///< the first of them, when there is one
        kept_map last;
        bool is_listed = false;   ///< in the current PAT
        bool ever_mapped = false; ///< last is what a PMT said
        bool current = false;     ///< last is what its current PMT says
    };

    void on_pat(const table_section &section);
    void replace_pat_section(unsigned section_number, std::vector<pat_entry> entries,
                             std::set<uint32_t> &touched);
    void settle(const std::set<uint32_t> &touched);
    void move(uint32_t index);
    void on_pmt(const table_section &section);
    kept_map keep(const pmt &map, uint32_t crc_32);
    void enter(uint32_t index);
    void leave(uint32_t index, const kept_map &map);
    void unname(const kept_map &map);
    void refresh(const kept_map &map, bool shared_only = false);
    void note_clock(uint16_t pid, bool was_program_clock);
    uint32_t program_index(uint16_t number);

    pid_directory &directory;
    std::vector<stream_role> roles;
    std::vector<std::map<uint32_t, stream_role>> listings; ///< per PID, by index of the program
    std::bitset<mpeg_ts_pid_count> shared;                 ///< PIDs that several programs list
    std::vector<uint64_t> refreshed; ///< per PID, the number of the last change that looked at its role
    uint64_t change_number = 0;
    std::array<std::vector<pat_entry>, 256> pat_sections;
    std::array<uint32_t, 256> pat_crcs = {};
    std::vector<program> programs;
    std::unordered_map<uint16_t, uint32_t> index_of; ///< by program_number
    std::vector<listing_change> listing;
    std::optional<uint16_t> stream_id;
    bool map_came = false;
    bool had_ca_descriptor = false;
    std::vector<uint16_t> changed;
    uint64_t kept_count = 0;
    uint64_t not_kept = 0;
};
