#include "mpeg_ts_analysis/teletext/teletext_pes.h"

#include "mpeg12_ts/bytes.h"
#include "mpeg_ts_analysis/report/names.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"
#include "mpeg_ts_analysis/teletext/teletext_unit.h"

namespace {

constexpr uint32_t private_stream_1_start_code = 0x000001BD;
constexpr long packet_length_fence = 6; ///< bytes up to and with PES_packet_length
constexpr long header_data_offset = 9;
constexpr long teletext_header_data_length = 0x24; ///< makes the PES header the 45 bytes that are prescribed

constexpr named_value data_unit_names[] = {
    {0x02, "EBU Teletext non-subtitle data"},
    {0x03, "EBU Teletext subtitle data"    },
};
static_assert(is_ascending(data_unit_names));

void print_data_units(const uint8_t *p, const uint8_t *end, bool is_EBU_data)
{
    while (end - p >= 2) {
        const uint8_t data_unit_id = p[0];
        const uint8_t data_unit_length = p[1];
        const uint8_t *const data = p + 2;
        if (end - data < data_unit_length) return;

        report_printf("            data_unit_id=0x%02x %s\n", data_unit_id,
                      name_of(data_unit_names, data_unit_id));
        report_printf("            data_unit_length=0x%02x\n", data_unit_length);
        if (is_EBU_data) {
            if (data_unit_length != teletext_data_unit_length)
                report_line("!!! EBU Teletext packet with unusual size");
            if (data_unit_length >= teletext_data_unit_length) teletext_decode_data_unit(data);
        }
        p = data + data_unit_length;
    }
}

void print_data_field(const uint8_t *p, const uint8_t *end)
{
    const uint8_t data_identifier = p[0];
    const bool is_EBU_data = data_identifier >> 4 == 1;

    report_line("        PES_data_field() [Teletext/ETSI EN 300 472 section 4.3 table 1]");
    report_printf("            data_identifier=0x%02x %s\n", data_identifier, is_EBU_data ? "EBU data" : "");
    print_data_units(p + 1, end, is_EBU_data);
}

} // namespace

void on_teletext_packet(const mpeg_ts_pid_tracking *, const mpeg_ts_packet *packet)
{
    if (!packet->payload_unit_start_indicator) {
        report_line("!!! Teletext TS packet with payload_unit_start == 0 is unusual");
        return;
    }
    const uint8_t *const payload = packet->payload;
    if (payload == nullptr || packet->fence - payload < 8) return;
    if (big_endian_32(payload) != private_stream_1_start_code) {
        report_line("!!! Unusual PES start code for teletext");
        return;
    }
    const long PES_packet_length = big_endian_16(payload + 4);
    if (PES_packet_length <= 4) return;
    if (packet->fence - payload < packet_length_fence + PES_packet_length) {
        report_line("!!! PES packet extends past fence");
        return;
    }
    const uint8_t *const end = payload + packet_length_fence + PES_packet_length;
    const long PES_header_data_length = payload[8];
    if (end - payload < header_data_offset + PES_header_data_length) {
        report_line("!!! PES header longer than packet");
        return;
    }
    if (PES_header_data_length != teletext_header_data_length) {
        report_line("!!! PES header has nonstandard size for teletext");
        return;
    }
    const uint8_t *const data_field = payload + header_data_offset + PES_header_data_length;
    if (data_field == end || settings.dump_descriptors_mode == dump_descriptors_none) return;
    print_data_field(data_field, end);
}
