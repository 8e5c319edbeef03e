#include "mpeg_ts_analysis/tables/pmt.h"

#include "mpeg12_ts/program_map.h"
#include "mpeg_ts_analysis/descriptors/descriptor_loop.h"
#include "mpeg_ts_analysis/health/clocks.h"
#include "mpeg_ts_analysis/health/tracking.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"
#include "mpeg_ts_analysis/tables/stream_type.h"
#include "mpeg_ts_analysis/tables/table_print.h"

#include <cstring>

namespace {

constexpr uint8_t private_pes_stream_type = 0x06;
constexpr uint8_t splice_information_stream_type = 0x86;
constexpr uint8_t registration_tag = 0x05;
constexpr uint8_t teletext_tag = 0x56;
constexpr uint8_t AC3_tag = 0x6A;

/// The next descriptor that lies whole in [p, fence), or null. The one after it begins at p + 2 + p[1].
const uint8_t *whole_descriptor(const uint8_t *p, const uint8_t *fence)
{
    return fence - p >= 2 && fence - p >= 2 + p[1] ? p : nullptr;
}

bool is_registered_as_HDMV(const uint8_t *p, const uint8_t *fence)
{
    for (; whole_descriptor(p, fence) != nullptr; p += 2 + p[1])
        if (p[0] == registration_tag && p[1] >= 4 && std::memcmp(p + 2, "HDMV", 4) == 0) return true;
    return false;
}

/// A Blu-ray stream has the ATSC stream types and descriptors too.
void detect_bdmv(const uint8_t *p, const uint8_t *fence)
{
    if (!is_registered_as_HDMV(p, fence)) return;
    if (settings.bdmv_mode == -1) settings.bdmv_mode = 1;
    if (settings.atsc_mode == -1) settings.atsc_mode = 1;
}

/// What a stream of private PES packets is, by the first descriptor that tells.
uint16_t private_pes_kind(const uint8_t *p, const uint8_t *fence)
{
    for (; whole_descriptor(p, fence) != nullptr; p += 2 + p[1]) {
        if (p[0] == teletext_tag) return TRACK_TELETEXT;
        if (p[0] == AC3_tag) return TRACK_AC3;
    }
    return private_pes_stream_type;
}

uint16_t kind_of(const mpeg_ts_pat_map_stream &stream)
{
    if (stream.stream_type == private_pes_stream_type)
        return private_pes_kind(stream.ES_info, stream.ES_info + stream.ES_info_length);
    if (stream.stream_type == splice_information_stream_type) return TRACK_SCTE35;
    return stream.stream_type;
}

void track_stream(const mpeg_ts_pat_map_stream &stream, uint16_t program_number)
{
    const uint16_t kind = kind_of(stream);
    mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_start(stream.elementary_PID, kind, program_number);
    if (t == nullptr) {
        report_printf("!!! Unable to begin tracking the stream PID 0x%04x type=0x%04x\n",
                      stream.elementary_PID, kind);
        return;
    }
    report_printf("    Now tracking PID 0x%04x type=0x%04x\n", stream.elementary_PID, kind);
    if (kind == TRACK_SCTE35) mpeg_ts_pid_tracking_give_storage(t, private_section_storage);
}

void on_stream(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
               const mpeg_ts_pat_map_stream &stream)
{
    report_printf("    Stream type=0x%02x(%s) PID=0x%04x es_info_length=%u\n", stream.stream_type,
                  stream_type_name(stream.stream_type), stream.elementary_PID, stream.ES_info_length);
    descriptor_loop(t, stream.ES_info, stream.ES_info + stream.ES_info_length);
    if (h->current_next_indicator) track_stream(stream, t->program_number);
    if (settings.dump_ts_mode != dump_ts_off || settings.dump_descriptors_mode != dump_descriptors_none)
        report_line("");
}

// kept: 0x1FFF, which means that there is no PCR, is a PID like any other.
void track_pcr_pid(uint16_t pcr_pid, uint16_t program_number)
{
    if (mpeg_ts_pid_tracking_get(pcr_pid) != nullptr) {
        report_line("    PCR is a stream already being tracked");
        return;
    }
    mpeg_ts_pid_tracking_start(pcr_pid, TRACK_PURE_PCR, program_number);
    report_printf("    PCR not related to a stream, tracking PID 0x%04x as pure PCR\n", pcr_pid);
}

} // namespace

void on_ts_program_map_table(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h, const uint8_t *base,
                             const uint8_t *fence)
{
    mpeg_ts_pat_map_header map;

    report_table_heading("* Program Map Table", h);
    report_printf("    Program ID:                       0x%04x\n", h->table_id_extension);
    report_version_and_section(h);
    if (!mpeg_ts_pat_map_header_decode(&map, base, fence)) {
        report_line("!!! Failed to parse PMT header");
        if (h->current_next_indicator) t->last_version = h->version_number;
        return;
    }

    report_printf("    PCR PID:                          0x%04x\n", map.PCR_PID);
    report_printf("    Program info length:              %u bytes\n", map.program_info_length);
    detect_bdmv(map.program_info, map.program_info + map.program_info_length);
    descriptor_loop(t, map.program_info, map.program_info + map.program_info_length);
    for (unsigned i = 0; i < map.stream_count; ++i) on_stream(t, h, map.streams[i]);

    if (!h->current_next_indicator) return;
    track_pcr_pid(map.PCR_PID, t->program_number);
    program_clock *const clock = program_clock_get(t->program_number);
    if (clock != nullptr) clock->pcr_pid = map.PCR_PID;
    t->last_version = h->version_number;
}
