#include "mpeg_ts_overview/meters/continuity.h"

#include "mpeg_ts_overview/tables/log_violation.h"

namespace {

constexpr unsigned modulus = 16;
/// A counter that is ahead by so much tells of lost packets, by more of packets out of order.
constexpr unsigned greatest_loss = 8;

} // namespace

packet_sequence continuity_meter::on_packet(const ts_packet &packet)
{
    counter_state &state = states[packet.pid];
    if (packet.pid == mpeg_ts_padding_pid) return {};
    if (packet.transport_error_indicator) {
        state.known = false;
        return {};
    }
    if (packet.adaptation_field_control == 0) return {};

    packet_sequence sequence;
    if (state.known && packet.repeats_previous) {
        sequence = on_copy(packet, state);
    } else if (state.known) {
        const unsigned has_payload = packet.adaptation_field_control & 1;
        const unsigned ahead = (packet.continuity_counter - state.counter - has_payload) % modulus;
        sequence.broken = ahead != 0;
        sequence.error = ahead != 0 && !packet.discontinuity_indicator;
        if (sequence.error) {
            counts &of_pid = counted[packet.pid];
            if (ahead <= greatest_loss)
                of_pid.lost += ahead;
            else
                of_pid.out_of_order++;
            on_error(packet, ahead, has_payload != 0 && ahead == modulus - 1);
        }
    }
    if (sequence.error) sequence.packet_before = state.last_packet;
    state.after_duplicate = sequence.duplicate;
    state.known = true;
    state.counter = packet.continuity_counter;
    state.last_packet = packet.at.packet;
    return sequence;
}

/// A packet may be sent twice; a further copy is an error that adds nothing else.
packet_sequence continuity_meter::on_copy(const ts_packet &packet, counter_state &state)
{
    packet_sequence sequence;
    sequence.duplicate = true;
    sequence.error = state.after_duplicate;
    if (sequence.error) {
        counted[packet.pid].errors++;
        log_violation(log, packet.at, packet.pid, [] { return "a packet sent more than twice"; });
    } else {
        counted[packet.pid].duplicates++;
    }
    return sequence;
}

void continuity_meter::on_error(const ts_packet &packet, unsigned ahead, bool same_counter)
{
    counted[packet.pid].errors++;
    log_violation(log, packet.at, packet.pid, [&]() -> std::string {
        if (same_counter) return "counter unchanged, other bytes";
        if (ahead > greatest_loss) return "packet out of order";
        return std::to_string(ahead) + (ahead == 1 ? " packet lost" : " packets lost");
    });
}

void continuity_meter::on_sync_loss()
{
    for (counter_state &state : states) state.known = false;
}

void continuity_meter::add_to(pid_facts &facts) const
{
    const auto of_pid = counted.find(facts.pid);
    if (of_pid == counted.end()) return;
    facts.duplicates = of_pid->second.duplicates;
    facts.continuity_errors = of_pid->second.errors;
    facts.lost_packets_estimate = of_pid->second.lost;
    facts.out_of_order = of_pid->second.out_of_order;
}
