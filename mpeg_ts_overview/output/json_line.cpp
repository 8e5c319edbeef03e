#include "mpeg_ts_overview/output/json_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace {

void append(std::string &line, const ordered_json &value);

/// Whether the text stands for itself between quotes.
bool is_plain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
}

void append_text(std::string &line, const std::string &text)
{
    if (is_plain(text))
        line.append("\"").append(text).append("\"");
    else
        line += ordered_json(text).dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

void append_number(std::string &line, double number)
{
    if (!std::isfinite(number)) {
        line += "null";
        return;
    }
    const size_t start = line.size();
    fmt::format_to(std::back_inserter(line), "{}", number);
    if (line.find_first_of(".e", start) == std::string::npos) line += ".0";
}

void append_object(std::string &line, const ordered_json &object)
{
    char before = '{';
    for (const auto &[name, member] : object.items()) {
        line += before;
        append_text(line, name);
        line += ':';
        append(line, member);
        before = ',';
    }
    line += object.empty() ? "{}" : "}";
}

void append_list(std::string &line, const ordered_json &list)
{
    char before = '[';
    for (const ordered_json &each : list) {
        line += before;
        append(line, each);
        before = ',';
    }
    line += list.empty() ? "[]" : "]";
}

void append(std::string &line, const ordered_json &value)
{
    if (value.is_object())
        append_object(line, value);
    else if (value.is_array())
        append_list(line, value);
    else if (value.is_number_float())
        append_number(line, value.get<double>());
    else if (value.is_string())
        append_text(line, value.get_ref<const std::string &>());
    else if (value.is_number_unsigned())
        fmt::format_to(std::back_inserter(line), "{}", value.get<uint64_t>());
    else
        line += value.dump();
}

} // namespace

std::string json_line(const ordered_json &value)
{
    std::string line;
    append(line, value);
    return line;
}
