#include "mpeg_ts_overview/meters/program_clock.h"

#include "mpeg_ts_overview/meters/clock_arithmetic.h"

void program_clocks::on_packet(const ts_packet &packet, const packet_sequence &sequence)
{
    if (packet.transport_error_indicator || sequence.duplicate) return;
    uint16_t &number = number_of[packet.pid];

    if (packet.discontinuity_indicator && number != 0) references[number - 1u].valid = false;
    if (!packet.PCR) return;
    if (number == 0) {
        references.emplace_back();
        number = static_cast<uint16_t>(references.size());
    }
    references[number - 1u] = {static_cast<int64_t>(*packet.PCR), packet.at, true};
}

std::optional<int64_t> program_clocks::at(uint16_t pcr_pid, const moment &when) const
{
    const uint16_t number = number_of[pcr_pid];
    if (number == 0 || !references[number - 1u].valid) return std::nullopt;

    const reference &last = references[number - 1u];
    if (last.at.packet == when.packet) return last.PCR;
    const std::optional<int64_t> since = interval_between(last.at, when);
    if (!since) return std::nullopt;
    return forward_difference(0, last.PCR + *since, pcr_cycle_ticks);
}
