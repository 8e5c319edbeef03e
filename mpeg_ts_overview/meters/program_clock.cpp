#include "mpeg_ts_overview/meters/program_clock.h"

#include "mpeg_ts_overview/meters/clock_arithmetic.h"

void program_clocks::on_packet(const ts_packet &packet, const packet_sequence &sequence)
{
    if (packet.transport_error_indicator || sequence.duplicate || packet.pid == mpeg_ts_padding_pid) return;
    uint16_t &number = number_of[packet.pid];

    if (packet.discontinuity_indicator && number != 0) {
        reference &ended = references[number - 1u];
        ended.valid = false;
        ++ended.discontinuities;
    }
    if (!packet.PCR) return;
    if (number == 0) {
        references.emplace_back();
        number = static_cast<uint16_t>(references.size());
    }
    reference &last = references[number - 1u];
    const auto PCR = static_cast<int64_t>(*packet.PCR);
    if (last.valid && forward_difference(last.PCR, PCR, pcr_cycle_ticks) > longest_good_pcr_ticks)
        ++last.discontinuities;
    last.PCR = PCR;
    last.at = packet.at;
    last.valid = true;
}

std::optional<int64_t> program_clocks::at(uint16_t pcr_pid, const moment &when) const
{
    const uint16_t number = number_of[pcr_pid];
    if (number == 0 || !references[number - 1u].valid) return std::nullopt;

    const reference &last = references[number - 1u];
    if (last.at.packet == when.packet) return forward_difference(0, last.PCR, pcr_cycle_ticks);
    const std::optional<int64_t> since = interval_between(last.at, when);
    if (!since) return std::nullopt;
    return forward_difference(0, last.PCR + *since, pcr_cycle_ticks);
}

uint64_t program_clocks::discontinuities_of(std::optional<uint16_t> pcr_pid) const
{
    if (!pcr_pid || number_of[*pcr_pid] == 0) return 0;
    return references[number_of[*pcr_pid] - 1u].discontinuities;
}
