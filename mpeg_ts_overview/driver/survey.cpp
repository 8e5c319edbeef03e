#include "mpeg_ts_overview/driver/survey.h"

void survey::begin_times(const packet_times &times)
{
    pids.begin(times);
    rates.begin(times);
}

void survey::end_times()
{
    pids.end();
    rates.end();
}

void survey::begin_stretch(const moment &) {}

void survey::on_break(const time_break &ended)
{
    if (breaks.kept.size() < time_break_limit)
        breaks.kept.push_back(ended);
    else
        breaks.not_kept++;
    if (ended.kind == time_break_kind::sync_loss) continuity.on_sync_loss();
}

void survey::on_run(const packet_run &run, const uint8_t *)
{
    rates.on_packets(run.pid, run.first, run.count);
    pids.on_run(run);
    continuity.on_run(run);
}

void survey::on_packet(const ts_packet &packet)
{
    rates.on_packets(packet.pid, packet.at.packet, 1);
    pids.on_packet(packet);
    continuity.on_packet(packet);
}

void survey::on_bad_slot(const moment &at)
{
    rates.on_bad_slot(at.packet);
}

void survey::finish(const timeline &, const moment &, overview &found)
{
    found.pids = pids.finish();
    for (pid_facts &row : found.pids) continuity.add_to(row);
    found.rates = rates.finish(found.recording.duration_ticks);
    found.breaks = breaks;
}
