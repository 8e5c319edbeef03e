#include "mpeg_ts_overview/checks/check_rows.h"
#include "mpeg_ts_overview/tables/log_violation.h"
#include "mpeg_ts_overview/tables/standard_limits.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace {

constexpr int64_t longest_ticks = 500 * ticks_per_millisecond;
constexpr int64_t tolerance_divisor = 20; // 5 %
constexpr uint16_t last_reserved_pid = 0x1F;
constexpr uint16_t last_reserved_isdb_pid = 0x2F; // ARIB STD-B10
constexpr uint16_t first_psip_pid = 0x1FF0;       // A/65 4.2
constexpr uint16_t last_psip_pid = 0x1FFE;

bool needs_a_name(const check_sources &from, const pid_facts &facts)
{
    const std::string_view standard = from.tables.standard();
    if (facts.pid <= (standard == "ISDB" ? last_reserved_isdb_pid : last_reserved_pid)) return false;
    if (facts.pid == mpeg_ts_padding_pid) return false;
    if (standard == "ATSC" && facts.pid >= first_psip_pid && facts.pid <= last_psip_pid) return false;
    // The PID of a packet with a transport error may be any.
    if (facts.packets == facts.transport_errors) return false;
    return !from.tables.uses().ever_named(facts.pid);
}

/// The ticks from the PID's first packet to its last, as far as times are sure.
std::optional<int64_t> ticks_of(const check_sources &from, const pid_facts &facts)
{
    if (!facts.first_ticks || !facts.last_ticks) return std::nullopt;
    int64_t first = *facts.first_ticks;
    int64_t last = *facts.last_ticks;
    if (from.sure_times_only()) {
        const time_stretches &times = from.tables.times();
        if (!times.first_sure()) return std::nullopt;
        first = std::max(first, *times.first_sure()->ticks);
        last = std::min(last, *times.last_sure()->ticks);
    }
    return std::max<int64_t>(last - first, 0);
}

bool is_any_scrambled(const check_sources &from)
{
    return std::any_of(from.facts.pids.begin(), from.facts.pids.end(),
                       [](const pid_facts &facts) { return facts.scrambled > 0; });
}

bool has_program_without_map(const check_sources &from)
{
    return std::any_of(from.facts.programs.begin(), from.facts.programs.end(),
                       [](const program_facts &program) { return !program.pcr_pid; });
}

} // namespace

void look_at_unreferenced_pids(check_builder &row)
{
    const check_sources &from = row.from();
    row.set_limit(in_seconds(longest_ticks), "s");
    if (!from.has_times()) return;
    if (!from.tables.psi().had_pat()) return row.add_unmeasured("no PAT");
    if (has_program_without_map(from)) return row.add_unmeasured("program without PMT");
    if (is_any_scrambled(from) && !from.tables.had_cat())
        return row.add_unmeasured("scrambled without a CAT");

    if (from.tables.times().longest_ticks(from.sure_times_only()) < longest_ticks)
        return row.add_unmeasured("recording shorter than the limit");

    violation_log unnamed;
    for (const pid_facts &facts : from.facts.pids) {
        const std::optional<int64_t> ticks = ticks_of(from, facts);
        if (!ticks || !needs_a_name(from, facts)) continue;
        row.show(in_seconds(*ticks));
        if (*ticks <= longest_ticks + longest_ticks / tolerance_divisor) continue;
        moment first;
        first.packet = facts.first_packet;
        first.ticks = facts.first_ticks;
        log_violation(unnamed, first, facts.pid, [] { return "no table names the PID"; });
    }
    row.add_faults(unnamed);
}
