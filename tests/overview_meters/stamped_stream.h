// A meter of time stamps, and packets that carry them.
#pragma once

#include "mpeg_ts_overview/meters/time_stamps.h"
#include "tests/overview_meters/meter_packets.h"
#include "tests/support/stream_builder.h"

#include <cstdint>
#include <vector>

constexpr int64_t stamp_ms = 90; ///< 90 kHz in a millisecond
constexpr uint16_t video_pid = 0x101;
constexpr uint16_t audio_pid = 0x102;
constexpr uint16_t clock_pid = 0x100;

struct stamped_stream {
    stream_role role_of(uint16_t pid) const
    {
        stream_role role;
        if (pid == video_pid) role.kind = stream_kind::video;
        if (pid == audio_pid) role.kind = stream_kind::audio;
        if (role.kind != stream_kind::other) role.pcr_pid = pcr_pid;
        if (role.kind == stream_kind::video) role.still_pictures = still_pictures;
        return role;
    }

    /// A packet of the PID that starts a unit.
    ts_packet unit_start(uint16_t pid, const moment &at, bytes payload)
    {
        held = std::move(payload);
        ts_packet packet = packet_of(pid, at);
        packet.payload_unit_start_indicator = true;
        packet.payload = held.data();
        packet.fence = held.data() + held.size();
        return packet;
    }

    void add(const ts_packet &packet, const packet_sequence &sequence = {})
    {
        stretches.see(packet.at);
        clocks.on_packet(packet, sequence);
        meter.on_packet(packet, sequence, role_of(packet.pid));
    }
    void unit(uint16_t pid, const moment &at, int64_t pts, int64_t dts = -1)
    {
        add(unit_start(pid, at, pes_packet(0xE0, {}, pts, dts)));
    }
    void pcr(const moment &at, int64_t PCR) { add(pcr_packet(clock_pid, at, PCR)); }

    std::vector<time_stamp_facts> finish(const moment &at)
    {
        end.at = at;
        if (at.ticks) end.bucket_ticks = first_bucket_ticks;
        if (at.ticks) end.buckets = 3;
        return meter.finish(end, [this](uint16_t pid) { return role_of(pid); });
    }
    /// The row of the only PID.
    time_stamp_facts row()
    {
        const std::vector<time_stamp_facts> rows = finish(moment_at(100000, std::nullopt));
        return rows.size() == 1 ? rows[0] : time_stamp_facts();
    }

    time_stretches stretches{100 * ms};
    program_clocks clocks;
    time_stamp_meter meter{clocks, stretches, 700 * ms};
    recording_end end;
    uint16_t pcr_pid = clock_pid;
    bool still_pictures = false;
    bytes held;
};
