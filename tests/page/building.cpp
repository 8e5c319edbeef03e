#include "page/building.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double packet_bits = 188 * 8;

double duration_s(const overview &found)
{
    return static_cast<double>(found.recording.duration_ticks.value_or(0)) / ticks_per_second;
}

size_t bucket_count(const overview &found)
{
    const int64_t duration = found.recording.duration_ticks.value_or(0);
    const int64_t width = found.rates.bucket_ticks;
    return width == 0 ? 0 : static_cast<size_t>((duration + width - 1) / width);
}

/// A number from 0 to 1 that looks like chance and is not.
double noise(uint64_t seed)
{
    seed = (seed ^ (seed >> 31)) * 0x9E3779B97F4A7C15ULL;
    seed = (seed ^ (seed >> 29)) * 0xBF58476D1CE4E5B9ULL;
    return static_cast<double>((seed ^ (seed >> 32)) & 0xFFFFFF) / 0xFFFFFF;
}

extent extent_of(int64_t min, int64_t mean, int64_t max, uint64_t count)
{
    return {count, min, max, mean * static_cast<int64_t>(count)};
}

constexpr int64_t ticks_of_ms(double milliseconds)
{
    return static_cast<int64_t>(milliseconds * 27000);
}

std::vector<bucket_extent> wavering_series(const overview &found, uint64_t seed, double low_ms,
                                           double high_ms)
{
    std::vector<bucket_extent> series(bucket_count(found));
    for (size_t at = 0; at < series.size(); ++at) {
        const double middle = low_ms + (high_ms - low_ms) * (0.4 + 0.2 * noise(seed + at));
        series[at].min = ticks_of_ms(low_ms + (middle - low_ms) * noise(seed * 3 + at));
        series[at].max = ticks_of_ms(middle + (high_ms - middle) * noise(seed * 7 + at));
    }
    return series;
}

program_stream stream_of(const overview &found, uint16_t pid, uint8_t type, const char *name,
                         const char *kind, const char *language, const char *details)
{
    const auto rate = std::find_if(found.rates.pids.begin(), found.rates.pids.end(),
                                   [&](const pid_rate_facts &row) { return row.pid == pid; });
    program_stream stream{pid, false, type, name, kind, language, details, {}, {}};
    stream.mean_bps = rate->rate.mean_bps;
    stream.share =
        static_cast<double>(*rate->rate.mean_bps) / static_cast<double>(*found.rates.whole.mean_bps);
    return stream;
}

} // namespace

moment at_s(const overview &found, double seconds)
{
    const double bps = static_cast<double>(found.rates.whole.mean_bps.value_or(1000000));
    const auto packet = static_cast<uint64_t>(seconds * bps / packet_bits);
    moment made{packet, packet * found.recording.packet_size, {}, 0};
    if (found.recording.duration_ticks) made.ticks = static_cast<int64_t>(seconds * ticks_per_second);
    return made;
}

overview begun_recording(const std::string &path, double seconds, uint64_t bps)
{
    overview found;
    recording_facts &recording = found.recording;
    recording.path = path;
    recording.packet_size = 188;
    recording.duration_ticks = static_cast<int64_t>(seconds * ticks_per_second);
    recording.packets = static_cast<uint64_t>(seconds * static_cast<double>(bps) / packet_bits);
    recording.bytes = recording.packets * recording.packet_size;
    recording.time_base = time_base_kind::pcr;
    recording.clock_pid = 0x0101;
    recording.constant_bitrate = true;
    found.standard = "DVB";
    found.rates.bucket_ticks = ticks_per_second / 10;
    while (bucket_count(found) > 1000) found.rates.bucket_ticks *= 2;
    found.rates.whole.mean_bps = bps;
    found.rates.whole.min_bps = bps;
    found.rates.whole.max_bps = bps;
    found.rates.whole.series_bps.assign(bucket_count(found), bps);
    return found;
}

void add_pid(overview &found, uint16_t pid, uint64_t bps, double wavers)
{
    pid_facts facts;
    facts.pid = pid;
    facts.packets = static_cast<uint64_t>(duration_s(found) * static_cast<double>(bps) / packet_bits);
    facts.last_packet = found.recording.packets;
    facts.first_ticks = 0;
    facts.last_ticks = found.recording.duration_ticks;
    facts.unit_starts = facts.packets / 40;
    found.pids.push_back(facts);

    rate_facts rate{bps, 0, 0, {}};
    rate.min_bps = static_cast<uint64_t>(static_cast<double>(bps) * (1 - wavers));
    rate.max_bps = static_cast<uint64_t>(static_cast<double>(bps) * (1 + wavers));
    if (found.rates.pids.size() < 256)
        for (size_t at = 0; at < bucket_count(found); ++at) {
            const double slow = std::sin(static_cast<double>(at) / 40 + pid);
            const double part = 1 + wavers * (0.6 * slow + 0.4 * (2 * noise(pid * 7919U + at) - 1));
            rate.series_bps.push_back(static_cast<uint64_t>(static_cast<double>(bps) * part));
        }
    found.rates.pids.push_back({pid, rate});
}

void add_pcr(overview &found, uint16_t pid)
{
    pcr_facts facts;
    facts.pid = pid;
    facts.count = static_cast<uint64_t>(duration_s(found) * 25);
    facts.interval_ticks = extent_of(ticks_of_ms(20), ticks_of_ms(32), ticks_of_ms(39), facts.count - 1);
    facts.interval_series_ticks = wavering_series(found, pid, 20, 39);
    facts.residual = residual_facts{-212.4, 231.7, 84.2};
    facts.basis = "index";
    const size_t windows = std::min<size_t>(1000, static_cast<size_t>(duration_s(found) / 10) + 1);
    for (size_t at = 0; at < windows; ++at) {
        const auto ticks = static_cast<int64_t>(static_cast<double>(*found.recording.duration_ticks) *
                                                static_cast<double>(at) / static_cast<double>(windows));
        facts.residual_series.push_back({ticks, -212.4 * noise(pid + at), 231.7 * noise(pid * 5U + at)});
    }
    if (found.recording.clock_pid != pid) facts.rate_offset = ppm_extent{-0.412, 0.377};
    found.pcr.push_back(facts);
}

void add_time_stamps(overview &found, uint16_t pid)
{
    time_stamp_facts facts;
    facts.pid = pid;
    facts.pts.count = static_cast<uint64_t>(duration_s(found) * 25);
    facts.pts.arrival_interval_ticks =
        extent_of(ticks_of_ms(18), ticks_of_ms(40), ticks_of_ms(83), facts.pts.count);
    facts.margin_ticks = extent_of(ticks_of_ms(212), ticks_of_ms(540), ticks_of_ms(988), facts.pts.count);
    facts.margin_series_ticks = wavering_series(found, pid * 11U, 212, 988);
    found.time_stamps.push_back(facts);
}

void add_program(overview &found, uint16_t number, const std::string &name, uint64_t video_bps)
{
    const auto base = static_cast<uint16_t>(0x0100 * (number % 30 + 1) + 8 * (number / 30));
    add_pid(found, base, 15000, 0);
    add_pid(found, static_cast<uint16_t>(base + 1), video_bps, 0.3);
    add_pid(found, static_cast<uint16_t>(base + 2), 192000, 0.02);
    add_pid(found, static_cast<uint16_t>(base + 3), 384000, 0.02);
    add_pid(found, static_cast<uint16_t>(base + 4), 250000, 0.1);
    program_facts program;
    program.number = number;
    program.pmt_pid = base;
    program.pcr_pid = static_cast<uint16_t>(base + 1);
    program.service_name = name;
    program.provider_name = "Sample Provider";
    program.service_type = service_kind{1, "digital television"};
    program.channel = std::to_string(number);
    program.running_status = 4;
    program.streams = {
        stream_of(found, static_cast<uint16_t>(base + 1), 0x02, "MPEG-2 video", "video", "", "1280x720 25p"),
        stream_of(found, static_cast<uint16_t>(base + 2), 0x03, "MPEG-1 audio layer II", "audio", "eng",
                  "48 kHz stereo 192 kbit/s"),
        stream_of(found, static_cast<uint16_t>(base + 3), 0x06, "AC-3 audio", "audio", "deu",
                  "48 kHz 5.1 384 kbit/s"),
        stream_of(found, static_cast<uint16_t>(base + 4), 0x06, "teletext", "teletext", "eng", ""),
    };
    found.programs.push_back(program);
    add_pcr(found, *program.pcr_pid);
    for (const unsigned offset : {1U, 2U, 3U}) add_time_stamps(found, static_cast<uint16_t>(base + offset));
    add_table(found, base, 0x02, number, "PMT", 0.1);
}

void add_radio(overview &found, uint16_t number, const std::string &name)
{
    const auto base = static_cast<uint16_t>(0x0100 * number);
    add_pid(found, base, 15000, 0);
    add_pid(found, static_cast<uint16_t>(base + 1), 320000, 0.01);
    program_facts program;
    program.number = number;
    program.pmt_pid = base;
    program.pcr_pid = static_cast<uint16_t>(base + 1);
    program.service_name = name;
    program.service_type = service_kind{2, "digital radio sound"};
    program.streams = {stream_of(found, static_cast<uint16_t>(base + 1), 0x03, "MPEG-1 audio layer II",
                                 "audio", "swe", "48 kHz stereo 320 kbit/s")};
    found.programs.push_back(program);
    add_pcr(found, *program.pcr_pid);
    add_time_stamps(found, *program.pcr_pid);
    add_table(found, base, 0x02, number, "PMT", 0.1);
}

void add_table(overview &found, uint16_t pid, uint8_t table_id, uint16_t extension, const std::string &name,
               double interval_s)
{
    table_facts facts;
    facts.pid = pid;
    facts.table_id = table_id;
    facts.table_id_extension = extension;
    facts.name = name;
    facts.sections = static_cast<uint64_t>(duration_s(found) / interval_s) + 1;
    const double milliseconds = interval_s * 1000;
    facts.interval_ticks = extent_of(ticks_of_ms(milliseconds * 0.95), ticks_of_ms(milliseconds),
                                     ticks_of_ms(milliseconds * 1.08), facts.sections - 1);
    facts.versions.emplace_back(static_cast<uint8_t>(extension % 32U), at_s(found, interval_s / 2));
    found.tables.rows.push_back(facts);
}

void add_guide(overview &found, uint16_t service, unsigned events, const std::string &title,
               const std::string &text)
{
    constexpr int64_t evening = 1714586400; // 2024-05-01T18:00:00Z
    for (unsigned number = 0; number < events; ++number) {
        guide_event event;
        event.service = service;
        event.event_id = static_cast<uint16_t>(number);
        event.start_utc_s = evening + number * 2700;
        event.duration_s = 2700;
        event.title = title + (number == 0 ? "" : " " + std::to_string(number));
        event.text = text;
        event.language = "eng";
        event.source = number == 0 ? "present" : number == 1 ? "following" : "schedule";
        if (number == 0) event.present_ticks = ticks_per_second * 2;
        found.guide.events.push_back(event);
    }
}

void add_cues(overview &found, uint16_t pid, unsigned count)
{
    for (unsigned number = 0; number < count; ++number) {
        cue message;
        message.pid = pid;
        message.program = 1;
        message.at = at_s(found, duration_s(found) * (number + 0.5) / count);
        message.command = number % 5 == 4 ? "time_signal" : "splice_insert";
        message.count = 3;
        message.splice_event_id = 4000 + number / 2;
        message.out_of_network = number % 2 == 0;
        message.pts_time = 8100000 + number * 90000ULL;
        if (number % 2 == 0) message.break_duration = 2700000;
        message.auto_return = number % 2 == 0;
        message.pre_roll_ticks = 4 * ticks_per_second;
        if (number % 5 == 4)
            message.segmentations = {
                {0x34, "Provider Placement Opportunity Start", "08 00 1F"}
            };
        found.cues.cues.push_back(message);
    }
}

void add_teletext(overview &found, uint16_t pid, unsigned pages, const std::string &text)
{
    for (unsigned number = 0; number < pages; ++number) {
        teletext_page page;
        page.pid = pid;
        page.page = 0x100 * (1 + number / 100 % 8) + 0x10 * (number / 10 % 10) + number % 10;
        page.subcode = number / 800;
        page.count = 4;
        page.first_ticks = 0;
        page.last_ticks = found.recording.duration_ticks;
        page.rows.fill(std::string(40, ' '));
        page.rows[0] =
            fmt::format("{:8}{:03X} SAMPLETEXT  01 May  18:00:{:02}  ", "", page.page, number % 60);
        for (size_t row = 2; row < 20; ++row)
            page.rows[row] = (text + std::string(40, '.')).substr(0, 36) + " " + std::to_string(100 + row);
        found.teletext.pages.push_back(page);
    }
}

void add_section(overview &found, uint16_t pid, uint8_t table_id, const std::string &heading,
                 const std::string &lines, double seconds)
{
    found.transcript.entries.push_back({pid, table_id, heading, heading + "\n" + lines, 40,
                                        at_s(found, seconds), at_s(found, duration_s(found))});
}
