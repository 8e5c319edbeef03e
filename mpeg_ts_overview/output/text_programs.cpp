#include "mpeg_ts_overview/output/figures.h"
#include "mpeg_ts_overview/output/terminal_text.h"
#include "mpeg_ts_overview/output/text_parts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace {

constexpr uint16_t null_pid = 0x1FFF;
constexpr size_t service_columns = 37;
constexpr size_t kind_columns = 18;
constexpr size_t rate_columns = 11;
constexpr size_t most_others = 8;

/// Where the columns of the streams are, so that the longest texts fit and the rest is for the bars.
struct stream_layout {
    size_t description = 25;
    size_t language = 3;
    size_t rate = rate_columns;
    size_t bar = 0;
    uint64_t most_bps = 0; ///< of any stream: its bar is full
};

std::string description_of(const program_stream &stream)
{
    std::string text = stream.name;
    if (!stream.details.empty()) text.append(" ").append(stream.details);
    // Nearly all MPEG-2 video has this profile: the line is shorter without.
    if (stream.name == "MPEG-2 video") text.erase(std::min(text.find(" Main@"), text.size()));
    if (stream.absent) text += " (absent)";
    return without_controls(text);
}

stream_layout layout_of(const std::vector<program_facts> &programs)
{
    stream_layout layout;
    for (const program_facts &program : programs)
        for (const program_stream &stream : program.streams) {
            layout.description = std::max(layout.description, columns_of(description_of(stream)));
            layout.language = std::max(layout.language, columns_of(without_controls(stream.language)));
            layout.most_bps = std::max(layout.most_bps, stream.mean_bps.value_or(0));
        }
    layout.rate = std::max(layout.rate, columns_of(rate_text(layout.most_bps)));
    layout.description = std::min<size_t>(layout.description, 44);
    layout.language = std::min<size_t>(layout.language, 11);
    const size_t before_bar =
        columns_of("     0x0100  ") + layout.description + 1 + layout.language + 3 + layout.rate + 2;
    layout.bar = std::min<size_t>(line_columns - before_bar, 40);
    return layout;
}

std::string without_trailing_blanks(std::string line)
{
    return line.erase(line.find_last_not_of(' ') + 1);
}

std::string text_of_stream(const program_stream &stream, const stream_layout &layout, bool color)
{
    std::string rate;
    std::string bar;
    if (stream.mean_bps) {
        rate = rate_text(*stream.mean_bps);
        const auto full = static_cast<double>(std::max<uint64_t>(layout.most_bps, 1));
        const double part = static_cast<double>(*stream.mean_bps) / full;
        const auto length = static_cast<size_t>(std::lround(part * static_cast<double>(layout.bar)));
        bar.assign(std::max<size_t>(length, *stream.mean_bps > 0 ? 1 : 0), '#');
    } else if (stream.share) {
        rate = fmt::format("{:.1f} %", *stream.share * 100);
    }
    const std::string before = fmt::format(
        "     0x{:04X}  {} {}   {:>{}}  ", stream.pid, filled_to(description_of(stream), layout.description),
        filled_to(without_controls(stream.language), layout.language), rate, layout.rate);
    if (color && !bar.empty()) return colored(before + bar, before.size(), bar.size(), "36") + "\n";
    return without_trailing_blanks(before + bar) + "\n";
}

std::string service_text(const program_facts &program)
{
    std::string text = program.service_name.value_or("");
    if (program.channel) text = *program.channel + (text.empty() ? "" : " ") + text;
    if (program.provider_name && !program.provider_name->empty())
        text += fmt::format(" ({})", *program.provider_name);
    return without_controls(text);
}

std::set<uint16_t> pids_of(const program_facts &program)
{
    std::set<uint16_t> pids = {program.pmt_pid};
    if (program.pcr_pid && *program.pcr_pid != null_pid) pids.insert(*program.pcr_pid);
    for (const program_stream &stream : program.streams) pids.insert(stream.pid);
    for (const ca_system &system : program.ca_systems) pids.insert(system.pid);
    return pids;
}

std::map<uint16_t, uint64_t> rates_by_pid(const rates_facts &rates)
{
    std::map<uint16_t, uint64_t> found;
    for (const pid_rate_facts &facts : rates.pids)
        if (facts.rate.mean_bps) found[facts.pid] = *facts.rate.mean_bps;
    return found;
}

std::string text_of_program(const program_facts &program, const std::map<uint16_t, uint64_t> &rates,
                            bool color)
{
    std::string rate;
    if (!program.absent && !rates.empty()) {
        uint64_t sum = 0;
        for (const uint16_t pid : pids_of(program))
            if (const auto found = rates.find(pid); found != rates.end()) sum += found->second;
        rate = rate_text(sum);
    }
    std::string kind = program.service_type ? without_controls(program.service_type->name) : "";
    if (program.absent) kind = "absent";
    const std::string service = filled_to(service_text(program), service_columns);
    const std::string line =
        without_trailing_blanks(fmt::format("  0x{:04X}  {}  {}   {:>{}}", program.number, service,
                                            filled_to(kind, kind_columns), rate, rate_columns));
    return (color ? colored(line, 0, line.size(), "1") : line) + "\n";
}

/// What a PID that no program names is for.
const char *fixed_meaning(uint16_t pid, const std::string &standard)
{
    if (pid == null_pid) return " null packets";
    if (pid == 0x0000) return " PAT";
    if (pid == 0x0001) return " CAT";
    if (pid == 0x1FFB && standard == "ATSC") return " PSIP";
    if (standard != "DVB") return "";
    switch (pid) {
    case 0x0010:
        return " NIT";
    case 0x0011:
        return " SDT, BAT";
    case 0x0012:
        return " EIT";
    case 0x0013:
        return " RST";
    case 0x0014:
        return " TDT, TOT";
    default:
        return "";
    }
}

/// "other: 0x1FFF null packets 2.90 Mbit/s (16.1 %)": the PIDs that no program names, most packets first.
std::string text_of_others(const overview &found, const std::map<uint16_t, uint64_t> &rates)
{
    std::set<uint16_t> named;
    for (const program_facts &program : found.programs) named.merge(pids_of(program));
    std::vector<const pid_facts *> others;
    for (const pid_facts &facts : found.pids)
        if (!named.contains(facts.pid)) others.push_back(&facts);
    if (others.empty()) return "";
    std::stable_sort(others.begin(), others.end(),
                     [](const pid_facts *a, const pid_facts *b) { return a->packets > b->packets; });

    // Two of the bad sync bytes of each loss are no packets anyway.
    const recording_facts &recording = found.recording;
    const uint64_t packets = recording.packets - recording.sync_byte_errors + 2 * recording.sync_losses;
    std::vector<std::string> items;
    for (const pid_facts *facts : others) {
        if (items.size() == most_others) break;
        std::string item = fmt::format("0x{:04X}{}", facts->pid, fixed_meaning(facts->pid, found.standard));
        if (const auto rate = rates.find(facts->pid); rate != rates.end())
            item += " " + rate_text(rate->second);
        const double share = static_cast<double>(facts->packets) / static_cast<double>(packets);
        items.push_back(item + fmt::format(" ({:.1f} %)", share * 100));
    }
    if (others.size() > items.size())
        items.push_back(fmt::format("{} more PIDs", others.size() - items.size()));
    return wrapped("  other: ", items, ", ", columns_of("  other: "));
}

} // namespace

std::string text_of_programs(const overview &found, bool color)
{
    const stream_layout layout = layout_of(found.programs);
    const std::map<uint16_t, uint64_t> rates = rates_by_pid(found.rates);
    std::string text;
    for (const program_facts &program : found.programs) {
        text += text_of_program(program, rates, color);
        for (const program_stream &stream : program.streams) text += text_of_stream(stream, layout, color);
    }
    return text + text_of_others(found, rates);
}
