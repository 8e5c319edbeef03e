#include "mpeg_ts_analysis/driver/pes_dump.h"

#include "mpeg12_pes/pes_scanner.h"
#include "mpeg_ts_analysis/report/report.h"

namespace {

constexpr double ticks_per_second = 90000.0;
constexpr uint32_t private_stream_1 = 0x1BD;
constexpr uint32_t first_audio_stream = 0x1C0;
constexpr uint32_t last_video_stream = 0x1EF;

/// Scans until the header of a stream that is shown is found. Returns false when there is none.
bool find_header(mpeg_pes *pes, const uint8_t *payload, const uint8_t *fence)
{
    for (const uint8_t *start = payload;;) {
        const uint8_t *const next = mpeg_pes_scan(pes, start, fence);
        report_printf("PES %04x nxt=%p s=%p f=%p\n", pes->stream_id, next, start, fence);
        const bool shown = pes->stream_id == private_stream_1 ||
                           (pes->stream_id >= first_audio_stream && pes->stream_id <= last_video_stream);
        if (shown && pes->header != nullptr) return true;
        if (next == start || pes->done) return false;
        start = next;
    }
}

void print_fields(const mpeg_pes &pes, uint16_t pid)
{
    report_printf("  Payload PES header type MPEG-%u:\n", pes.mpeg_version);
    report_printf("    scrambling_control: %u\n", pes.PES_scrambling_control);
    report_printf("    PES_priority: %u\n", pes.PES_priority);
    report_printf("    data_alignment_indicator: %u\n", pes.data_alignment_indicator);
    report_printf("    copyright: %u  origial: %u  PTS_DTS_flags: %u\n", pes.copyright, pes.original_or_copy,
                  pes.PTS_DTS_flags);
    report_printf("    ESCR_flag: %u  ES_rate_flag: %u  DSM_trick_mode_flag: %u\n", pes.ESCR_flag,
                  pes.ES_rate_flag, pes.DSM_trick_mode_flag);
    report_printf("    additional_copy_info_flag: %u  PES_CRC_flag: %u  PES_extensions_flag: %u\n",
                  pes.additional_copy_info_flag, pes.PES_CRC_flag, pes.PES_extension_flag);
    report_printf("    PES_header_data_length: %u\n", pes.PES_header_data_length);
    report_printf("    PTS=%lld(%.3f) DTS=%lld(%.3f) for PID 0x%04x\n", pes.PTS,
                  static_cast<double>(pes.PTS) / ticks_per_second, pes.DTS,
                  static_cast<double>(pes.DTS) / ticks_per_second, pid);
}

} // namespace

void print_pes_header(const uint8_t *payload, const uint8_t *fence, uint16_t pid)
{
    mpeg_pes *const pes = mpeg_pes_create();
    if (pes == nullptr) return;
    if (find_header(pes, payload, fence)) print_fields(*pes, pid);
    mpeg_pes_destroy(pes);
}
