#include "mpeg_ts_overview/contents/cues.h"

#include "mpeg_ts_overview/contents/splice_info.h"
#include "mpeg_ts_overview/meters/clock_arithmetic.h"

#include <algorithm>
#include <utility>

namespace {

constexpr uint8_t splice_info_table_id = 0xFC;

/// FNV-1a.
uint64_t hash_of(const table_section &section)
{
    uint64_t hash = 0xCBF29CE484222325 ^ section.pid;
    for (const uint8_t *p = section.start; p < section.fence; ++p) hash = (hash ^ *p) * 0x100000001B3;
    return hash;
}

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

cue *cue_list::known(uint64_t hash, const table_section &section)
{
    const auto [first, fence] = with_hash.equal_range(hash);
    for (auto candidate = first; candidate != fence; ++candidate) {
        cue &message = facts.cues[candidate->second];
        const section_bytes &bytes = sections[candidate->second];
        if (message.pid == section.pid &&
            std::equal(bytes.begin(), bytes.end(), section.start, section.fence))
            return &message;
    }
    return nullptr;
}

void cue_list::on_section(const table_section &section, const stream_role &role, const program_clocks &clocks)
{
    if (section.header.table_id != splice_info_table_id) return;
    const uint64_t hash = hash_of(section);

    if (cue *const repeated = known(hash, section)) {
        ++repeated->count;
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

    with_hash.emplace(hash, facts.cues.size());
    sections.emplace_back(section.start, section.fence);
    facts.cues.push_back(std::move(message));
}

cues_facts cue_list::finish()
{
    return std::move(facts);
}
