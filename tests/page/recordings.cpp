#include "page/recordings.h"

#include "page/building.h"

namespace {

const std::string pmt_lines =
    "    Program ID:                       0x0001\n"
    "    Version:                          0\n"
    "    PCR PID:                          0x0101\n"
    "    Stream type=0x02(ISO/IEC 13818-2 Video (MPEG-2)) PID=0x0101 es_info_length=0\n";

/// PSI, and SI when it is DVB.
void add_tables(overview &found)
{
    add_pid(found, 0x0000, 15040, 0);
    add_table(found, 0x0000, 0x00, 1, "PAT", 0.1);
    add_section(found, 0x0000, 0x00, "* Program Association Table",
                "    Transport stream ID:              0x0001\n", 0.02);
    add_section(found, 0x0100, 0x02, "* Program Map Table", pmt_lines, 0.031);
    found.transport_stream.transport_stream_id = 1;
    if (found.standard != "DVB") return;
    add_pid(found, 0x0010, 3000, 0);
    add_pid(found, 0x0011, 30000, 0.1);
    add_pid(found, 0x0012, 250000, 0.3);
    add_table(found, 0x0010, 0x40, 1, "NIT", 5);
    add_table(found, 0x0011, 0x42, 1, "SDT", 1);
    add_section(found, 0x0011, 0x42, "* Service Description Section",
                "    original_network_id=0xff01\n      - service_id=0x0001\n", 0.4);
    found.transport_stream.original_network_id = 0xFF01;
    found.transport_stream.network_name = "Sample Network";
    found.clock.first = clock_reading{1714586401, "TDT", at_s(found, 1.2)};
    found.clock.last = clock_reading{1714586411, "TDT", at_s(found, 11.2)};
}

overview television(const std::string &path, double seconds, uint64_t bps, uint64_t video_bps)
{
    overview found = begun_recording(path, seconds, bps);
    add_tables(found);
    add_program(found, 1, "One", video_bps);
    add_checks(found);
    return found;
}

} // namespace

overview small_recording()
{
    overview found = television("recordings/small.ts", 12, 10000000, 7000000);
    add_null_packets(found, 1800000);
    return found;
}

overview multiplex_recording()
{
    overview found = begun_recording("recordings/multiplex.ts", 300, 82000000);
    add_tables(found);
    for (uint16_t number = 1; number <= 30; ++number) {
        add_program(found, number, "Service " + std::to_string(number), 800000 + 45000ULL * number);
        add_guide(found, number, 40, "Evening news",
                  "What happened in the country and abroad, with the weather.");
        add_section(found, static_cast<uint16_t>(0x0100 * number), 0x02, "* Program Map Table", pmt_lines,
                    number);
    }
    add_checks(found);
    fail(found, "3.5a", 2, 71.4, 2.318);
    add_cues(found, 0x0150, 9);
    add_teletext(found, 0x0204, 87, "Headlines: rain in the north");
    found.limits_reached.push_back({"cues", 5000, 12});
    // Of one service the next event began, and the schedule came behind it.
    guide_event &begun = found.guide.events[3 * 40 + 1];
    begun.source = "schedule";
    begun.present_ticks = 100 * ticks_per_second;
    add_null_packets(found, 12000000);
    return found;
}

overview faulty_recording()
{
    overview found = television("recordings/faulty.ts", 120, 10000000, 7000000);
    found.recording.sync_losses = 2;
    found.recording.sync_byte_errors = 11;
    found.recording.skipped_bytes = 1204;
    found.recording.constant_bitrate = false;
    found.rates.whole.min_bps = 4200000;
    add_null_packets(found, 1800000);
    for (const char *id : {"1.1", "1.2", "1.4", "2.1", "2.2", "2.3b", "X.1"}) fail(found, id, 12, 3.12);
    fail(found, "1.3a", 3, 31.5, 2.75);
    fail(found, "2.3a", 40, 8.25, 0.412);
    fail(found, "2.5", 2, 88, 0.9);
    for (pid_facts &facts : found.pids) {
        facts.continuity_errors = facts.pid % 5;
        facts.crc_errors = facts.pid < 0x20 ? 4 : 0;
        facts.transport_errors = facts.pid % 3;
    }
    found.pcr.front().discontinuities_unflagged = 12;
    found.pcr.front().interval_ticks.max = 412 * 27000;
    for (size_t at = 80; at < 200; at += 17) found.pcr.front().interval_series_ticks[at].max = 300 * 27000;
    found.time_stamps.front().late = 12;
    for (size_t at = 300; at < 330; ++at) found.time_stamps.front().margin_series_ticks[at].min = -40 * 27000;
    constexpr time_break_kind kinds[] = {time_break_kind::irregular_span, time_break_kind::clock_change,
                                         time_break_kind::sync_loss};
    for (unsigned number = 0; number < 15; ++number)
        found.breaks.kept.push_back(
            {at_s(found, 5 + 7.5 * number), kinds[number % 3],
             number % 3 == 0 ? std::optional<int64_t>(-3 * ticks_per_second) : std::nullopt});
    for (unsigned number = 0; number < 40; ++number) {
        fault_group group{"!!! Continuity error on PID 0x0101: expected 5, came 9",
                          0x0101,
                          0x02,
                          30 + number,
                          at_s(found, 1 + number),
                          at_s(found, 60 + number),
                          {}};
        for (unsigned each = 0; each < 20; ++each)
            group.packets.push_back(at_s(found, 1 + number + each * 2.9).packet);
        found.transcript.faults.push_back(group);
    }
    add_section(found, 0x0101, 0x02, "* Program Map Table", "!!! CRC error: section is ignored\n" + pmt_lines,
                3.1);
    return found;
}

overview disc_recording()
{
    overview found = begun_recording("BDMV/STREAM/00001.m2ts", 90, 24000000);
    found.standard = "partial";
    found.recording.packet_size = 192;
    found.recording.bytes = found.recording.packets * 192;
    found.recording.time_base = time_base_kind::arrival;
    found.recording.clock_pid.reset();
    found.recording.constant_bitrate = false;
    found.rates.whole.min_bps = 12000000;
    found.rates.whole.max_bps = 36000000;
    add_tables(found);
    add_program(found, 1, "Main feature", 20000000);
    for (size_t at = 0; at < found.rates.whole.series_bps.size(); ++at) {
        found.rates.whole.series_bps[at] = 0;
        for (const pid_rate_facts &row : found.rates.pids)
            found.rates.whole.series_bps[at] += row.rate.series_bps[at];
    }
    found.pcr.front().basis = "arrival";
    found.pcr.front().residual = residual_facts{0, 0, 0};
    found.pcr.front().rate_offset = ppm_extent{-0.0000001, 0.0000001};
    found.breaks.kept.push_back({at_s(found, 40), time_break_kind::arrival, {}});
    add_checks(found);
    for (check_result &check : found.checks)
        if (check.id[0] == '3') {
            check.outcome = check_outcome::not_measured;
            check.why = "not a DVB stream";
        }
    return found;
}

overview audio_recording()
{
    overview found = begun_recording("recordings/radio.ts", 600, 1200000);
    add_tables(found);
    add_radio(found, 1, "P1");
    add_radio(found, 2, "P2 Musik");
    add_guide(found, 1, 3, "Concert", "");
    add_checks(found);
    add_null_packets(found, 200000);
    return found;
}

overview markup_recording()
{
    const std::string bad =
        "</script><script>document.title='run'</script><img src=x onerror=\"document.title='run'\">&lt;";
    overview found = begun_recording(bad + ".ts", 20, 10000000);
    add_tables(found);
    add_program(found, 1, bad, 7000000);
    found.programs[0].provider_name = bad;
    found.programs[0].channel = bad;
    found.programs[0].service_type->name = bad;
    for (program_stream &stream : found.programs[0].streams)
        stream.name = stream.language = stream.details = bad;
    found.transport_stream.network_name = bad;
    for (table_facts &facts : found.tables.rows) facts.name = bad;
    add_guide(found, 1, 4, bad, bad);
    add_teletext(found, 0x0104, 2, bad);
    add_cues(found, 0x0150, 5);
    for (cue &message : found.cues.cues) {
        message.command = bad;
        message.segmentations = {
            {1, bad, bad}
        };
    }
    add_section(found, 0x0100, 0x02, bad, bad + "\n", 2);
    found.transcript.faults.push_back({
        bad, 0x0100, 0x02, 3, at_s(found, 1), at_s(found, 9), {5, 6}
    });
    add_checks(found);
    fail(found, "1.4", 2, 3);
    for (check_result &check : found.checks)
        for (violation &detail : check.log.details) detail.text = bad;
    found.limits_reached.push_back({bad, 1, 2});
    add_null_packets(found, 1000000);
    return found;
}

overview timeless_recording()
{
    overview found;
    found.recording.path = "timeless.ts";
    found.recording.packet_size = 188;
    found.recording.packets = 7;
    found.recording.bytes = 7 * 188;
    pid_facts facts;
    facts.pid = 0x0100;
    facts.packets = 7;
    found.pids.push_back(facts);
    found.rates.pids.push_back({0x0100, {}});
    add_checks(found);
    for (check_result &check : found.checks) check.outcome = check_outcome::not_measured;
    return found;
}

overview empty_recording()
{
    overview found;
    found.recording.path = "empty.ts";
    found.recording.packet_size = 188;
    return found;
}

overview day_recording()
{
    overview found = begun_recording("recordings/day.ts", 86400, 66000000);
    add_tables(found);
    for (uint16_t number = 1; number <= 30; ++number)
        add_program(found, number, "Service " + std::to_string(number), 800000 + 45000ULL * number);
    for (uint16_t pid = 0x1F00; found.pids.size() < 199; ++pid) add_pid(found, pid, 20000, 0.4);
    for (uint16_t number = 1; number <= 20; ++number)
        add_guide(found, number, 1000, "Evening news",
                  "What happened in the country and abroad, with the weather.");
    for (unsigned number = 0; number < 5000; ++number) {
        const auto extension = static_cast<uint16_t>(number);
        if (number % 10 == 0) add_table(found, 0x0012, 0x50, extension, "EIT schedule", 10);
        add_section(found, 0x0012, 0x50, "* Event Information Section " + std::to_string(number), pmt_lines,
                    number * 17);
    }
    add_checks(found);
    fail(found, "1.4", 300, 4000);
    add_cues(found, 0x0150, 400);
    add_teletext(found, 0x0204, 800, "Headlines: rain in the north");
    add_null_packets(found, 12000000);
    return found;
}

overview overfull_recording()
{
    const std::string long_text(400, '<');
    overview found = begun_recording(long_text, 100000, 60000000);
    found.standard = "ATSC";
    add_tables(found);
    for (unsigned number = 1; number <= 300; ++number)
        add_program(found, static_cast<uint16_t>(number), long_text, 10000000000ULL + number);
    add_null_packets(found, 1000000);
    for (unsigned number = 0; number < 2000; ++number) {
        add_table(found, 0x0012, 0x50, static_cast<uint16_t>(number), long_text, 10);
        if (number < 1000) add_section(found, 0x0012, 0x50, long_text, long_text + "\n", number);
    }
    add_guide(found, 1, 5000, long_text, long_text);
    found.guide.events.back().source = "present";
    found.guide.events.back().title = "on air";
    add_cues(found, 0x0150, 1000);
    for (cue &message : found.cues.cues)
        message.segmentations = {
            {1, long_text, long_text}
        };
    add_teletext(found, 0x0204, 600, long_text);
    add_checks(found);
    fail(found, "1.4", 300, 4000);
    for (check_result &check : found.checks)
        for (violation &detail : check.log.details) detail.text = long_text;
    for (unsigned number = 0; number < 500; ++number)
        found.transcript.faults.push_back({long_text, 0x0100, 0x02, 3, at_s(found, 1), at_s(found, 9),
                                           std::vector<uint64_t>(100, 1000000000000)});
    for (unsigned number = 0; number < 1000; ++number)
        found.breaks.kept.push_back({at_s(found, number), time_break_kind::irregular_span, ticks_per_second});
    return found;
}

std::vector<made_recording> all_recordings()
{
    std::vector<made_recording> all;
    all.push_back({"small", small_recording()});
    all.push_back({"multiplex", multiplex_recording()});
    all.push_back({"faulty", faulty_recording()});
    all.push_back({"disc", disc_recording()});
    all.push_back({"audio", audio_recording()});
    all.push_back({"markup", markup_recording()});
    all.push_back({"timeless", timeless_recording()});
    all.push_back({"day", day_recording()});
    all.push_back({"overfull", overfull_recording()});
    all.push_back({"hostile", hostile_recording()});
    all.push_back({"empty", empty_recording()});
    return all;
}
