#include "mpeg_ts_overview/output/page_data.h"

#include "mpeg_ts_overview/output/json_line.h"

#include <fmt/format.h>

#include <cmath>

namespace {

bool begins_character(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

} // namespace

std::string escaped_for_page(std::string_view json)
{
    std::string escaped;
    escaped.reserve(json.size());
    for (size_t at = 0; at < json.size(); ++at) {
        const std::string_view next = json.substr(at, 3);
        if (json[at] == '<') {
            escaped += "\\u003c";
        } else if (next == "\xE2\x80\xA8" || next == "\xE2\x80\xA9") {
            escaped += next[2] == '\xA8' ? "\\u2028" : "\\u2029";
            at += 2;
        } else {
            escaped += json[at];
        }
    }
    return escaped;
}

std::string cut_text(const std::string &text, size_t limit)
{
    size_t characters = 0;
    size_t last = 0; // where the last character that may stay begins
    for (size_t at = 0; at < text.size(); ++at) {
        if (!begins_character(text[at])) continue;
        if (++characters == limit) last = at;
        if (characters > limit) return text.substr(0, last) + "\xE2\x80\xA6";
    }
    return text;
}

size_t cut_texts(ordered_json &value)
{
    if (value.is_string()) {
        std::string &text = value.get_ref<std::string &>();
        if (text.size() <= page_text_limit) return 0;
        std::string cut = cut_text(text, page_text_limit);
        if (cut == text) return 0;
        text = std::move(cut);
        return 1;
    }
    size_t cuts = 0;
    if (value.is_structured())
        for (ordered_json &each : value) cuts += cut_texts(each);
    return cuts;
}

void round_numbers(ordered_json &value)
{
    if (value.is_number_float())
        value = std::round(value.get<double>() * 1000) / 1000 + 0.0;
    else if (value.is_structured())
        for (ordered_json &each : value) round_numbers(each);
}

size_t page_bytes(const ordered_json &value)
{
    return escaped_for_page(json_line(value)).size() + 2;
}

void page_lists::note_rows(const char *what, size_t count, size_t all)
{
    note(fmt::format("{}: {} of {} are on this page", what, count, all));
    row_counts[what] = all;
}

std::vector<std::string> page_lists::notes() const
{
    std::vector<std::string> all = left_out;
    if (texts_cut > 0)
        all.push_back(
            fmt::format("texts of more than {} characters are cut: {}", page_text_limit, texts_cut));
    return all;
}
