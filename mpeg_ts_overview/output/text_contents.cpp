#include "mpeg_ts_overview/output/figures.h"
#include "mpeg_ts_overview/output/terminal_text.h"
#include "mpeg_ts_overview/output/text_parts.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace {

constexpr double ticks_per_millisecond = static_cast<double>(ticks_per_second) / 1000;

double mean_ms(const extent &ticks)
{
    return static_cast<double>(ticks.sum) / static_cast<double>(ticks.count) / ticks_per_millisecond;
}

void join(extent *whole, const extent &part)
{
    if (part.count == 0) return;
    whole->min = whole->count == 0 ? part.min : std::min(whole->min, part.min);
    whole->max = whole->count == 0 ? part.max : std::max(whole->max, part.max);
    whole->sum += part.sum;
    whole->count += part.count;
}

/// "PAT 100 ms": every table by its name, with its mean interval where there is one.
std::vector<std::string> table_texts(const std::vector<table_facts> &rows)
{
    std::vector<std::pair<std::string, extent>> tables;
    for (const table_facts &row : rows) {
        auto table = std::find_if(tables.begin(), tables.end(),
                                  [&](const auto &each) { return each.first == row.name; });
        if (table == tables.end()) table = tables.insert(tables.end(), {row.name, {}});
        join(&table->second, row.interval_ticks);
    }
    std::vector<std::string> texts;
    for (const auto &[name, interval] : tables) {
        texts.push_back(without_controls(name));
        if (interval.count > 0) texts.back() += " " + interval_text(mean_ms(interval));
    }
    return texts;
}

/// "PCR 30 ms (max 41)": both in one unit.
std::string pcr_text(const std::vector<pcr_facts> &pcr)
{
    extent interval;
    for (const pcr_facts &facts : pcr) join(&interval, facts.interval_ticks);
    if (interval.count == 0) return "";
    const std::string mean = interval_text(mean_ms(interval));
    const double longest_ms = static_cast<double>(interval.max) / ticks_per_millisecond;
    if (!mean.ends_with(" ms")) return fmt::format("PCR {} (max {:.3g})", mean, longest_ms / 1000);
    return fmt::format("PCR {} (max {:.0f})", mean, longest_ms);
}

/// "2 cues", "312 events", "87 teletext pages"
std::vector<std::string> counts_texts(const overview &found)
{
    std::vector<std::string> texts;
    const auto add = [&](uint64_t count, const char *one, const char *more) {
        if (count != 0) texts.push_back(count_text(count, one, more));
    };
    add(found.cues.cues.size() + found.cues.not_kept, "cue", "cues");
    add(found.guide.events.size() + found.guide.not_kept, "event", "events");
    add(found.teletext.pages.size() + found.teletext.not_kept, "teletext page", "teletext pages");
    add(found.breaks.kept.size() + found.breaks.not_kept, "time break", "time breaks");
    uint64_t faults = found.transcript.faults_not_kept;
    for (const fault_group &group : found.transcript.faults) faults += group.count;
    add(faults, "fault in tables", "faults in tables");
    return texts;
}

/// The items, joined by commas, behind first; nothing when there are none.
std::string listed(const std::string &first, const std::vector<std::string> &items)
{
    return items.empty() ? "" : fmt::format("{}{}", first, fmt::join(items, ", "));
}

/// Texts that are not empty, on one line.
std::string side_by_side(const std::vector<std::string> &texts)
{
    std::string line;
    for (const std::string &text : texts) {
        if (text.empty()) continue;
        line += line.empty() ? "  " : "      ";
        line += text;
    }
    return line;
}

std::string limits_text(const overview &found)
{
    std::vector<std::string> items;
    for (const limit_reached &limit : found.limits_reached)
        items.push_back(
            fmt::format("{} {} (limit {})", without_controls(limit.what), limit.dropped, limit.limit));
    std::string text;
    if (!items.empty()) text = wrapped("  not kept: ", items, ", ", columns_of("  not kept: "));
    if (!found.transcript.note.empty())
        text += wrapped("  transcript: ", {without_controls(found.transcript.note)}, "",
                        columns_of("  transcript: "));
    return text;
}

} // namespace

std::string text_of_contents(const overview &found)
{
    const std::vector<std::string> tables = table_texts(found.tables.rows);
    const std::vector<std::string> counts = counts_texts(found);
    const std::string pcr = pcr_text(found.pcr);
    const std::string first = "  tables: ";

    std::string line = side_by_side({listed("tables: ", tables), pcr, listed("", counts)});
    std::string text;
    if (columns_of(line) > line_columns && !tables.empty()) {
        text = wrapped(first, tables, ", ", columns_of(first));
        line = side_by_side({pcr, listed("", counts)});
    }
    if (columns_of(line) > line_columns) {
        if (!pcr.empty()) text += side_by_side({pcr}) + "\n";
        line.clear();
        text += wrapped("  ", counts, ", ", 2);
    }
    if (!line.empty()) text += line + "\n";
    return text + limits_text(found);
}
