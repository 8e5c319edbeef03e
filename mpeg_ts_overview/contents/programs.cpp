#include "mpeg_ts_overview/contents/programs.h"

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_overview/contents/codec_details_text.h"
#include "mpeg_ts_overview/tables/pmt.h"
#include "mpeg_ts_overview/tables/program_map.h"
#include "mpeg_ts_overview/tables/stream_type.h"

#include <algorithm>

namespace {

/// Families of several codecs: their headers know better than stream_type which one it is.
bool header_names_codec(codec_family family)
{
    return family == codec_family::mpeg_video || family == codec_family::mpeg_audio ||
           family == codec_family::ac3;
}

/// What was counted of each PID.
struct pid_counts {
    uint64_t packets = 0;
    std::optional<uint64_t> mean_bps;
};

std::vector<pid_counts> counts_by_pid(const std::vector<pid_facts> &pids, const rates_facts &rates)
{
    std::vector<pid_counts> counts(mpeg_ts_pid_count);
    for (const pid_facts &facts : pids) counts[facts.pid].packets = facts.packets;
    for (const pid_rate_facts &facts : rates.pids) counts[facts.pid].mean_bps = facts.rate.mean_bps;
    return counts;
}

} // namespace

const std::vector<program_descriptions::described_stream> *
program_descriptions::on_current_map(const table_section &section)
{
    const auto known = maps.find(section.header.table_id_extension);
    if (known != maps.end() && known->second.crc_32 == section.crc_32) return nullptr;
    const std::optional<pmt> map = read_pmt(section);
    if (!map) return nullptr;

    described_map &described = maps[map->program_number];
    stream_count -= described.streams.size();
    described.crc_32 = section.crc_32;
    described.streams.clear();
    const bool blu_ray_program = is_registered(map->program_info, "HDMV");
    for (const pmt_entry &stream : map->streams) {
        if (stream_count == mapped_stream_limit) break;
        described.streams.push_back({stream.elementary_PID, describe_stream(stream, blu_ray_program)});
        ++stream_count;
    }
    return &described.streams;
}

void program_descriptions::describe(program_stream &stream, const stream_description &description,
                                    const stream_headers &headers) const
{
    stream.name = description.name;
    stream.kind = description.kind;
    stream.language = description.language;
    if (!description.family) return;
    const codec_details *details = headers.details_of(stream.pid, *description.family);
    if (details == nullptr && description.details) details = &*description.details;
    if (details == nullptr) return;
    if (header_names_codec(*description.family) && !details->name.empty()) stream.name = details->name;
    stream.details = codec_details_text(*details);
}

void program_descriptions::add_to(std::vector<program_facts> &programs, const std::vector<pid_facts> &pids,
                                  const rates_facts &rates, const stream_headers &headers) const
{
    const std::vector<pid_counts> counts = counts_by_pid(pids, rates);
    uint64_t all_packets = 0;
    for (const pid_facts &facts : pids) all_packets += facts.packets;

    for (program_facts &program : programs) {
        program.absent = counts[program.pmt_pid].packets == 0;
        const auto map = maps.find(program.number);
        for (size_t i = 0; i < program.streams.size(); ++i) {
            program_stream &stream = program.streams[i];
            const pid_counts &counted = counts[stream.pid];
            stream.absent = counted.packets == 0;
            if (!stream.absent) {
                stream.mean_bps = counted.mean_bps;
                stream.share = static_cast<double>(counted.packets) / static_cast<double>(all_packets);
            }
            if (map != maps.end() && i < map->second.streams.size())
                describe(stream, map->second.streams[i].description, headers);
        }
    }
}
