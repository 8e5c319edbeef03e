// Packets as meters get them, without bytes where none are read.
#pragma once

#include "mpeg_ts_overview/input/packet.h"
#include "mpeg_ts_overview/model/sequence.h"

#include <cstdint>
#include <optional>

constexpr int64_t ms = ticks_per_second / 1000; ///< ticks of a millisecond

inline moment moment_at(uint64_t packet, std::optional<int64_t> ticks, int64_t stretch = 0)
{
    moment at;
    at.packet = packet;
    at.byte = packet * 188;
    at.ticks = ticks;
    at.stretch = stretch;
    return at;
}

inline moment extrapolated(moment at)
{
    at.extrapolated = true;
    return at;
}

inline ts_packet packet_of(uint16_t pid, const moment &at)
{
    ts_packet packet;
    packet.pid = pid;
    packet.adaptation_field_control = 3;
    packet.at = at;
    return packet;
}

inline ts_packet pcr_packet(uint16_t pid, const moment &at, int64_t PCR)
{
    ts_packet packet = packet_of(pid, at);
    packet.PCR = static_cast<uint64_t>(PCR);
    return packet;
}

inline ts_packet flagged(ts_packet packet)
{
    packet.discontinuity_indicator = true;
    return packet;
}

inline packet_sequence copy_of_the_packet_before()
{
    packet_sequence sequence;
    sequence.duplicate = true;
    return sequence;
}
