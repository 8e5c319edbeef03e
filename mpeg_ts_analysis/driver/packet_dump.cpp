#include "mpeg_ts_analysis/driver/packet_dump.h"

#include "mpeg_ts_analysis/driver/pes_dump.h"
#include "mpeg_ts_analysis/health/tracking.h"
#include "mpeg_ts_analysis/report/direct_line.h"
#include "mpeg_ts_analysis/report/hex_dump.h"
#include "mpeg_ts_analysis/report/invariant.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"

#include <cstddef>

namespace {

constexpr double ticks_per_second = 27000000.0;

/// Printed for every packet of a dump, so its numbers are put down directly. As a format it begins
/// "@%-8llu (t=%.7f) TS PACKET: PID=0x%04x CONT=%-2u ERR=%u PRI=%u SCRAM=%u".
void print_header_line(const mpeg_ts_packet &tsp, unsigned long long offset, double t)
{
    direct_line line;

    line.text("@").decimal_left_aligned(offset, 8);
    line.text(" (t=").fixed_point(t, 7);
    line.text(") TS PACKET: PID=0x").hexadecimal(tsp.pid, 4);
    line.text(" CONT=").decimal_left_aligned(tsp.continuity_counter, 2);
    line.text(" ERR=").digit(tsp.transport_error_indicator);
    line.text(" PRI=").digit(tsp.transport_priority);
    line.text(" SCRAM=").digit(tsp.transport_scrambling_control);
    if (tsp.adaptation_field_control & 2) {
        invariant(tsp.adaptation_field != NULL);
        const auto adaptation_size = static_cast<unsigned>(tsp.adaptation_field_fence - tsp.adaptation_field);
        const auto payload_size =
            static_cast<unsigned>(tsp.packet + settings.packet_size - tsp.adaptation_field_fence);
        if (tsp.adaptation_field_control == 2)
            line.text(" AFC=ADAPTATION[").decimal(adaptation_size, 3).text("    ] 0x");
        else
            line.text(" AFC=ADAPT+PAYL[")
                .decimal(adaptation_size, 3)
                .text("+")
                .decimal(payload_size, 3)
                .text("] 0x");
        line.hexadecimal(tsp.adaptation_field[0], 2);
    } else if (tsp.adaptation_field_control == 1) {
        line.text(" AFC=PAYLOAD                 ");
    } else {
        line.text(" AFC=ILLEGAL                 ");
    }
    if (tsp.payload_unit_start_indicator) line.text(" UNIT_START");
    if (tsp.arrival_time != 0) line.text(" TIME=").decimal(tsp.arrival_time, 1).text(" ");
    line.text("\n");
}

void report_illegal_adaptation_field_control()
{
    report_line("!!! ALARM: Illegal adapation field control value 0");
    errors.illegal_afc_errors++;
    errors.priority2_errors++;
}

void print_adaptation_summary(const mpeg_ts_packet &tsp)
{
    report_printf("  Adaptation: DISCON=%u RAND=%u ESPRI=%u PCR=%u OPCR=%u SPLICE=%u TSPRIV=%u AFEXT=%u\n",
                  tsp.discontinuity_indicator, tsp.random_access_indicator,
                  tsp.elementary_stream_priority_indicator, tsp.PCR_flag, tsp.OPCR_flag,
                  tsp.splicing_point_flag, tsp.transport_private_data_flag,
                  tsp.adaptation_field_extension_flag);
    if (tsp.PCR_flag)
        report_printf("    PCR: %llu / 27MHz = %.6f\n", tsp.PCR,
                      static_cast<double>(tsp.PCR) / ticks_per_second);
    if (tsp.OPCR_flag)
        report_printf("    OPCR: %llu / 27MHz = %.6f\n", tsp.OPCR,
                      static_cast<double>(tsp.OPCR) / ticks_per_second);
    if (tsp.splicing_point_flag) report_printf("    Splice countdown: %u\n", tsp.splice_countdown);
    if (tsp.transport_private_data_flag)
        report_printf("    TS Private data length: %u\n", tsp.transport_private_data_length);
    if (tsp.adaptation_field_extension_flag)
        report_printf("    Adaptation field ext length: %u\n", tsp.adaptation_field_extension_length);
}

const uint8_t *end_within(const uint8_t *start, unsigned length, const uint8_t *fence)
{
    return fence - start < static_cast<ptrdiff_t>(length) ? fence : start + length;
}

void print_adaptation_bytes(const mpeg_ts_packet &tsp)
{
    report_line("  Adaptation field:");
    report_hex_rows(tsp.adaptation_field, tsp.adaptation_field_fence);
    if (tsp.transport_private_data != nullptr) {
        report_line("  Transport stream private data (in adaptation field):");
        report_hex_rows(tsp.transport_private_data,
                        end_within(tsp.transport_private_data, tsp.transport_private_data_length, tsp.fence));
    }
    if (tsp.adaptation_field_extension != nullptr) {
        report_line("  Adaptation field extension (in adaptation field):");
        report_hex_rows(
            tsp.adaptation_field_extension,
            end_within(tsp.adaptation_field_extension, tsp.adaptation_field_extension_length, tsp.fence));
    }
}

void print_payload(const mpeg_ts_packet &tsp)
{
    report_line("  Payload:");
    report_hex_and_text_rows(tsp.payload, tsp.fence);
    const mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_get(tsp.pid);
    if (tsp.payload_unit_start_indicator && t != nullptr && !carries_sections(t->type))
        print_pes_header(tsp.payload, tsp.fence, tsp.pid);
}

} // namespace

void dump_packet(const mpeg_ts_packet *packet, unsigned long long offset, double t)
{
    const mpeg_ts_packet &tsp = *packet;

    print_header_line(tsp, offset, t);
    if (tsp.adaptation_field_control == 0) report_illegal_adaptation_field_control();
    if (tsp.adaptation_field != nullptr) print_adaptation_summary(tsp);
    if (settings.dump_ts_mode != dump_ts_contents) return;
    if (tsp.adaptation_field != nullptr) print_adaptation_bytes(tsp);
    if (tsp.payload != nullptr) print_payload(tsp);
}
