#include "mpeg_ts_overview/meters/pids.h"

void pids_meter::add_row(uint16_t pid, uint64_t first)
{
    row_of[pid] = static_cast<uint16_t>(rows.size());
    pid_facts &row = rows.emplace_back();
    row.pid = pid;
    row.first_packet = first;
    row.first_ticks = times.ticks_of(first);
}

void pids_meter::end()
{
    for (const uint16_t pid : touched) rows[row_of[pid]].last_ticks = times.ticks_of(states[pid].last_packet);
    touched.clear();
}

void pids_meter::on_packet(const ts_packet &packet)
{
    count(packet.pid, packet.at.packet, 1);
    pid_facts &row = rows[row_of[packet.pid]];
    if (packet.transport_error_indicator) {
        row.transport_errors++;
        return;
    }
    row.scrambled += packet.transport_scrambling_control != 0;
    row.unit_starts += packet.payload_unit_start_indicator;
    row.random_access_points += packet.random_access_indicator;
    row.without_payload += packet.adaptation_field_control == 2;
    row.reserved_control += packet.adaptation_field_control == 0;
    row.discontinuities += packet.discontinuity_indicator;
}

std::vector<pid_facts> pids_meter::finish()
{
    for (pid_facts &row : rows) {
        row.packets = states[row.pid].packets;
        row.last_packet = states[row.pid].last_packet;
    }
    return rows;
}
