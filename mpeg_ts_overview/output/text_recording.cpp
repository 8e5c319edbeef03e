#include "mpeg_ts_overview/output/figures.h"
#include "mpeg_ts_overview/output/terminal_text.h"
#include "mpeg_ts_overview/output/text_parts.h"

#include <fmt/format.h>

namespace {

constexpr size_t path_columns = 60;

/// The end of a path names the file: of a long one the beginning is cut.
std::string path_text(const std::string &path)
{
    std::string shown = without_controls(path);
    if (columns_of(shown) <= path_columns) return shown;
    do {
        size_t character = 1;
        while (character < shown.size() && (static_cast<unsigned char>(shown[character]) & 0xC0) == 0x80)
            ++character;
        shown.erase(0, character);
    } while (columns_of(shown) > path_columns - 3);
    return shown.insert(0, "...");
}

std::string time_base_text(const recording_facts &recording)
{
    switch (recording.time_base) {
    case time_base_kind::pcr:
        return recording.clock_pid ? fmt::format("time by PCR of 0x{:04X}", *recording.clock_pid)
                                   : "time by PCR";
    case time_base_kind::arrival:
        return "time by arrival";
    case time_base_kind::bitrate:
        return "time by bitrate";
    case time_base_kind::none:
        break;
    }
    return "no times";
}

} // namespace

std::string text_of_recording(const overview &found, bool color)
{
    const recording_facts &recording = found.recording;
    const std::string path = path_text(recording.path);
    std::vector<std::string> items = {path, size_text(recording.bytes)};
    if (recording.duration_ticks) items.push_back(duration_text(*recording.duration_ticks));
    if (const auto rate = found.rates.whole.mean_bps)
        items.push_back(
            fmt::format("{} {}", rate_text(*rate), recording.constant_bitrate ? "constant" : "variable"));
    items.push_back(fmt::format("{}-byte packets", recording.packet_size));
    items.push_back(found.standard);
    items.push_back(time_base_text(recording));
    const std::string text = wrapped("", items, "   ", 2);
    return color ? colored(text, 0, path.size(), "1") : text;
}
