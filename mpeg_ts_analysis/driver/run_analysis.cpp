#include "mpeg_ts_analysis/driver/run_analysis.h"

#include "mpeg12_ts/new_record.h"
#include "mpeg_ts_analysis/driver/bitrate.h"
#include "mpeg_ts_analysis/driver/packet_dump.h"
#include "mpeg_ts_analysis/driver/packet_size.h"
#include "mpeg_ts_analysis/health/clocks.h"
#include "mpeg_ts_analysis/health/continuity.h"
#include "mpeg_ts_analysis/health/pcr_analysis.h"
#include "mpeg_ts_analysis/health/tracking.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"
#include "mpeg_ts_analysis/tables/table_dispatch.h"
#include "mpeg_ts_analysis/teletext/teletext_pes.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

constexpr uint16_t atsc_base_pid = 0x1FFB;
constexpr uint16_t atsc_mh_pid = 0x1FF9;

void settle_packet_size(packet_file *file)
{
    if (settings.packet_size_mode == -1) {
        unsigned char buffer[packet_size_detection_length] = {};
        const size_t length = packet_file_fill(file, sizeof(buffer));
        std::memcpy(buffer, file->next, length);
        const int detected = detect_packet_size(buffer, sizeof(buffer));
        if (detected == static_cast<int>(mpeg_ts_m2ts_packet_size))
            settings.packet_size_mode = 1;
        else if (detected == static_cast<int>(mpeg_ts_packet_size))
            settings.packet_size_mode = 0;
        else
            std::fprintf(stderr, "WARNING: autodetect failed, pktsz=%d\n", detected);
    }
    // kept: a failed detection reads 192-byte packets.
    settings.packet_size = settings.packet_size_mode == 0 ? mpeg_ts_packet_size : mpeg_ts_m2ts_packet_size;
}

void settle_bitrate(packet_file *file)
{
    if (settings.ts_bitrate == 0) {
        if (!settings.ts_bitrate_auto) return;
        report_line("* Attempting to auto-detect TS bitrate");
        settings.ts_bitrate = estimate_ts_bitrate(file, settings.packet_size);
        if (settings.ts_bitrate == 0) {
            report_line("!!! Autodetection failed");
            return;
        }
    }
    report_printf("* TS bitrate: %llu bits/sec\n", settings.ts_bitrate);
}

/// Not inlined: the path of every packet stays short.
[[gnu::noinline]] void detect_atsc(uint16_t pid)
{
    if (settings.assume_country != 0) return;
    if (pid == atsc_base_pid && settings.atsc_mode == -1) {
        report_line("* Packets of 1FFB imply ATSC standard stream");
        settings.atsc_mode = 1;
    }
    if (pid == atsc_mh_pid && settings.atsc_mh_mode == -1) {
        report_line("* Packets of 1FF9 imply ATSC M/H standard stream");
        settings.atsc_mh_mode = 1;
    }
}

void route(const mpeg_ts_packet *packet)
{
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(packet->pid);
    if (t == nullptr) return;
    if (carries_sections(t->type))
        on_ts_table_packet(t, packet);
    else if (t->type == TRACK_TELETEXT)
        on_teletext_packet(t, packet);
}

void on_packet(const mpeg_ts_packet *packet, unsigned long long offset)
{
    const bool padding = packet->pid == mpeg_ts_padding_pid;

    if (packet->pid == atsc_base_pid || packet->pid == atsc_mh_pid) detect_atsc(packet->pid);
    double t = -1.0;
    if (settings.ts_bitrate != 0)
        t = static_cast<double>(offset) * 8.0 / static_cast<double>(settings.ts_bitrate);
    if (packet->transport_scrambling_control != 0) return;

    if (settings.dump_ts_mode != dump_ts_off && !(padding && settings.skip_padding))
        dump_packet(packet, offset, t);
    if (!padding) {
        pcr_analysis(packet, t);
        p1_continuity_tracking(packet);
    }
    route(packet);
}

void scan(packet_file *file)
{
    const unsigned packet_size = settings.packet_size;
    mpeg_ts_packet packet;

    const bool with_dump = settings.dump_ts_mode != dump_ts_off;

    for (;;) {
        if (!with_dump) file->next = p1_continuity_skip_uneventful(file->next, file->fence, packet_size);
        const unsigned char *const p = packet_file_next(file, packet_size);
        if (p == nullptr) break;
        if (mpeg_ts_decode(&packet, p, packet_size)) on_packet(&packet, packet_file_offset(file, p));
    }
}

void print_summary()
{
    report_line("* Scan complete");
    report_printf("* Priority #1 errors: %llu\n", errors.priority1_errors);
    if (errors.continuity_errors != 0)
        report_printf("*   Continuity counter/missing packets:              %llu errors\n",
                      errors.continuity_errors);
    report_printf("* Priority #2 errors: %llu\n", errors.priority2_errors);
    if (errors.illegal_afc_errors != 0)
        report_printf("*   Illegal adaptation field control value:          %llu errors\n",
                      errors.illegal_afc_errors);
    report_line("* Priority #3 errors: 0");
}

} // namespace

int run_analysis(const char *path, size_t block_size)
{
    // Not on the stack, which might not find room to grow later, when memory is short.
    const std::unique_ptr<packet_file, decltype(&std::free)> file(new_record<packet_file>(), &std::free);

    if (file == nullptr) {
        std::fprintf(stderr, "mpeg_ts_analysis: not enough memory to read a file\n");
        return 1;
    }
    if (!packet_file_open(file.get(), path)) {
        std::fprintf(stderr, "Cannot open file '%s'\n", path);
        return 1;
    }
    file->block_size = block_size;

    settle_packet_size(file.get());
    report_printf("* Starting analysis of: %s\n", path);
    report_printf("* Packet size: %u bytes/packet\n", settings.packet_size);
    report_flush();
    settle_bitrate(file.get());
    report_flush();
    mpeg_ts_pid_tracking_init_tracking();

    scan_progress progress;
    progress_start(&progress, file->size);
    file->progress = &progress;
    scan(file.get());
    progress_end(&progress);
    if (file->error != 0)
        std::fprintf(stderr, "Cannot read file '%s': %s\n", path, std::strerror(file->error));
    print_summary();
    report_flush();

    program_clock_free_all();
    mpeg_ts_pid_tracking_free_all();
    packet_file_close(file.get());
    return 0;
}
