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
#include <utility>
#include <vector>

/// Streams and CA systems of all programs together; what a PMT names beyond them is not kept.
constexpr uint64_t mapped_stream_limit = 4096;

class program_map {
public:
    explicit program_map(pid_directory &uses);

    /// Takes every section whose CRC_32 is right, and looks at PAT and PMTs.
    void on_section(const table_section &section);

    /// The roles of PIDs become what the sections since the last call made of them. To be called once a
    /// packet: each of many sections in it may put all programs in another order.
    void settle_roles();

    /// What the PID is, since roles were settled last, to the first program of the PAT whose current PMT
    /// lists it.
    const stream_role &role_of(uint16_t pid) const { return roles[pid]; }

    /// True while a program with a current PMT has its PCRs on the PID.
    bool is_program_clock(uint16_t pid) const { return directory.is(pid, pid_use::clock); }

    /// True when the section, whose CRC_32 is right, is what a program's current PMT says.
    bool is_current_map(const table_section &section) const;

    /// True once a PMT has been current.
    bool had_map() const { return map_came; }

    /// True once a PMT has had a CA_descriptor.
    bool has_conditional_access() const { return had_ca_descriptor; }

    /// The PIDs whose role, or whose being a program's clock, changed when roles were settled last.
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
        kept_map last;
        bool is_listed = false;   ///< in the current PAT
        bool ever_mapped = false; ///< last is what a PMT said
        bool current = false;     ///< last is what its current PMT says
        bool moved = false;       ///< in the PAT, since roles were settled last
    };

    /// A stream of a program whose PMT is current.
    struct pid_listing {
        uint16_t program = 0; ///< its place in programs
        uint16_t stream = 0;  ///< its place in the streams of that
    };

    void on_pat(const table_section &section);
    void replace_pat_section(unsigned section_number, std::vector<pat_entry> entries);
    void settle_programs();
    bool move(uint16_t index);
    void on_pmt(const table_section &section);
    kept_map keep(const pmt &map, uint32_t crc_32);
    void enter(uint16_t index);
    void leave(uint16_t index, const kept_map &map);
    void unname(const kept_map &map);
    void mark(uint16_t pid);
    void mark_streams(const kept_map &map, bool shared_only = false);
    stream_role role_now(uint16_t pid) const;
    uint16_t program_index(uint16_t number);
    std::optional<uint16_t> known_index(uint16_t number) const;

    pid_directory &directory;
    std::vector<stream_role> roles;
    std::vector<std::vector<pid_listing>> listings; ///< per PID, in any order
    std::bitset<mpeg_ts_pid_count> shared;          ///< PIDs that several programs list
    std::vector<uint16_t> marked;                   ///< PIDs whose role may be another now
    std::bitset<mpeg_ts_pid_count> is_marked;
    std::bitset<mpeg_ts_pid_count> was_clock; ///< PIDs with PCRs of programs when roles were settled last
    std::array<std::vector<pat_entry>, 256> pat_sections;
    std::array<uint32_t, 256> pat_crcs = {};
    std::vector<program> programs;
    std::vector<uint32_t> first_places; ///< of each program, in the PAT, where it is listed
    std::vector<uint32_t> index_of;     ///< by program_number, 1 + place in programs; 0: none
    std::vector<uint16_t> touched;      ///< by the PAT section, places in programs
    std::vector<uint16_t> moved;        ///< since roles were settled last, places in programs
    std::vector<listing_change> listing;
    std::optional<uint16_t> stream_id;
    bool map_came = false;
    bool had_ca_descriptor = false;
    std::vector<uint16_t> changed;
    uint64_t kept_count = 0;
    uint64_t not_kept = 0;
};
