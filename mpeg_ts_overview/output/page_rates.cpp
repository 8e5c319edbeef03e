#include "mpeg_ts_overview/output/page_rates.h"

#include "mpeg12_ts/packet.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace {

using pid_rows = std::vector<pid_rate_facts>;

ordered_json json_of_series(const std::vector<uint64_t> &series)
{
    return series.empty() ? ordered_json(nullptr) : ordered_json(series);
}

ordered_json json_of_extremes(const rate_facts &rate)
{
    return {
        {"mean_bps", json_value(rate.mean_bps)},
        {"min_bps",  json_value(rate.min_bps) },
        {"max_bps",  json_value(rate.max_bps) }
    };
}

/// The PIDs of the greatest mean rates that have a series, null packets aside.
std::vector<const pid_rate_facts *> pids_with_series(const pid_rows &pids)
{
    std::vector<const pid_rate_facts *> kept;
    for (const pid_rate_facts &row : pids)
        if (!row.rate.series_bps.empty() && row.pid != mpeg_ts_padding_pid) kept.push_back(&row);
    std::stable_sort(kept.begin(), kept.end(), [](const pid_rate_facts *a, const pid_rate_facts *b) {
        return a->rate.mean_bps.value_or(0) > b->rate.mean_bps.value_or(0);
    });
    kept.resize(std::min(kept.size(), page_series_limit));
    return kept;
}

/// A PID belongs to the first program that names it.
std::map<uint16_t, size_t> programs_of_pids(const std::vector<program_facts> &programs)
{
    std::map<uint16_t, size_t> owners;
    for (size_t number = 0; number < programs.size(); ++number) {
        const program_facts &program = programs[number];
        for (const program_stream &stream : program.streams) owners.emplace(stream.pid, number);
        if (program.pcr_pid) owners.emplace(*program.pcr_pid, number);
        owners.emplace(program.pmt_pid, number);
    }
    owners.erase(mpeg_ts_padding_pid);
    return owners;
}

struct program_series {
    size_t program = 0; ///< its place among the programs
    std::vector<uint64_t> bps;
    uint64_t sum = 0;
};

/// The series of the programs with the greatest rates, in the order of the programs.
std::vector<program_series> series_of_programs(const overview &found)
{
    const std::map<uint16_t, size_t> owners = programs_of_pids(found.programs);
    std::map<size_t, program_series> sums;
    for (const pid_rate_facts &row : found.rates.pids) {
        const auto owner = owners.find(row.pid);
        if (owner == owners.end() || row.rate.series_bps.empty()) continue;
        program_series &series = sums[owner->second];
        series.program = owner->second;
        series.bps.resize(std::max(series.bps.size(), row.rate.series_bps.size()));
        for (size_t at = 0; at < row.rate.series_bps.size(); ++at) {
            series.bps[at] += row.rate.series_bps[at];
            series.sum += row.rate.series_bps[at];
        }
    }
    std::vector<program_series> all;
    all.reserve(sums.size());
    for (auto &[number, series] : sums) all.push_back(std::move(series));
    std::stable_sort(all.begin(), all.end(),
                     [](const program_series &a, const program_series &b) { return a.sum > b.sum; });
    all.resize(std::min(all.size(), page_series_limit));
    return all;
}

void put_series(page_lists &lists, const overview &found)
{
    const std::vector<program_series> programs = series_of_programs(found);
    const auto program_row = [&](const program_series &series) {
        return ordered_json{
            {"number", found.programs[series.program].number},
            {"series", series.bps                           }
        };
    };
    lists.put("programs", "rates of programs over time", programs, page_budget::program_series, program_row);

    const std::vector<const pid_rate_facts *> pids = pids_with_series(found.rates.pids);
    const auto pid_row = [](const pid_rate_facts *row) {
        return ordered_json{
            {"pid",    row->pid            },
            {"series", row->rate.series_bps}
        };
    };
    lists.put("pid_series", "rates of PIDs over time", pids, page_budget::pid_series, pid_row);
    if (const size_t all = found.rates.pids.size(); !pids.empty() && all > page_series_limit + 1)
        lists.note(fmt::format("rates over time: of {} PIDs the {} with the most, the others are one", all,
                               pids.size()));
}

} // namespace

void put_page_rates(json_stream &out, page_lists &lists, const overview &found)
{
    const rates_facts &rates = found.rates;
    const bool timed = rates.bucket_ticks > 0;
    ordered_json whole = json_of_extremes(rates.whole);
    whole["series"] = json_of_series(rates.whole.series_bps);
    ordered_json nulls;
    for (const pid_rate_facts &row : rates.pids)
        if (row.pid == mpeg_ts_padding_pid) nulls = json_of_series(row.rate.series_bps);

    out.open_object("rates");
    out.member("bucket_s", timed ? ordered_json(seconds_of(rates.bucket_ticks)) : ordered_json(nullptr));
    out.member("whole", whole);
    out.member("null_series", nulls);
    put_series(lists, found);
    lists.put("pids", "rates of PIDs", rates.pids, page_budget::pid_rates, [](const pid_rate_facts &row) {
        ordered_json value = json_of_extremes(row.rate);
        value["pid"] = row.pid;
        return value;
    });
    out.close_object();
}
