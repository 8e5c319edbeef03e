#include "mpeg_ts_overview/output/figures.h"
#include "mpeg_ts_overview/output/terminal_text.h"
#include "mpeg_ts_overview/output/text_parts.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <utility>

namespace {

constexpr size_t name_columns = 24;
constexpr size_t mark_position = 2; ///< of FAIL and ok in their lines

size_t pids_with(const std::vector<pid_facts> &pids, uint64_t pid_facts::*errors)
{
    return static_cast<size_t>(
        std::count_if(pids.begin(), pids.end(), [&](const pid_facts &facts) { return facts.*errors > 0; }));
}

/// "12 on 3 PIDs"; the PIDs are left out where only the first few violations are known in detail.
std::string where_text(const overview &found, const check_result &check)
{
    const violation_log &log = check.log;
    std::set<uint16_t> known;
    for (const violation &detail : log.details)
        if (detail.pid) known.insert(*detail.pid);

    size_t pids = log.count <= log.details.size() ? known.size() : 0;
    if (check.id == "1.4") pids = pids_with(found.pids, &pid_facts::continuity_errors);
    if (check.id == "2.1") pids = pids_with(found.pids, &pid_facts::transport_errors);
    if (pids == 0) return fmt::format("{}", log.count);
    if (pids == 1 && known.size() == 1) return fmt::format("{} on PID 0x{:04X}", log.count, *known.begin());
    return fmt::format("{} on {}", log.count, count_text(pids, "PID", "PIDs"));
}

/// With more digits than an interval elsewhere: a limit may have been passed by little.
std::string figure_text(double value, const std::string &unit)
{
    if (unit != "s") return fmt::format("{:.6g} {}", value, unit);
    return value < 1 ? fmt::format("{:.6g} ms", value * 1000) : fmt::format("{:.6g} s", value);
}

std::string fail_text(const overview &found, const check_result &check)
{
    const violation_log &log = check.log;
    std::vector<std::string> items = {where_text(found, check)};
    if (log.worst && !check.worst_unit.empty()) {
        std::string worst = "worst " + figure_text(*log.worst, check.worst_unit);
        if (check.limit) worst += fmt::format(" (limit {})", figure_text(*check.limit, check.worst_unit));
        items.push_back(worst);
    }
    if (log.count > 0 && log.first.ticks)
        items.push_back(
            fmt::format("first at {} (packet {})", clock_text(*log.first.ticks), log.first.packet));
    else if (log.count > 0)
        items.push_back(fmt::format("first at packet {}", log.first.packet));
    const std::string first = fmt::format("  FAIL  {:<4}  {:<{}}  ", check.id, check.name, name_columns);
    return wrapped(first, items, ", ", columns_of("  FAIL  ") + 6);
}

/// "3.1a, 3.5a (not a DVB stream)": ids by their reason, in order of first appearance; what no recording can
/// tell is last and without its reason.
std::vector<std::string> not_measured_texts(const std::vector<check_result> &checks)
{
    const std::string never = "needs the decoder model";
    std::vector<std::pair<std::string, std::vector<std::string>>> groups;
    for (const check_result &check : checks) {
        if (check.outcome != check_outcome::not_measured) continue;
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&](const auto &each) { return each.first == check.why; });
        if (group == groups.end()) group = groups.insert(groups.end(), {check.why, {}});
        group->second.push_back(check.id);
    }
    std::stable_partition(groups.begin(), groups.end(),
                          [&](const auto &group) { return group.first != never; });

    std::vector<std::string> items;
    for (const auto &[why, ids] : groups) {
        items.insert(items.end(), ids.begin(), ids.end());
        if (!why.empty() && why != never) items.back() += fmt::format(" ({})", why);
    }
    return items;
}

} // namespace

std::string text_of_checks(const overview &found, bool color)
{
    std::string text;
    size_t passed = 0;
    for (const check_result &check : found.checks) {
        if (check.outcome == check_outcome::pass) ++passed;
        if (check.outcome != check_outcome::fail) continue;
        const std::string line = fail_text(found, check);
        text += color ? colored(line, mark_position, 4, "1;31") : line;
    }
    if (found.checks.empty()) return text;

    std::string first = fmt::format("  ok    {}", count_text(passed, "check", "checks"));
    const std::vector<std::string> items = not_measured_texts(found.checks);
    if (!items.empty()) first += "       not measured: ";
    const std::string line = wrapped(first, items, ", ", columns_of("  ok    "));
    return text.append(color ? colored(line, mark_position, 2, "32") : line);
}
