// A whole run of the overview: options from the first four bytes, the stream behind them. What is found adds
// up, does not depend on how it is read, and is written as JSON, summary and page that hold what they
// promise.
#include "fuzz/overview_promises.h"
#include "fuzz/support.h"
#include "fuzz/text_promises.h"

#include "mpeg_ts_overview/driver/overview_of.h"
#include "mpeg_ts_overview/output/json_values.h"
#include "mpeg_ts_overview/output/page.h"
#include "mpeg_ts_overview/output/page_template.h"
#include "mpeg_ts_overview/output/terminal_text.h"
#include "mpeg_ts_overview/output/text.h"

#include <algorithm>
#include <cstring>

namespace {

using byte_list = std::vector<uint8_t>;

constexpr unsigned packet_with_parity_size = 204;
constexpr size_t page_limit = 10000000;

struct run_options {
    overview_request request;
    unsigned packet_size = 188;
    size_t leading_bytes = 0;
    size_t lost_bytes = 0; ///< in the middle
};

/// The size of packets lies where the mutator looks for it: see fuzz_settings.
run_options options_of(fuzz_input &in)
{
    constexpr time_base_kind bases[] = {time_base_kind::pcr, time_base_kind::arrival, time_base_kind::bitrate,
                                        time_base_kind::none};
    constexpr uint32_t countries[] = {0, 0x3200, 0x32FF, 0x00000028};
    constexpr unsigned packet_sizes[] = {188, 188, 192, packet_with_parity_size};
    run_options options;
    overview_request &request = options.request;

    const unsigned modes = in.byte();
    if ((modes & 1) != 0) request.time_base = bases[modes >> 1 & 3];
    request.whole_multiplex = (modes & 8) != 0;
    if ((modes & 0x30) > 0x10) request.atsc_mode = (modes & 0x30) == 0x30;
    request.assume_country = countries[modes >> 6];

    const unsigned shape = in.byte();
    options.packet_size = packet_sizes[shape >> 6];
    options.leading_bytes = (shape & 7) * 31;
    options.lost_bytes = (shape >> 3 & 7) * 53;

    const unsigned rates = in.byte();
    request.bitrate_bps = uint64_t{1000} << (rates >> 4 << 1);
    if ((rates & 1) != 0) request.packet_size = options.packet_size;
    if ((rates & 2) != 0) request.other_limits.pat_interval_ticks = (rates & 0xF0) * 10000;
    if ((rates & 4) != 0) request.other_limits.eit_schedule_ticks = (rates & 0xF0) * 100000;
    if ((rates & 8) != 0) request.other_limits.pcr_accuracy_ns = rates;
    return options;
}

byte_list recording_of(const run_options &options, fuzz_input stream)
{
    byte_list recording(options.leading_bytes, 0x12);
    if (options.packet_size == packet_with_parity_size) {
        while (stream.left() > 0) {
            const fuzz_input packet = stream.part(mpeg_ts_packet_size);
            recording.insert(recording.end(), packet.p, packet.fence);
            recording.insert(recording.end(), packet_with_parity_size - mpeg_ts_packet_size, 0x5A);
        }
    } else {
        recording.insert(recording.end(), stream.p, stream.fence);
    }
    const auto middle = recording.begin() + static_cast<ptrdiff_t>(recording.size() / 2);
    const size_t lost = std::min(options.lost_bytes, recording.size() / 2);
    recording.erase(middle, middle + static_cast<ptrdiff_t>(lost));
    return recording;
}

std::optional<overview> found_in(const byte_list &recording, const overview_request &request, size_t piece)
{
    const byte_source source = [&recording, piece, at = size_t{0}](uint8_t *to, size_t size) mutable {
        const size_t given = std::min({size, piece, recording.size() - at});
        if (given > 0) std::memcpy(to, recording.data() + at, given);
        at += given;
        return static_cast<ptrdiff_t>(given);
    };
    overview found;
    if (overview_of(source, request, found) != reading_outcome::done) return std::nullopt;
    return found;
}

/// What the verdict counts is what was counted.
void check_sums(const overview &found)
{
    uint64_t continuity_errors = 0;
    uint64_t transport_errors = 0;
    for (const pid_facts &row : found.pids) {
        continuity_errors += row.continuity_errors;
        transport_errors += row.transport_errors;
    }
    uint64_t changed = 0;
    for (const table_facts &row : found.tables.rows) changed += row.changed_under_same_version;
    for (const check_result &row : found.checks) {
        if (row.id == "1.1") fuzz_promise(row.log.count == found.recording.sync_losses);
        if (row.id == "1.2") fuzz_promise(row.log.count == found.recording.sync_byte_errors);
        if (row.id == "1.4") fuzz_promise(row.log.count == continuity_errors);
        if (row.id == "2.1") fuzz_promise(row.log.count == transport_errors);
        if (row.id == "X.2") fuzz_promise(row.log.count == changed);
    }
}

/// Without the escape sequences of colours.
std::string without_colors(const std::string &text)
{
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\033') {
            plain += text[i];
            continue;
        }
        fuzz_promise(text[i + 1] == '[');
        i = text.find('m', i);
        fuzz_promise(i != std::string::npos);
    }
    return plain;
}

void check_summary(const overview &found)
{
    const std::string text = summary_text(found, false);
    promise_no_controls(text);
    fuzz_promise(!text.empty() && text.back() == '\n');
    for (size_t at = 0; at < text.size(); at = text.find('\n', at) + 1)
        fuzz_promise(columns_of(text.substr(at, text.find('\n', at) - at)) <= line_columns);
    fuzz_promise(without_colors(summary_text(found, true)) == text);
}

/// Takes the pieces off the front or the back of the page, where they must stand.
void take_off(std::string_view &page, std::span<const std::string_view> pieces, bool from_front)
{
    std::string expected;
    for (const std::string_view piece : pieces) expected += piece;
    fuzz_promise(from_front ? page.starts_with(expected) : page.ends_with(expected));
    if (from_front)
        page.remove_prefix(expected.size());
    else
        page.remove_suffix(expected.size());
}

void check_page(const overview &found, const ordered_json &json)
{
    std::string text;
    const bool written = write_page(found, [&](std::string_view piece) {
        text += piece;
        return true;
    });
    fuzz_promise(written && text.size() < page_limit);

    std::string_view data = text;
    take_off(data, page_before_data(), true);
    take_off(data, page_behind_data(), false);
    fuzz_promise(data.find('<') == std::string_view::npos);
    const ordered_json of_page = ordered_json::parse(data);
    for (const char *same : {"recording", "transport_stream", "clock"})
        fuzz_promise(of_page.at(same) == json.at(same));
    for (const char *list : {"programs", "pids", "pcr", "time_stamps", "breaks", "checks", "cues", "teletext",
                             "faults", "transcript"})
        fuzz_promise(of_page.at(list).size() <= json.at(list).size());
    const bool is_all_there = of_page.at("cuts").empty();
    if (is_all_there) fuzz_promise(of_page.at("pids") == json.at("pids"));
    if (is_all_there) fuzz_promise(of_page.at("checks") == json.at("checks"));
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    run_options options = options_of(in);
    const unsigned reading = in.byte();
    const byte_list recording = recording_of(options, in);

    const std::optional<overview> found = found_in(recording, options.request, SIZE_MAX);
    const std::string json = found ? json_of(*found) : "";
    if (found) {
        promise_measurements(*found);
        promise_contents(*found);
        promise_checks(*found);
        check_sums(*found);
        const ordered_json parsed = promised_json(json);
        if ((reading & 1) == 0) check_summary(*found);
        if ((reading & 2) == 0) check_page(*found, parsed);
    }
    if ((reading & 0xC) != 0xC) return 0;
    options.request.block_bytes = least_block_size + reading;
    const std::optional<overview> again = found_in(recording, options.request, 1 + reading * 7);
    fuzz_promise((again ? json_of(*again) : "") == json);
    return 0;
}
