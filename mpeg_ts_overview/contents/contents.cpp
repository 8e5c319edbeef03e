#include "mpeg_ts_overview/contents/contents.h"

#include "mpeg_ts_overview/tables/table_home.h"
#include "mpeg_ts_overview/tables/table_key.h"

void recording_contents::on_packet(const ts_packet &packet, const packet_sequence &sequence)
{
    if (headers.wants(packet.pid)) headers.on_packet(packet, sequence);
    if (has_teletext[packet.pid]) teletext.on_packet(packet, sequence);
}

void recording_contents::on_section(const table_section &section)
{
    if (directory.is(section.pid, pid_use::splices))
        cues.on_section(section, map.role_of(section.pid), clocks);
    if (!is_current(section)) return;
    if (map.is_current_map(section)) on_map(section);
    if (!is_on_own_pid(directory, section.pid, section.header.table_id)) return;
    clock.on_section(section);
    if (!is_long(section)) return;
    services.on_section(section);
    network.on_section(section);
    guide.on_section(section);
}

void recording_contents::on_map(const table_section &section)
{
    const auto *const streams = descriptions.on_current_map(section);
    if (streams == nullptr) return;
    for (const auto &[pid, description] : *streams) {
        if (description.family) headers.look_for(pid, *description.family);
        if (has_teletext[pid] && !description.is_teletext) teletext.on_other_contents(pid);
        has_teletext[pid] = description.is_teletext;
    }
}

void recording_contents::on_sync_loss()
{
    headers.on_sync_loss();
    teletext.on_sync_loss();
}

void recording_contents::finish(overview &found)
{
    headers.on_end();
    describe_programs(found);
    found.guide = guide.finish();
    found.cues = cues.finish();
    found.teletext = teletext.finish();
    found.clock = clock.facts();
    note_limits(found);
}

void recording_contents::describe_programs(overview &found) const
{
    transport_stream_facts &stream = found.transport_stream;
    const std::optional<uint16_t> stream_id = map.transport_stream_id();

    stream.transport_stream_id = stream_id;
    stream.original_network_id = services.original_network_id();
    if (!stream.original_network_id && stream_id) stream.original_network_id = network.network_of(*stream_id);
    stream.network_name = network.network_name();

    descriptions.add_to(found.programs, found.pids, found.rates, headers);
    for (program_facts &program : found.programs) {
        if (stream.original_network_id && stream_id) {
            const auto number = network.channel_of(*stream.original_network_id, *stream_id, program.number);
            if (number) program.channel = std::to_string(*number);
        }
        services.add_to(program);
    }
}

void recording_contents::note_limits(overview &found) const
{
    const auto note = [&](const char *what, uint64_t limit, uint64_t dropped) {
        if (dropped > 0) found.limits_reached.push_back({what, limit, dropped});
    };
    note("services", service_limit, services.not_kept());
    note("channel numbers", channel_number_limit, network.not_kept());
    note("guide", guide_event_limit, found.guide.not_kept);
    note("guide texts", guide_text_limit, found.guide.text_bytes_not_kept);
    note("cues", cue_limit, found.cues.not_kept);
    note("headers sought", sought_header_limit, headers.not_found());
    note("teletext PIDs", teletext_pid_limit, teletext.pids_not_kept());
    note("teletext", teletext_page_limit, found.teletext.not_kept);
}
