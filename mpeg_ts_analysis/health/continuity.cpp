#include "mpeg_ts_analysis/health/continuity.h"

#include "mpeg12_ts/bytes.h"
#include "mpeg_ts_analysis/health/tracking.h"
#include "mpeg_ts_analysis/report/invariant.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"

namespace {

void on_continuity_error(const mpeg_ts_packet *tsp, unsigned expected)
{
    errors.priority1_errors++;
    errors.continuity_errors++;
    report_printf(
        "!!! ALARM: TS continuity counter error in PID 0x%04x (expect=%u cur=%u) adap=%u payload=%u\n",
        tsp->pid, expected, tsp->continuity_counter, tsp->adaptation_field_control >> 1,
        tsp->adaptation_field_control & 1);

    last_continuity_counter[tsp->pid] = tsp->continuity_counter;
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(tsp->pid);
    if (t != nullptr && carries_sections(t->type)) mpeg_ts_table_assembly_discard(&t->tbl_asm);
}

} // namespace

// kept: neither the discontinuity_indicator nor the one duplicate that the standard allows is honoured.
void p1_continuity_tracking(const mpeg_ts_packet *tsp)
{
    invariant(tsp->pid <= 0x1FFF);
    uint8_t &last = last_continuity_counter[tsp->pid];

    if (last == no_continuity_counter) {
        last = tsp->continuity_counter;
        return;
    }
    if (tsp->adaptation_field_control & 1) last = (last + 1) & 0xF;
    if (tsp->continuity_counter != last) on_continuity_error(tsp, last);
}

namespace {

/// The first PID of those that the main loop looks out for: ATSC M/H, the ATSC base PID, padding.
constexpr unsigned first_special_pid = 0x1FF9;

/// True when a packet, at its sync byte, is clear and has no PCR: then only its header matters to the checks.
inline bool is_clear_without_pcr(const uint8_t *p, uint32_t header)
{
    constexpr uint32_t sync_and_scrambling = 0xFF0000C0;
    constexpr uint32_t has_adaptation_field = 0x00000020;
    constexpr unsigned longest_field = mpeg_ts_packet_size - 5;
    constexpr uint8_t PCR_flag = 0x10;

    if ((header & sync_and_scrambling) != uint32_t{mpeg_ts_sync_byte} << 24) return false;
    if ((header & has_adaptation_field) == 0) return true;
    return p[4] <= longest_field && (p[4] == 0 || (p[5] & PCR_flag) == 0);
}

/// True for a PID whose packets go nowhere but to the continuity check.
inline bool is_only_counted(unsigned pid)
{
    const uint16_t type = pid_tracking[pid].type;
    return pid < first_special_pid && !carries_sections(type) && type != TRACK_TELETEXT;
}

/// Passes over the packets that follow one with payload only and differ from it in nothing but the counter,
/// which must go on, and the error, unit start and priority marks. Stores the last counter.
inline const uint8_t *skip_run(const uint8_t *p, const uint8_t *fence, unsigned packet_size, uint32_t header,
                               uint8_t *last)
{
    constexpr uint32_t marks = 0x00E00000;
    const unsigned prefix_size = packet_size - mpeg_ts_packet_size;
    const uint32_t same = header & ~0xFu;
    uint32_t counter = (header + 1) & 0xF;

    for (; fence - p >= static_cast<long>(packet_size); p += packet_size) {
        if (((big_endian_32(p + prefix_size) ^ same ^ counter) & ~marks) != 0) break;
        counter = (counter + 1) & 0xF;
    }
    *last = (counter + 15) & 0xF;
    return p;
}

} // namespace

const uint8_t *p1_continuity_skip_uneventful(const uint8_t *p, const uint8_t *fence, unsigned packet_size)
{
    const unsigned prefix_size = packet_size - mpeg_ts_packet_size;
    const bool padding_goes_nowhere = pid_tracking[mpeg_ts_padding_pid].type == TRACK_NONE;

    while (fence - p >= static_cast<long>(packet_size)) {
        const uint8_t *const start = p + prefix_size;
        const uint32_t header = big_endian_32(start);
        if (!is_clear_without_pcr(start, header)) break;
        const unsigned pid = (header >> 8) & 0x1FFF;
        if (!is_only_counted(pid)) {
            if (pid != mpeg_ts_padding_pid || !padding_goes_nowhere) break;
            p += packet_size;
            continue;
        }
        const unsigned has_payload = (header >> 4) & 1;
        const uint8_t counter = header & 0xF;
        uint8_t &last = last_continuity_counter[pid];
        if (((last + has_payload) & 0xF) != counter) break;
        last = counter;
        p += packet_size;
        if (((header >> 4) & 3) == 1) p = skip_run(p, fence, packet_size, header, &last);
    }
    return p;
}
