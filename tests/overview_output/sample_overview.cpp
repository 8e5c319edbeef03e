#include "sample_overview.h"

#include <limits>

namespace {

constexpr int64_t ms = ticks_per_second / 1000;

void add_programs(overview *found)
{
    program_facts one;
    one.number = 1;
    one.pmt_pid = 0x1000;
    one.pcr_pid = 0x0100;
    one.service_name = "One";
    one.provider_name = "Provider";
    one.service_type = service_kind{1, "digital television"};
    one.channel = "5";
    one.running_status = 4;
    one.free_CA_mode = 0;
    one.ca_systems = {
        {0x0500, 0x0200}
    };
    program_stream video;
    video.pid = 0x0100;
    video.stream_type = 2;
    video.name = "MPEG-2 video";
    video.kind = "video";
    video.details = "1280x720 25p";
    video.mean_bps = 6010000;
    video.share = 0.333889;
    program_stream audio;
    audio.pid = 0x0101;
    audio.stream_type = 3;
    audio.name = "MPEG-1 audio layer II";
    audio.kind = "audio";
    audio.language = "eng";
    audio.mean_bps = 200000;
    audio.share = 0.0111;
    program_stream missing;
    missing.pid = 0x0102;
    missing.absent = true;
    missing.stream_type = 6;
    missing.name = "teletext";
    missing.kind = "teletext";
    one.streams = {video, audio, missing};

    program_facts two;
    two.number = 2;
    two.pmt_pid = 0x1001;
    two.absent = true;
    found->programs = {one, two};
}

void add_pids(overview *found)
{
    pid_facts video;
    video.pid = 0x0100;
    video.packets = 1918085;
    video.first_packet = 2;
    video.last_packet = 5744679;
    video.first_ticks = 0;
    video.last_ticks = 479999 * ms;
    video.unit_starts = 12000;
    video.random_access_points = 960;
    video.duplicates = 1;
    video.continuity_errors = 11;
    video.lost_packets_estimate = 15;
    video.out_of_order = 1;
    pid_facts null_packets;
    null_packets.pid = 0x1FFF;
    null_packets.packets = 924894;
    null_packets.first_packet = 7;
    null_packets.last_packet = 5744680;
    found->pids = {video, null_packets};

    found->rates.bucket_ticks = 2 * 2700000;
    found->rates.whole = {
        18000000, 17990000, 18010000, {18000000, 18000001}
    };
    found->rates.pids = {
        {0x0100, {6010000, std::nullopt, std::nullopt, {6000000, 6020000}}},
        {0x1FFF, {2900000, 2890000, 2910000, {}}                          }
    };
}

void add_clocks(overview *found)
{
    pcr_facts pcr;
    pcr.pid = 0x0100;
    pcr.count = 16000;
    pcr.interval_ticks = extent_of({20, 29, 41});
    pcr.discontinuities_unflagged = 1;
    bucket_extent bucket;
    bucket.min = 20 * ms;
    bucket.max = 41 * ms;
    pcr.interval_series_ticks = {bucket, {}};
    pcr.residual = residual_facts{-120.5, 130.25, 33.3333333};
    pcr.basis = "index";
    pcr.rate_offset = ppm_extent{-0.5, 0.25};
    pcr.residual_series = {
        {10 * ms,      -120.5, 130.25},
        {std::nullopt, 0,      -1e-9 }
    };
    found->pcr = {pcr};

    time_stamp_facts stamps;
    stamps.pid = 0x0100;
    stamps.pes_not_read = 1;
    stamps.pts.count = 12000;
    stamps.pts.arrival_interval_ticks = extent_of({30, 40, 50});
    stamps.reordered = 8000;
    stamps.margin_ticks = extent_of({-5, 200, 405});
    stamps.unrelated = 2;
    stamps.late = 1;
    stamps.margin_series_ticks = {{}, bucket};
    found->time_stamps = {stamps};

    found->breaks.kept = {
        {moment_at(4000, 1500), time_break_kind::irregular_span, -3 * ms     },
        {moment_at(5000, 2500), time_break_kind::sync_loss,      std::nullopt}
    };
    found->clock.first = clock_reading{1700000000, "TDT", moment_at(300, 120)};
}

table_facts table_of(uint16_t pid, uint8_t table_id, const char *name, int64_t interval_ms)
{
    table_facts table;
    table.pid = pid;
    table.table_id = table_id;
    table.table_id_extension = 1;
    table.name = name;
    table.sections = 4800;
    table.interval_ticks = extent_of({interval_ms - 1, interval_ms, interval_ms + 1});
    table.versions = {
        {5, moment_at(1, 0)}
    };
    return table;
}

void add_tables(overview *found)
{
    found->tables.rows = {table_of(0, 0, "PAT", 100), table_of(0x1000, 2, "PMT", 100),
                          table_of(0x1001, 2, "PMT", 100), table_of(0x11, 0x42, "SDT", 500)};
    found->tables.rows.back().original_network_id = 0xFF01;
    found->tables.not_kept = 3;

    transcript_entry entry;
    entry.table_id = 0;
    entry.heading = "* Program Association Table";
    entry.lines = "* Program Association Table\n    Version: 5\n";
    entry.count = 4800;
    entry.first = moment_at(1, 0);
    entry.last = moment_at(5744600, 479990);
    found->transcript.entries = {entry};
    fault_group group;
    group.text = "!!! PMT too short";
    group.pid = 0x1001;
    group.table_id = 2;
    group.count = 3;
    group.first = moment_at(9, 1);
    group.last = moment_at(99, 10);
    group.packets = {9, 50, 99};
    found->transcript.faults = {group};
    found->limits_reached = {
        {"breaks", 1000, 12}
    };
}

check_result check_of(const char *id, int priority, const char *name, check_outcome outcome)
{
    check_result check;
    check.id = id;
    check.priority = priority;
    check.name = name;
    check.outcome = outcome;
    return check;
}

void add_checks(overview *found)
{
    check_result sync = check_of("1.1", 1, "TS_sync_loss", check_outcome::pass);
    sync.limit = 0;
    check_result continuity = check_of("1.4", 1, "Continuity_count_error", check_outcome::fail);
    continuity.limit = 0;
    continuity.log.count = 12;
    continuity.log.first = moment_at(48211, 3120);
    continuity.log.last = moment_at(50000, 4000);
    continuity.log.details = {
        {moment_at(48211, 3120), 0x0100, "counter 5 where 3 was due"}
    };
    check_result repetition = check_of("2.3a", 2, "PCR_repetition_error", check_outcome::fail);
    repetition.limit = 0.1;
    repetition.worst_unit = "s";
    repetition.log.count = 1;
    repetition.log.worst = 0.2505;
    repetition.log.first = moment_at(70, 30);
    repetition.log.last = repetition.log.first;
    repetition.log.details = {
        {moment_at(70, 30), 0x0100, "250.5 ms"}
    };
    check_result accuracy = check_of("2.4", 2, "PCR_accuracy_error", check_outcome::not_measured);
    accuracy.why = "variable bitrate";
    accuracy.worst_unit = "ns";
    accuracy.limit = 500;
    check_result nit = check_of("3.1a", 3, "NIT_actual_error", check_outcome::not_measured);
    nit.why = "no NIT in the recording";
    nit.worst_unit = "s";
    nit.limit = 10;
    check_result buffer = check_of("3.3", 3, "Buffer_error", check_outcome::not_measured);
    buffer.why = "needs the decoder model";
    found->checks = {sync, continuity, repetition, accuracy, nit, buffer};
}

void add_contents(overview *found)
{
    guide_event event;
    event.service = 1;
    event.event_id = 77;
    event.start_utc_s = 1700000100;
    event.duration_s = 3600;
    event.title = "News";
    event.text = "What happened";
    event.language = "eng";
    event.source = "present";
    event.present_ticks = 5 * ms;
    guide_event later;
    later.service = 1;
    later.event_id = 78;
    later.source = "following";
    found->guide.events = {event, later};
    found->guide.events_of_others = 6;
    found->guide.not_kept = 1;

    cue message;
    message.pid = 0x01F0;
    message.program = 1;
    message.at = moment_at(800, 333);
    message.command = "splice_insert";
    message.count = 3;
    message.splice_event_id = 4000000000;
    message.out_of_network = true;
    message.immediate = false;
    message.pts_time = 900045;
    message.break_duration = 2700000;
    message.auto_return = true;
    message.pre_roll_ticks = 4000 * ms;
    message.segmentations = {
        {0x34, "Provider Placement Opportunity Start", "0x0000000012345678"}
    };
    found->cues.cues = {message, {}};
    found->cues.cues[1].command = "splice_null";

    teletext_page page;
    page.pid = 0x0102;
    page.page = 0x1F0;
    page.subcode = 0x0012;
    page.count = 9;
    page.first_ticks = 40 * ms;
    page.national_option = 4;
    page.rows.fill(std::string(40, ' '));
    page.rows[1].replace(0, 5, "INDEX");
    found->teletext.pages = {page};
}

} // namespace

moment moment_at(uint64_t packet, int64_t milliseconds)
{
    return {packet, packet * 188, milliseconds * ms, 0};
}

extent extent_of(std::initializer_list<int64_t> milliseconds)
{
    extent found;
    for (const int64_t each : milliseconds) found.add(each * ms);
    return found;
}

overview sample_overview()
{
    overview found;
    found.recording = {"recording.ts",           1080000000,          188,    0,   0, 0, 5744681, 0, 0,
                       int64_t{480} * 1000 * ms, time_base_kind::pcr, 0x0100, true};
    found.standard = "DVB";
    found.transport_stream = {1, 0xFF01, "Network"};
    add_programs(&found);
    add_pids(&found);
    add_clocks(&found);
    add_tables(&found);
    add_checks(&found);
    add_contents(&found);
    return found;
}

overview hostile_overview()
{
    overview found = sample_overview();
    const std::string wrong("\0\x1B[31m\xC2\x9B \xFF\xC0\x80\xED\xA0\x80\xF8\xE4\xBD", 18);
    found.recording.path = wrong;
    found.transport_stream.network_name = wrong;
    for (program_facts &program : found.programs) {
        program.service_name = wrong;
        program.provider_name = wrong;
        for (program_stream &stream : program.streams) stream.details = stream.language = wrong;
    }
    for (check_result &check : found.checks)
        for (violation &detail : check.log.details) detail.text = wrong;
    for (guide_event &event : found.guide.events) event.title = event.text = event.language = wrong;
    for (teletext_page &page : found.teletext.pages) page.rows.fill(wrong);
    found.transcript.note = wrong;
    found.transcript.entries[0].lines = wrong + "\n" + wrong;
    found.transcript.faults[0].text = wrong;
    found.checks[1].log.worst = std::numeric_limits<double>::quiet_NaN();
    found.pcr[0].residual->max_ns = std::numeric_limits<double>::infinity();
    return found;
}
