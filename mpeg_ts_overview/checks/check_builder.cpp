#include "mpeg_ts_overview/checks/check_builder.h"

#include <algorithm>
#include <utility>

namespace {

/// Adds one log to another; the details stay in the order of packets.
void merge(violation_log &into, const violation_log &from)
{
    const auto is_before = [](const violation &a, const violation &b) { return a.at.packet < b.at.packet; };
    if (from.count == 0) return;
    if (into.count == 0 || from.first.packet < into.first.packet) into.first = from.first;
    if (into.count == 0 || from.last.packet >= into.last.packet) into.last = from.last;
    into.count += from.count;
    into.details.insert(into.details.end(), from.details.begin(), from.details.end());
    std::stable_sort(into.details.begin(), into.details.end(), is_before);
    if (into.details.size() > violation_detail_limit) into.details.resize(violation_detail_limit);
}

} // namespace

double in_seconds(int64_t ticks)
{
    return static_cast<double>(ticks) / static_cast<double>(ticks_per_second);
}

check_builder::check_builder(const check_sources &all, std::string id, int priority, std::string name)
    : sources(all)
{
    result.id = std::move(id);
    result.priority = priority;
    result.name = std::move(name);
}

void check_builder::set_limit(double value, const char *unit)
{
    result.limit = value;
    result.worst_unit = unit;
}

void check_builder::add_faults(const violation_log &log)
{
    merge(result.log, log);
}

void check_builder::add_unmeasured(const std::string &why)
{
    if (result.why.empty()) result.why = why;
}

void check_builder::add_intervals(const repetition_limit &limit)
{
    const bool sure = sources.sure_times_only();
    const repetition_findings &found = limit.findings(sure);
    add_faults(found.log);
    if (found.longest_ticks) show(in_seconds(*found.longest_ticks));
    if (!limit.is_measured(sure)) add_unmeasured("recording shorter than the limit");
}

void check_builder::add_table(const table_repetition &table, const std::string &name)
{
    if (table.came() || sources.whole_multiplex)
        add_intervals(table.limit(0));
    else
        add_unmeasured("no " + name + " in the recording");
}

void check_builder::show(std::optional<double> value)
{
    if (value) result.log.worst = std::max(*value, result.log.worst.value_or(*value));
}

check_result check_builder::finish() &&
{
    if (result.log.count > 0)
        result.outcome = check_outcome::fail;
    else if (result.why.empty())
        result.outcome = check_outcome::pass;
    if (result.outcome == check_outcome::not_measured)
        result.log.worst.reset();
    else
        result.why.clear();
    return std::move(result);
}
