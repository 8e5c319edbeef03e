#include "mpeg_ts_overview/output/page.h"

#include "mpeg_ts_overview/output/json_parts.h"
#include "mpeg_ts_overview/output/page_data.h"
#include "mpeg_ts_overview/output/page_rates.h"
#include "mpeg_ts_overview/output/page_template.h"

#include <fmt/format.h>

#include <algorithm>

namespace {

const auto row_of = [](const auto &row) { return json_of(row); };

/// Series are as short as a plot can show them: 3 decimals, and windows as columns.
ordered_json pcr_row(const pcr_facts &facts, bool with_series)
{
    ordered_json value = json_of(facts);
    if (!with_series) {
        value["residual_series"] = nullptr;
        value["interval_series"] = nullptr;
        return value;
    }
    ordered_json columns;
    for (const char *name : {"t_s", "min", "max"})
        columns[name] =
            json_list(value["residual_series"], [&](const ordered_json &row) { return row[name]; });
    value["residual_series"] = columns;
    round_numbers(value["residual_series"]);
    round_numbers(value["interval_series"]);
    return value;
}

ordered_json time_stamp_row(const time_stamp_facts &facts, bool with_series)
{
    ordered_json value = json_of(facts);
    if (!with_series) value["margin_series"] = nullptr;
    round_numbers(value["margin_series"]);
    return value;
}

/// The rows, with their series where these fit into bytes; the others without.
template <class Row, class Make>
void put_with_series(page_lists &lists, const char *name, const char *what, const std::vector<Row> &rows,
                     size_t bytes_without, size_t bytes, const Make &make)
{
    const auto with_series = [&](const Row &row) { return make(row, true); };
    size_t left = bytes + lists.unused_bytes();
    const size_t all = std::min(rows.size(), page_series_limit);
    const size_t count = rows_within(std::span(rows).first(all), left, with_series);
    const Row *const end = rows.data() + count;
    lists.put(name, what, rows, bytes_without + bytes, [&](const Row &row) { return make(row, &row < end); });
    if (count < rows.size())
        lists.note(fmt::format("{} over time: {} PIDs of {} have their series", what, count, rows.size()));
}

/// Blanks at the ends of lines are not seen.
ordered_json teletext_row(const teletext_page &page)
{
    ordered_json value = json_of(page);
    for (ordered_json &row : value["rows"]) {
        std::string &text = row.get_ref<std::string &>();
        text.erase(text.find_last_not_of(' ') + 1);
    }
    return value;
}

/// Nothing for what is not known, nor what the page does not show: there are many of them.
ordered_json event_row(const guide_event *event)
{
    const ordered_json all = json_of(*event);
    ordered_json value;
    for (const auto &[name, member] : all.items())
        if (!member.is_null() && name != "event_id") value[name] = member;
    return value;
}

/// What is on comes before what the schedule says, for the case that not all of it has room.
std::vector<const guide_event *> by_use(const std::vector<guide_event> &events)
{
    std::vector<const guide_event *> sorted;
    sorted.reserve(events.size());
    for (const guide_event &event : events) sorted.push_back(&event);
    std::stable_partition(sorted.begin(), sorted.end(), [](const guide_event *event) {
        const std::string_view source = event->source;
        return source == "present" || source == "following" || event->present_ticks;
    });
    return sorted;
}

/// Lists that are rarely long; what they leave those behind them take.
void put_short_lists(json_stream &out, page_lists &lists, const overview &found)
{
    const transcript_facts &transcript = found.transcript;
    lists.put("programs", "programs", found.programs, page_budget::programs, row_of);
    lists.put("pids", "PIDs", found.pids, page_budget::pids, row_of);
    put_page_rates(out, lists, found);
    lists.put("breaks", "breaks of time", found.breaks.kept, page_budget::breaks, row_of);
    lists.put("checks", "checks", found.checks, page_budget::checks, row_of);
    lists.put("faults", "groups of faults", transcript.faults, page_budget::faults, row_of);
    lists.put_at_most("transcript", "sections of the transcript", transcript.entries, page_budget::transcript,
                      row_of);
}

void put_long_lists(json_stream &out, page_lists &lists, const overview &found)
{
    put_with_series(lists, "pcr", "PCRs", found.pcr, page_budget::pcr, page_budget::pcr_series, pcr_row);
    put_with_series(lists, "time_stamps", "time stamps", found.time_stamps, page_budget::time_stamps,
                    page_budget::time_stamp_series, time_stamp_row);
    lists.put("cues", "cues", found.cues.cues, page_budget::cues, row_of);
    lists.put("teletext", "teletext pages", found.teletext.pages, page_budget::teletext, teletext_row);
    out.open_object("tables");
    lists.put("rows", "tables", found.tables.rows, page_budget::tables, row_of);
    out.close_object();
    out.open_object("guide");
    out.member("others", found.guide.events_of_others);
    lists.put("events", "events of the guide", by_use(found.guide.events), page_budget::guide, event_row);
    out.close_object();
}

/// The value with texts that are not too long.
ordered_json shortened(ordered_json value)
{
    cut_texts(value);
    return value;
}

bool put_data(const overview &found, const output_sink &write)
{
    const output_sink write_escaped = [&](std::string_view piece) { return write(escaped_for_page(piece)); };
    json_stream out(write_escaped);
    page_lists lists(out);
    out.member("recording", shortened(json_of_recording(found)));
    out.member("transport_stream", shortened(json_of(found.transport_stream)));
    out.member("clock", json_of(found.clock));
    put_short_lists(out, lists, found);
    put_long_lists(out, lists, found);
    out.list("limits_reached", found.limits_reached, row_of);
    std::vector<std::string> cuts = lists.notes();
    if (!found.transcript.note.empty()) cuts.push_back("transcript: " + found.transcript.note);
    out.member("cuts", cuts);
    out.member("all_rows", lists.all_rows());
    return out.end();
}

bool put_pieces(std::span<const std::string_view> pieces, const output_sink &write)
{
    return std::all_of(pieces.begin(), pieces.end(), write);
}

} // namespace

bool write_page(const overview &found, const output_sink &write)
{
    return put_pieces(page_before_data(), write) && put_data(found, write) &&
           put_pieces(page_behind_data(), write);
}
