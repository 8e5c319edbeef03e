#include "mpeg_ts_overview/contents/cues.h"

#include "mpeg_ts_overview/contents/splice_info.h"
#include "mpeg_ts_overview/meters/clock_arithmetic.h"

#include <cstring>
#include <utility>

namespace {

constexpr uint8_t splice_info_table_id = 0xFC;

/// How long before pts_time the program's clock stands at the section, the nearer way.
std::optional<int64_t> pre_roll(const cue &message, const stream_role &role, const program_clocks &clocks)
{
    if (!message.pts_time || !role.pcr_pid) return std::nullopt;
    const std::optional<int64_t> clock = clocks.at(*role.pcr_pid, message.at);
    if (!clock) return std::nullopt;
    const auto splice = static_cast<int64_t>(*message.pts_time) * ticks_per_time_stamp;
    return nearest_difference(*clock, splice, pcr_cycle_ticks);
}

} // namespace

bool cue_list::known_section::operator<(const known_section &other) const
{
    if (pid != other.pid) return pid < other.pid;
    if (size != other.size) return size < other.size;
    return std::memcmp(start, other.start, size) < 0;
}

void cue_list::on_section(const table_section &section, const stream_role &role, const program_clocks &clocks)
{
    if (section.header.table_id != splice_info_table_id) return;
    const auto size = static_cast<size_t>(section.fence - section.start);
    const auto known = places.find({section.pid, section.start, size});

    if (known != places.end()) {
        ++facts.cues[known->second].count;
        return;
    }
    if (facts.cues.size() >= cue_limit) {
        ++facts.not_kept;
        return;
    }
    cue message = read_splice_info(section.start, section.fence);
    message.pid = section.pid;
    message.program = role.program;
    message.at = section.at;
    message.pre_roll_ticks = pre_roll(message, role, clocks);

    sections.emplace_back(section.start, section.fence);
    places.emplace(known_section{section.pid, sections.back().data(), size}, facts.cues.size());
    facts.cues.push_back(std::move(message));
}

cues_facts cue_list::finish()
{
    return std::move(facts);
}
