#include "mpeg_ts_overview/tables/standard.h"

#include "mpeg_ts_overview/tables/descriptor_loop.h"
#include "mpeg_ts_overview/tables/eit.h"
#include "mpeg_ts_overview/tables/nit.h"
#include "mpeg_ts_overview/tables/pat.h"
#include "mpeg_ts_overview/tables/pmt.h"
#include "mpeg_ts_overview/tables/psip.h"
#include "mpeg_ts_overview/tables/sdt.h"
#include "mpeg_ts_overview/tables/stream_type.h"
#include "mpeg_ts_overview/tables/table_home.h"
#include "mpeg_ts_overview/tables/table_key.h"
#include "mpeg_ts_overview/tables/tdt.h"

#include <algorithm>

namespace {

constexpr uint16_t selection_information_pid = 0x001F;
constexpr uint8_t selection_information_table_id = 0x7F;
constexpr uint16_t broadcaster_information_pid = 0x0024;
constexpr uint8_t broadcaster_information_table_id = 0xC4;
constexpr uint8_t system_management_descriptor = 0xFE; ///< ARIB STD-B10 6.2.21

bool is_dvb_table(uint8_t table_id)
{
    return (table_id >= nit_actual_table_id && table_id <= sdt_actual_table_id) ||
           table_id == sdt_other_table_id || table_id == bat_table_id || is_eit(table_id);
}

bool has_system_management(byte_range loop)
{
    descriptor_loop descriptors(loop);
    descriptor next;
    while (descriptors.next(next))
        if (next.tag == system_management_descriptor) return true;
    return false;
}

/// True when program_info or the ES_info of a stream is registered as HDMV.
bool is_blu_ray(const table_section &section)
{
    const std::optional<pmt> map = read_pmt(section);
    if (!map) return false;
    return is_registered(map->program_info, "HDMV") ||
           std::any_of(map->streams.begin(), map->streams.end(),
                       [](const pmt_entry &stream) { return is_registered(stream.ES_info, "HDMV"); });
}

} // namespace

void standard_detection::on_section(const table_section &section)
{
    const uint16_t pid = section.pid;
    const uint8_t table_id = section.header.table_id;
    if (!is_current(section)) return;
    if (pid == tdt_pid && (table_id == tdt_table_id || table_id == tot_table_id))
        is_dvb |= directory.has_fixed_meaning(pid);
    if (pid == selection_information_pid && table_id == selection_information_table_id) is_partial = true;
    if (!is_long(section)) return;

    if (pid == psip_base_pid && table_id == mgt_table_id) is_atsc = true;
    if (pid == broadcaster_information_pid && table_id == broadcaster_information_table_id) is_isdb = true;
    if (!is_on_own_pid(directory, pid, table_id)) return;
    if (is_dvb_table(table_id)) is_dvb = true;
    if (table_id == nit_actual_table_id || table_id == nit_other_table_id) look_at_network(section);
    if (table_id == pat_table_id) is_partial |= directory.is(selection_information_pid, pid_use::network);
    if (table_id == pmt_table_id) look_at_map(section);
}

/// A PMT comes ten times a second, and seldom says anything new.
void standard_detection::look_at_map(const table_section &section)
{
    if (is_partial || last_map[section.pid] == section.crc_32) return;
    last_map[section.pid] = section.crc_32;
    is_partial = is_blu_ray(section);
}

void standard_detection::look_at_network(const table_section &section)
{
    const std::optional<nit> network = read_nit(section);
    if (!network) return;
    is_isdb |= has_system_management(network->network_descriptors);
    for (const nit_transport_stream &stream : network->transport_streams)
        is_isdb |= has_system_management(stream.transport_descriptors);
}

const char *standard_detection::name() const
{
    if (told_atsc.value_or(is_atsc)) return "ATSC";
    if (is_isdb) return "ISDB";
    if (is_partial) return "partial";
    return is_dvb ? "DVB" : "MPEG";
}
