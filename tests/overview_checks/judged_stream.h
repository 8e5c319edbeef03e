// A recording that is judged: tables at moments that a test chooses, and meters that a test may feed.
#pragma once

#include "tests/overview_tables/table_stream.h"

#include "mpeg_ts_overview/checks/checks.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

constexpr int64_t ms_ticks = ticks_per_second / 1000;

class judged_stream : public table_stream {
public:
    explicit judged_stream(const limits &values = {}, bool is_whole_multiplex = false)
        : table_stream(values, is_whole_multiplex), other_limits(values), whole_multiplex(is_whole_multiplex),
          absence(tables->times(), values.pid_absence_ticks.value_or(ticks_at(5))),
          pcr(tables->times(), 100 * ms_ticks, 500), time_stamps(clocks, tables->times(), 700 * ms_ticks)
    {
    }

    // What a chain of calls begins with goes on with what is judged.
    judged_stream &section(double seconds, unsigned number, const bytes &one)
    {
        table_stream::section(seconds, number, one);
        return *this;
    }
    judged_stream &every(double step, double from, double to, unsigned number, const bytes &one)
    {
        table_stream::every(step, from, to, number, one);
        return *this;
    }
    judged_stream &packets(double seconds, const stream_builder &built)
    {
        table_stream::packets(seconds, built);
        return *this;
    }
    judged_stream &see(double seconds)
    {
        table_stream::see(seconds);
        return *this;
    }
    judged_stream &time_break(double last, double first)
    {
        table_stream::time_break(last, first);
        return *this;
    }

    /// A PID that occurred from one time to another, and what its row says.
    pid_facts &pid(unsigned number, double from = 0, double to = 0)
    {
        pid_facts facts;
        facts.pid = static_cast<uint16_t>(number);
        facts.packets = 100;
        if (has_times) facts.first_ticks = ticks_at(from);
        if (has_times) facts.last_ticks = ticks_at(to);
        return found.pids.emplace_back(facts);
    }

    /// The recording ends then, and is judged.
    judged_stream &judge_at(double seconds)
    {
        for (const uint16_t number : seen) pid(number);
        finish(seconds);
        absence.finish(
            at(seconds), [this](uint16_t number) { return seen.count(number) != 0; }, whole_multiplex);
        if (has_times) found.recording.duration_ticks = ticks_at(seconds);
        end.at = at(seconds);
        found.pcr = pcr.finish(end, [](uint16_t) { return true; });
        found.time_stamps = time_stamps.finish(end, [](uint16_t) { return stream_role{}; });
        found.programs = tables->programs().facts();
        results = judge({faults, continuity, *tables, pcr, time_stamps, absence, found, end, other_limits,
                         whole_multiplex});
        return *this;
    }

    const check_result &row(const std::string &id) const
    {
        const auto is_it = [&](const check_result &result) { return result.id == id; };
        const auto place = std::find_if(results.begin(), results.end(), is_it);
        if (place == results.end()) throw std::out_of_range(id);
        return *place;
    }

    /// "pass", "fail 3", or why it was not measured.
    std::string verdict(const std::string &id) const
    {
        const check_result &result = row(id);
        switch (result.outcome) {
        case check_outcome::pass:
            return "pass";
        case check_outcome::fail:
            return "fail " + std::to_string(result.log.count);
        case check_outcome::not_measured:
            return result.why;
        }
        return "";
    }

    limits other_limits;
    bool whole_multiplex;
    transport_faults faults;
    continuity_meter continuity;
    absence_meter absence;
    pcr_meter pcr;
    program_clocks clocks;
    time_stamp_meter time_stamps;
    overview found;
    recording_end end;
    std::vector<check_result> results;
};

// Tables that most recordings here have.

inline const bytes &pat_of_one()
{
    static const bytes section = pat_section(1, {
                                                    {0, 0x10 },
                                                    {1, 0x100}
    });
    return section;
}

inline const bytes &pmt_of_one()
{
    static const bytes section = pmt_section(1, 0x101,
                                             {
    },
                                             {{0x02, 0x101, {}}, {0x03, 0x102, {}}});
    return section;
}

inline const bytes &nit_section()
{
    static const bytes section = long_section(0x40, 1, hex("F000 F000"));
    return section;
}

inline const bytes &tdt_section()
{
    static const bytes section = short_section(0x70, hex("C079124500"));
    return section;
}
