// Programs that come and go at random: what the program_map keeps up to date section by section is what
// can be found anew from all that the current PAT and PMTs say.
#include "tests/overview_tables/table_stream.h"

#include "mpeg_ts_overview/tables/program_map.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

constexpr uint16_t first_pid = 0x100;
constexpr unsigned pid_count = 12;
constexpr unsigned program_count = 7;
constexpr unsigned pat_section_count = 3;

using pat_entries = std::vector<std::pair<unsigned, unsigned>>;

struct said_map {
    unsigned PCR_PID = 0;
    std::vector<pmt_stream> streams;
};

/// What is known of a PID.
struct known_pid {
    std::optional<uint16_t> program;
    std::optional<uint16_t> pcr_pid;
    stream_kind kind = stream_kind::other;
    bool is_clock = false;

    bool operator==(const known_pid &) const = default;
};
using known_pids = std::map<uint16_t, known_pid>;

stream_kind kind_of(unsigned stream_type)
{
    if (stream_type == 0x02) return stream_kind::video;
    return stream_type == 0x03 ? stream_kind::audio : stream_kind::other;
}

/// The current PAT and PMTs as they stand, and no more.
class said_programs {
public:
    void pat(unsigned number, unsigned last, pat_entries entries)
    {
        const auto before = pmt_pids();
        sections[number] = std::move(entries);
        sections.erase(sections.upper_bound(last), sections.end());
        const auto now = pmt_pids();
        std::erase_if(maps, [&](const auto &one) {
            return now.count(one.first) == 0 || now.at(one.first) != before.at(one.first);
        });
    }

    void pmt(unsigned pid, unsigned number, said_map map)
    {
        const auto now = pmt_pids();
        if (now.count(number) != 0 && now.at(number) == pid) maps[number] = std::move(map);
    }

    /// Each program of the PAT with the PID of its first entry.
    std::map<unsigned, unsigned> pmt_pids() const
    {
        std::map<unsigned, unsigned> result;
        for (const auto &[number, entries] : sections)
            for (const auto &[program, pid] : entries)
                if (program != 0) result.emplace(program, pid);
        return result;
    }

    known_pids pids() const
    {
        known_pids result;
        for (uint16_t pid = first_pid; pid < first_pid + pid_count; ++pid) result[pid] = known(pid);
        return result;
    }

private:
    known_pid known(uint16_t pid) const
    {
        known_pid result;
        for (const auto &[number, map] : maps) result.is_clock |= map.PCR_PID == pid;
        for (const auto &[section, entries] : sections)
            for (const auto &[program, pmt_pid] : entries) {
                const auto map = maps.find(program);
                if (map == maps.end()) continue;
                for (const pmt_stream &stream : map->second.streams) {
                    if (stream.elementary_PID != pid) continue;
                    result.program = static_cast<uint16_t>(program);
                    if (map->second.PCR_PID != 0x1FFF)
                        result.pcr_pid = static_cast<uint16_t>(map->second.PCR_PID);
                    result.kind = kind_of(stream.stream_type);
                    return result;
                }
            }
        return result;
    }

    std::map<unsigned, pat_entries> sections;
    std::map<unsigned, said_map> maps; ///< of programs whose PMT is current
};

class random_programs {
public:
    explicit random_programs(unsigned seed) : source(seed) {}

    /// Sends a section and compares what changed.
    void step()
    {
        const known_pids before = said.pids();
        const auto listed_before = said.pmt_pids();
        const unsigned pid = any_pmt_pid();
        if (below(3) == 0 || !stream.tables->collects(static_cast<uint16_t>(pid)))
            send_pat();
        else
            send_pmt(pid);
        compare_pids(before);
        compare_listings(listed_before);
    }

private:
    unsigned below(unsigned fence) { return static_cast<unsigned>(source() % fence); }
    unsigned any_pid() { return first_pid + below(pid_count); }
    unsigned any_pmt_pid() { return 0x300 + below(2); }

    void send_pat()
    {
        section_fields fields;
        fields.last_section_number = below(pat_section_count);
        fields.section_number = below(fields.last_section_number + 1);
        fields.version_number = below(32);
        pat_entries entries(below(5));
        for (auto &[program, pid] : entries) {
            program = below(program_count);
            pid = program == 0 ? 0x10 : any_pmt_pid();
        }
        stream.section(0, 0, pat_section(1, entries, fields));
        said.pat(fields.section_number, fields.last_section_number, entries);
    }

    void send_pmt(unsigned pid)
    {
        constexpr unsigned stream_types[] = {0x02, 0x03, 0x05, 0x06};
        said_map map;
        map.PCR_PID = below(8) == 0 ? 0x1FFF : any_pid();
        map.streams.resize(below(5));
        for (pmt_stream &one : map.streams) one = {stream_types[below(4)], any_pid(), {}};
        const unsigned number = 1 + below(program_count - 1);
        stream.section(0, pid, pmt_section(number, map.PCR_PID, {}, map.streams, {below(32)}));
        said.pmt(pid, number, map);
    }

    void compare_pids(const known_pids &before)
    {
        const program_map &programs = stream.tables->programs();
        const known_pids now = said.pids();
        std::set<uint16_t> changed;
        for (const auto &[pid, expected] : now) {
            const stream_role &role = programs.role_of(pid);
            const known_pid found = {role.program, role.pcr_pid, role.kind, programs.is_program_clock(pid)};
            EXPECT_EQ(found, expected) << "PID " << pid;
            if (expected != before.at(pid)) changed.insert(pid);
        }
        std::set<uint16_t> told(programs.changed_pids().begin(), programs.changed_pids().end());
        EXPECT_EQ(told, changed);
    }

    void compare_listings(const std::map<unsigned, unsigned> &before)
    {
        std::map<unsigned, unsigned> listed = before;
        for (const program_map::listing_change &change : stream.tables->programs().listing_changes()) {
            const bool is_change = change.is_listed
                                       ? listed.emplace(change.program_number, change.pmt_pid).second
                                       : listed.erase(change.program_number) == 1;
            EXPECT_TRUE(is_change);
        }
        const auto now = said.pmt_pids();
        EXPECT_EQ(listed, now);
        for (const program_facts &facts : stream.tables->programs().facts())
            EXPECT_TRUE(now.count(facts.number) == 0 || now.at(facts.number) == facts.pmt_pid);
    }

    std::mt19937 source;
    table_stream stream;
    said_programs said;
};

} // namespace

TEST(program_map, what_changes_section_by_section_is_what_all_tables_together_say)
{
    for (unsigned seed = 0; seed < 50 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        random_programs programs(seed);
        for (unsigned i = 0; i < 200 && !testing::Test::HasFailure(); ++i) programs.step();
    }
}
