#include "mpeg_ts_analysis/tables/splice_insert.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/report/report.h"

namespace {

constexpr double ticks_per_second = 90000.0;

double seconds_of(unsigned long long ticks)
{
    return static_cast<double>(ticks) / ticks_per_second;
}

} // namespace

const uint8_t *scte35_splice_time(const uint8_t *p, const uint8_t *fence)
{
    bit_reader in(p, fence);

    report_line("    splice_time() [ANSI/SCTE-35 2016 Table 13 Section 9.4.1]");
    const unsigned time_specified_flag = in.bits(1);
    report_printf("        time_specified_flag:                %u\n", time_specified_flag);
    if (!time_specified_flag) return p + 1;
    report_printf("        reserved:                           0x%x\n", in.bits(6));
    const unsigned long long pts_time = in.bits64(33);
    report_printf("        pts_time:                           %llu (%.3f sec)\n", pts_time,
                  seconds_of(pts_time));
    return p + 5;
}

const uint8_t *scte35_break_duration(const uint8_t *p, const uint8_t *fence)
{
    bit_reader in(p, fence);

    // kept: the year.
    report_line("    break_duration() [ANSI/SCTE-35 3016 Table 14 Section 9.4.2]");
    report_printf("        auto_return:                    %u\n", in.bits(1));
    report_printf("        reserved:                       0x%x\n", in.bits(6));
    const unsigned long long duration = in.bits64(33);
    report_printf("        duration:                       %llu (%.3f sec)\n", duration,
                  seconds_of(duration));
    return p + 5;
}

namespace {

/// The components of a splice that is not of a whole program. Returns one past the last.
const uint8_t *splice_components(const uint8_t *p, const uint8_t *fence, bool splice_immediate_flag)
{
    bit_reader count(p++, fence);

    const unsigned component_count = count.bits(8);
    report_printf("        component_count:                %u\n", component_count);
    for (unsigned i = 0; i < component_count; ++i) {
        bit_reader in(p++, fence);
        report_printf("            component_tag:              0x%02x\n", in.bits(8));
        if (!splice_immediate_flag) p = scte35_splice_time(p, fence);
    }
    return p;
}

} // namespace

const uint8_t *scte35_splice_insert(const uint8_t *p, const uint8_t *fence)
{
    bit_reader in(p, fence);

    report_line("    splice_insert() [ANSI/SCTE-35 2016 Table 9 Section 9.3.3]");
    report_printf("        splice_event_id:                0x%08x\n", in.bits(32));
    const unsigned splice_event_cancel_indicator = in.bits(1);
    report_printf("        splice_event_cancel_indicator:  %u\n", splice_event_cancel_indicator);
    report_printf("        reserved:                       0x%02x\n", in.bits(7));
    if (splice_event_cancel_indicator) return p + 5;

    report_printf("        out_of_network_indicator:       %u\n", in.bits(1));
    const unsigned program_splice_flag = in.bits(1);
    report_printf("        program_splice_flag:            %u\n", program_splice_flag);
    const unsigned duration_flag = in.bits(1);
    report_printf("        duration_flag:                  %u\n", duration_flag);
    const unsigned splice_immediate_flag = in.bits(1);
    report_printf("        splice_immediate_flag:          %u\n", splice_immediate_flag);
    report_printf("        reserved:                       0x%x\n", in.bits(4));
    p += 6;
    if (!program_splice_flag)
        p = splice_components(p, fence, splice_immediate_flag);
    else if (!splice_immediate_flag)
        p = scte35_splice_time(p, fence);
    if (duration_flag) p = scte35_break_duration(p, fence);

    bit_reader rest(p, fence);
    report_printf("        unique program id:              0x%04x\n", rest.bits(16));
    report_printf("        avail_num:                      0x%02x\n", rest.bits(8));
    report_printf("        avails_expected:                0x%02x\n", rest.bits(8));
    return p + 4;
}

void scte35_avail_descriptor(const uint8_t *p, const uint8_t *fence)
{
    bit_reader in(p, fence);
    bit_reader characters(p, fence);
    char text[5];

    report_line("        avail_descriptor() [ANSI/SCTE-35 2017 Table 17 Section 10.3.1]");
    if (!in.has(8)) return;
    characters.text(text);
    report_printf("            identifier:         0x%08x '%s'\n", in.bits(32), text);
    characters.text(text);
    report_printf("            provider_avail_id:  0x%08x '%s'\n", in.bits(32), text);
}
