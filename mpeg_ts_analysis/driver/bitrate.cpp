#include "mpeg_ts_analysis/driver/bitrate.h"

#include "mpeg12_ts/packet.h"
#include "mpeg_ts_analysis/health/truncate.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

constexpr unsigned excluded_limit = 64;
constexpr unsigned long long span = 810000000; // 30 seconds of the 27 MHz clock
constexpr double ticks_per_second = 27000000.0;

struct pcr_position {
    unsigned long long pcr = 0;
    unsigned long long offset = 0; ///< of the packet's first byte
    uint16_t pid = 0;
};

struct excluded_pids {
    uint16_t pids[excluded_limit] = {};
    unsigned count = 0;

    bool has(uint16_t pid) const
    {
        for (unsigned i = 0; i < count; ++i)
            if (pids[i] == pid) return true;
        return false;
    }
};

/// Reads up to the next packet with a PCR that is not scrambled. Returns false at the end of the file.
bool next_pcr(packet_file *file, unsigned packet_size, pcr_position *found)
{
    mpeg_ts_packet packet;

    while (const unsigned char *const p = packet_file_next(file, packet_size)) {
        if (!mpeg_ts_decode(&packet, p, packet_size)) continue;
        if (!packet.PCR_flag || packet.transport_scrambling_control != 0) continue;
        *found = {packet.PCR, packet_file_offset(file, p), packet.pid};
        return true;
    }
    return false;
}

bool first_pcr_of_another_pid(packet_file *file, unsigned packet_size, const excluded_pids &excluded,
                              pcr_position *first)
{
    while (next_pcr(file, packet_size, first))
        if (!excluded.has(first->pid)) return true;
    return false;
}

/// The last PCR of the first one's PID that is no more than the span away, or the first beyond it, or one
/// that goes back.
void last_pcr_of_span(packet_file *file, unsigned packet_size, const pcr_position &first,
                      pcr_position *second)
{
    pcr_position found;

    while (next_pcr(file, packet_size, &found)) {
        if (found.pid != first.pid) continue;
        *second = found;
        if (first.pcr > second->pcr || second->pcr >= first.pcr + span) return;
    }
}

/// Finds the two PCRs. Returns false when no PID has them. What one attempt leaves in second stays for the
/// next.
bool find_pcrs(packet_file *file, unsigned packet_size, pcr_position *first, pcr_position *second)
{
    excluded_pids excluded;

    for (;;) {
        if (!packet_file_rewind(file)) return false;
        if (!first_pcr_of_another_pid(file, packet_size, excluded, first)) return false;
        if (first->pid == 0) return false;
        last_pcr_of_span(file, packet_size, *first, second);
        if (second->pcr != 0 && second->offset != 0) return true;
        if (excluded.count == excluded_limit) return false;
        excluded.pids[excluded.count++] = first->pid;
    }
}

} // namespace

unsigned long long estimate_ts_bitrate(packet_file *file, unsigned packet_size)
{
    pcr_position first;
    pcr_position second;

    if (packet_size != mpeg_ts_packet_size && packet_size != mpeg_ts_m2ts_packet_size) return 0;
    const bool found = find_pcrs(file, packet_size, &first, &second);
    packet_file_rewind(file);
    if (!found || first.offset >= second.offset || first.pcr >= second.pcr) return 0;

    const double seconds = static_cast<double>(second.pcr - first.pcr) / ticks_per_second;
    const double rate = 8.0 * static_cast<double>(second.offset - first.offset) / seconds;
    std::fprintf(stderr, "Est bitrate: %.6f bit/sec\n", rate);
    // Two neighbouring PCR values, 85 GB apart, are more than 64 bits hold.
    return truncate_to_64_bits(std::floor(rate + 0.5));
}
