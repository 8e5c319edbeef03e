// The data of the page: the rows of the JSON, reduced to what a page can hold.
#pragma once

#include "mpeg_ts_overview/output/json_stream.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// No text of the page has more characters.
constexpr size_t page_text_limit = 300;

/// The bytes that are kept for each list of the page; together with the page itself they are below 10 MB.
/// What a list leaves of them the next ones may take.
struct page_budget {
    static constexpr size_t programs = 400000;
    static constexpr size_t pids = 400000;
    static constexpr size_t pid_rates = 250000;
    static constexpr size_t program_series = 550000;
    static constexpr size_t pid_series = 550000;
    static constexpr size_t pcr = 150000;         ///< without the series
    static constexpr size_t pcr_series = 1200000; ///< with what else is known of their PIDs
    static constexpr size_t time_stamps = 150000;
    static constexpr size_t time_stamp_series = 800000;
    static constexpr size_t tables = 700000;
    static constexpr size_t breaks = 120000;
    static constexpr size_t checks = 300000; ///< more than all of them with all their places have
    static constexpr size_t cues = 350000;
    static constexpr size_t teletext = 700000;
    static constexpr size_t faults = 250000;
    static constexpr size_t transcript = 1 << 20;
    static constexpr size_t guide = 1400000;
};

/// PIDs, and programs, that have a series of rates; PIDs that have series of PCRs and of time stamps.
constexpr size_t page_series_limit = 64;

/// The JSON text as it may stand in HTML: every "<" as its escape, and the line ends that scripts do not
/// take.
std::string escaped_for_page(std::string_view json);

/// The text with at most that many characters, of UTF-8; the last is an ellipsis when something was cut.
std::string cut_text(const std::string &text, size_t limit);

/// Cuts every text in the value, at any depth. Returns how many were cut.
size_t cut_texts(ordered_json &value);

/// Rounds every number in the value to 3 decimals, at any depth.
void round_numbers(ordered_json &value);

/// The bytes of the value in the page, with the comma and the line end behind it.
size_t page_bytes(const ordered_json &value);

/// How many of the rows, as what row makes of each, fit into so many bytes. Takes the bytes that they use
/// off.
template <class Rows, class Row>
size_t rows_within(const Rows &rows, size_t &bytes, const Row &row)
{
    for (size_t count = 0; count < rows.size(); ++count) {
        ordered_json value = row(rows[count]);
        cut_texts(value);
        const size_t used = page_bytes(value);
        if (used > bytes) return count;
        bytes -= used;
    }
    return rows.size();
}

/// Puts out lists that end when they fill their budget, and notes what they leave out.
class page_lists {
public:
    explicit page_lists(json_stream &stream) : out(stream) {}

    /// The rows as what row makes of each, as many as the budget and what is left of those before take. what
    /// is said of those that are left out.
    template <class Rows, class Row>
    void put(std::string_view name, const char *what, const Rows &rows, size_t budget, const Row &row)
    {
        left_bytes += budget;
        const size_t count = rows_within(rows, left_bytes, row);
        put_first(count, name, what, rows, row);
    }

    /// As put, but never more than the budget.
    template <class Rows, class Row>
    void put_at_most(std::string_view name, const char *what, const Rows &rows, size_t budget, const Row &row)
    {
        const size_t count = rows_within(rows, budget, row);
        left_bytes += budget;
        put_first(count, name, what, rows, row);
    }

    /// Bytes that the lists so far left of their budgets.
    size_t unused_bytes() const { return left_bytes; }

    void note(const std::string &text) { left_out.push_back(text); }

    /// What was left out, and how many texts were cut.
    std::vector<std::string> notes() const;

    /// By what is in them, how many rows each list would have that has not all of them.
    const ordered_json &all_rows() const { return row_counts; }

private:
    template <class Rows, class Row>
    void put_first(size_t count, std::string_view name, const char *what, const Rows &rows, const Row &row)
    {
        out.list(name, std::span(rows).first(count), [&](const auto &each) {
            ordered_json value = row(each);
            texts_cut += cut_texts(value);
            return value;
        });
        if (count < rows.size()) note_rows(what, count, rows.size());
    }

    void note_rows(const char *what, size_t count, size_t all);

    json_stream &out;
    std::vector<std::string> left_out;
    ordered_json row_counts = ordered_json::object();
    size_t left_bytes = 0;
    size_t texts_cut = 0;
};
