#include "mpeg_ts_overview/tables/program_map.h"

#include "mpeg_ts_overview/tables/conditional_access.h"
#include "mpeg_ts_overview/tables/stream_type.h"
#include "mpeg_ts_overview/tables/table_key.h"

#include <algorithm>
#include <set>

namespace {

constexpr size_t program_number_count = 65536;

/// The place of an entry in the PAT: entries of a section follow those of the sections before.
uint32_t place_of(unsigned section_number, size_t entry)
{
    return static_cast<uint32_t>(section_number << 16 | entry);
}

bool are_equal(const stream_role &a, const stream_role &b)
{
    return a.kind == b.kind && a.still_pictures == b.still_pictures && a.pcr_pid == b.pcr_pid &&
           a.program == b.program;
}

pid_use use_of(const pat_entry &entry)
{
    return entry.program_number == 0 ? pid_use::network : pid_use::map;
}

} // namespace

program_map::program_map(pid_directory &uses)
    : directory(uses), roles(mpeg_ts_pid_count), listings(mpeg_ts_pid_count), index_of(program_number_count)
{
}

void program_map::on_section(const table_section &section)
{
    listing.clear();
    if (!is_long(section) || !is_current(section)) return;
    if (section.pid == pat_pid && section.header.table_id == pat_table_id)
        on_pat(section);
    else if (section.header.table_id == pmt_table_id && directory.is(section.pid, pid_use::map))
        on_pmt(section);
}

void program_map::on_pat(const table_section &section)
{
    const unsigned section_number = section.header.section_number;
    const unsigned last = std::max<unsigned>(section_number, section.header.last_section_number);
    stream_id = section.header.table_id_extension;
    touched.clear();
    if (pat_sections[section_number].empty() || pat_crcs[section_number] != section.crc_32)
        replace_pat_section(section_number, read_pat(section));
    pat_crcs[section_number] = section.crc_32;
    for (unsigned number = last + 1; number < pat_sections.size(); ++number)
        if (!pat_sections[number].empty()) replace_pat_section(number, {});
    // Only now: a program may have moved from one section to another.
    settle_programs();
}

/// Notes the programs that the section named or names.
void program_map::replace_pat_section(unsigned section_number, std::vector<pat_entry> entries)
{
    // What goes on being named is never without a name, so that its sections in hand are not lost.
    for (const pat_entry &entry : entries) directory.add(entry.PID, use_of(entry));
    std::swap(entries, pat_sections[section_number]);
    const std::vector<pat_entry> &gone = entries;
    const std::vector<pat_entry> &here = pat_sections[section_number];
    for (const pat_entry &entry : gone) directory.remove(entry.PID, use_of(entry));

    for (size_t i = 0; i < gone.size(); ++i) {
        if (gone[i].program_number == 0) continue;
        const uint16_t index = program_index(gone[i].program_number);
        programs[index].places.erase(place_of(section_number, i));
        touched.push_back(index);
    }
    for (size_t i = 0; i < here.size(); ++i) {
        if (here[i].program_number == 0) continue;
        const uint16_t index = program_index(here[i].program_number);
        programs[index].places[place_of(section_number, i)] = here[i].PID;
        touched.push_back(index);
    }
}

void program_map::settle_programs()
{
    std::sort(touched.begin(), touched.end());
    touched.erase(std::unique(touched.begin(), touched.end()), touched.end());
    for (const uint16_t index : touched) {
        if (!move(index) || programs[index].moved) continue;
        programs[index].moved = true;
        moved.push_back(index);
    }
}

/// Takes a program to its first place in the PAT, or out of it. Returns true when its streams are to be
/// looked at.
bool program_map::move(uint16_t index)
{
    program &which = programs[index];
    const auto first = which.places.begin();
    const bool is_listed = first != which.places.end();
    const bool stays = is_listed && which.is_listed && which.pmt_pid == first->second;
    if (stays && first->first == first_places[index]) return false;
    const bool was_current = which.current;

    if (which.is_listed && !stays) listing.push_back({which.number, which.pmt_pid, false});
    which.is_listed = is_listed;
    which.current = was_current && stays;
    if (is_listed) {
        first_places[index] = first->first;
        which.pmt_pid = first->second;
        if (!stays) listing.push_back({which.number, which.pmt_pid, true});
    }
    if (!was_current) return false;
    if (which.current) return true;
    leave(index, which.last);
    unname(which.last);
    mark(which.last.pcr_pid);
    return true;
}

void program_map::on_pmt(const table_section &section)
{
    const std::optional<uint16_t> index = known_index(section.header.table_id_extension);
    if (!index) return;
    program &which = programs[*index];
    if (!which.is_listed || which.pmt_pid != section.pid) return;
    if (which.current && which.last.crc_32 == section.crc_32) return;
    const std::optional<pmt> map = read_pmt(section);
    if (!map) return;

    const bool was_current = which.current;
    const kept_map before = std::move(which.last);
    kept_count -= before.streams.size() + before.ca_systems.size();
    which.last = keep(*map, section.crc_32);
    which.ever_mapped = which.current = map_came = true;
    for (const auto &[pid, use] : which.last.names) directory.add(pid, use);
    if (was_current) {
        unname(before);
        leave(*index, before);
    }
    mark_streams(before);
    enter(*index);
    mark_streams(which.last);
    mark(before.pcr_pid);
    mark(which.last.pcr_pid);
}

bool program_map::is_current_map(const table_section &section) const
{
    if (section.header.table_id != pmt_table_id || !is_long(section)) return false;
    const std::optional<uint16_t> index = known_index(section.header.table_id_extension);
    if (!index) return false;
    const program &which = programs[*index];
    return which.current && which.pmt_pid == section.pid && which.last.crc_32 == section.crc_32;
}

program_map::kept_map program_map::keep(const pmt &map, uint32_t crc_32)
{
    kept_map kept;
    kept.crc_32 = crc_32;
    kept.pcr_pid = map.PCR_PID;
    if (map.PCR_PID != no_pcr_pid) kept.names.emplace_back(map.PCR_PID, pid_use::clock);

    std::set<std::pair<uint16_t, uint16_t>> systems;
    const auto keep_systems = [&](byte_range loop) {
        for (const ca_descriptor &ca : read_ca_descriptors(loop)) {
            had_ca_descriptor = true;
            if (!systems.emplace(ca.CA_system_ID, ca.CA_PID).second) continue;
            if (kept_count == mapped_stream_limit) {
                ++not_kept;
                continue;
            }
            ++kept_count;
            kept.ca_systems.push_back({ca.CA_system_ID, ca.CA_PID});
            kept.names.emplace_back(ca.CA_PID, pid_use::conditional_access);
        }
    };
    keep_systems(map.program_info);
    const bool blu_ray_program = is_registered(map.program_info, "HDMV");
    for (const pmt_entry &stream : map.streams) {
        keep_systems(stream.ES_info);
        if (kept_count == mapped_stream_limit) {
            ++not_kept;
            continue;
        }
        ++kept_count;
        const stream_nature nature = nature_of(stream, blu_ray_program);
        kept.streams.push_back(
            {stream.elementary_PID, stream.stream_type, nature.still_pictures, nature.kind});
        const bool private_sections = stream.stream_type == private_sections_stream_type;
        kept.names.emplace_back(stream.elementary_PID,
                                private_sections ? pid_use::sections : pid_use::stream);
        if (nature.splices) kept.names.emplace_back(stream.elementary_PID, pid_use::splices);
    }
    return kept;
}

void program_map::enter(uint16_t index)
{
    const std::vector<kept_stream> &streams = programs[index].last.streams;
    for (size_t i = 0; i < streams.size(); ++i) {
        std::vector<pid_listing> &listed_by = listings[streams[i].pid];
        // Of a PID that the program lists twice the first counts.
        if (listed_by.empty() || listed_by.back().program != index)
            listed_by.push_back({index, static_cast<uint16_t>(i)});
        shared[streams[i].pid] = listed_by.size() > 1;
    }
}

void program_map::leave(uint16_t index, const kept_map &map)
{
    for (const kept_stream &stream : map.streams) {
        std::vector<pid_listing> &listed_by = listings[stream.pid];
        const auto place = std::find_if(listed_by.begin(), listed_by.end(),
                                        [index](const pid_listing &one) { return one.program == index; });
        if (place == listed_by.end()) continue;
        *place = listed_by.back();
        listed_by.pop_back();
        if (listed_by.size() < listed_by.capacity() / 4) listed_by.shrink_to_fit();
        shared[stream.pid] = listed_by.size() > 1;
    }
}

void program_map::unname(const kept_map &map)
{
    for (const auto &[pid, use] : map.names) directory.remove(pid, use);
}

void program_map::mark(uint16_t pid)
{
    if (!is_marked[pid]) marked.push_back(pid);
    is_marked[pid] = true;
}

void program_map::mark_streams(const kept_map &map, bool shared_only)
{
    for (const kept_stream &stream : map.streams)
        if (!shared_only || shared[stream.pid]) mark(stream.pid);
}

void program_map::settle_roles()
{
    changed.clear();
    for (const uint16_t index : moved) {
        // Of what only took another place, the streams that no other program lists are the same.
        mark_streams(programs[index].last, programs[index].current);
        programs[index].moved = false;
    }
    moved.clear();
    for (const uint16_t pid : marked) {
        const stream_role role = role_now(pid);
        const bool is_clock = is_program_clock(pid);
        if (!are_equal(role, roles[pid]) || is_clock != was_clock[pid]) changed.push_back(pid);
        roles[pid] = role;
        was_clock[pid] = is_clock;
        is_marked[pid] = false;
    }
    marked.clear();
}

stream_role program_map::role_now(uint16_t pid) const
{
    const std::vector<pid_listing> &listed_by = listings[pid];
    if (listed_by.empty()) return {};
    const auto first = std::min_element(listed_by.begin(), listed_by.end(),
                                        [this](const pid_listing &a, const pid_listing &b) {
                                            return first_places[a.program] < first_places[b.program];
                                        });
    const program &which = programs[first->program];
    const kept_stream &stream = which.last.streams[first->stream];
    stream_role role{stream.kind, stream.still_pictures, std::nullopt, which.number};
    if (which.last.pcr_pid != no_pcr_pid) role.pcr_pid = which.last.pcr_pid;
    return role;
}

uint16_t program_map::program_index(uint16_t number)
{
    uint32_t &index = index_of[number];
    if (index == 0) {
        programs.emplace_back();
        programs.back().number = number;
        first_places.push_back(0);
        index = static_cast<uint32_t>(programs.size());
    }
    return static_cast<uint16_t>(index - 1);
}

/// The place of a program that a PAT has named.
std::optional<uint16_t> program_map::known_index(uint16_t number) const
{
    if (index_of[number] == 0) return std::nullopt;
    return static_cast<uint16_t>(index_of[number] - 1);
}

std::vector<program_facts> program_map::facts() const
{
    std::vector<program_facts> all;
    all.reserve(programs.size());
    for (const program &which : programs) {
        program_facts facts;
        facts.number = which.number;
        facts.pmt_pid = which.pmt_pid;
        if (which.ever_mapped) facts.pcr_pid = which.last.pcr_pid;
        facts.ca_systems = which.last.ca_systems;
        for (const kept_stream &stream : which.last.streams) {
            program_stream entry;
            entry.pid = stream.pid;
            entry.stream_type = stream.stream_type;
            facts.streams.push_back(std::move(entry));
        }
        all.push_back(std::move(facts));
    }
    return all;
}
