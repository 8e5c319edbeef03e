#include "mpeg_ts_analysis/tables/atsc_mgt.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/health/tracking.h"
#include "mpeg_ts_analysis/report/invariant.h"
#include "mpeg_ts_analysis/tables/table_print.h"

#include <cstdio>

namespace {

constexpr unsigned entry_size = 11;
constexpr unsigned channel_ETT = 0x0004;
constexpr unsigned first_EIT = 0x0100;
constexpr unsigned last_EIT = 0x017F;
constexpr unsigned first_event_ETT = 0x0200;
constexpr unsigned last_event_ETT = 0x027F;
constexpr unsigned first_RRT = 0x0301;
constexpr unsigned last_RRT = 0x03FF;
constexpr unsigned first_DCCT = 0x1400;
constexpr unsigned last_DCCT = 0x14FF;

constexpr const char *table_type_names[] = {"Terrestrial VCT with current_next_indicator=1",
                                            "Terrestrial VCT with current_next_indicator=0",
                                            "Cable VCT with current_next_indicator=1",
                                            "Cable VCT with current_next_indicator=0",
                                            "Channel ETT",
                                            "DCCSCT"};

/// The formatted name that was asked for last.
char formatted_name[64];

/// What a PID of this table_type is followed as, or TRACK_NONE.
uint16_t tracking_type_of(unsigned table_type)
{
    if (table_type >= first_EIT && table_type <= last_EIT) return TRACK_ATSC_EIT;
    if (table_type >= first_event_ETT && table_type <= last_event_ETT) return TRACK_ATSC_ETT;
    return table_type == channel_ETT ? TRACK_ATSC_ETT : TRACK_NONE;
}

void check_reserved_111(bit_reader &in)
{
    if (in.bits(3) != 0x7) report_line("!!! master_guide_table_section() reserved bits not '111'");
}

void check_reserved_1111(bit_reader &in)
{
    if (in.bits(4) != 0xF) report_line("!!! master_guide_table_section() reserved bits not '1111'");
}

struct mgt_entry {
    unsigned table_type;
    uint16_t table_type_PID;
    unsigned table_type_descriptors_length;
};

/// Reads and prints the fixed part of an entry, its 11 bytes known to be there.
mgt_entry print_entry(bit_reader &in, unsigned number)
{
    mgt_entry entry;

    entry.table_type = in.bits(16);
    check_reserved_111(in);
    entry.table_type_PID = static_cast<uint16_t>(in.bits(13));
    check_reserved_111(in);
    const unsigned table_type_version_number = in.bits(5);
    const unsigned number_bytes = in.bits(32);
    check_reserved_1111(in);
    entry.table_type_descriptors_length = in.bits(12);

    // kept: "(null)" stands for a table_type that has no name.
    const char *const name = atsc_mgt_table_type_name(entry.table_type);
    report_printf("        Table #%d: table_type=0x%04x (%s) PID=%04x version=%u\n", number, entry.table_type,
                  name != nullptr ? name : "(null)", entry.table_type_PID, table_type_version_number);
    report_printf("            number_bytes=%u\n", number_bytes);
    report_printf("            table_type_descriptors_length=%u\n", entry.table_type_descriptors_length);
    return entry;
}

} // namespace

const char *atsc_mgt_table_type_name(unsigned table_type)
{
    char *const name = formatted_name;
    constexpr size_t size = sizeof(formatted_name);

    if (table_type >= first_EIT && table_type <= last_EIT)
        std::snprintf(name, size, "EIT-%u", table_type - 0x100);
    else if (table_type >= first_event_ETT && table_type <= last_event_ETT)
        std::snprintf(name, size, "Event ETT-%u", table_type - 0x200);
    else if (table_type >= first_RRT && table_type <= last_RRT)
        std::snprintf(name, size, "RRT with rating_region-%u", table_type - 0x300);
    else if (table_type >= first_DCCT && table_type <= last_DCCT)
        std::snprintf(name, size, "DCCT with dcc_id 0x%02x", table_type - 0x1400);
    else
        return name_of(table_type_names, table_type, nullptr);
    return name;
}

void desc_atsc_A65_2009_6_2_master_guide_table_section(mpeg_ts_pid_tracking *psip,
                                                       const mpeg_ts_pat_main_header *h, const uint8_t *p,
                                                       const uint8_t *fence)
{
    bit_reader in(p, fence);

    show("    master_guide_table_section() [ATSC A/65:2009 6.2]\n");
    report_printf(
        "        table_id_extension:               0x%04x (in place of Transport Stream ID field)\n",
        h->table_id_extension);
    report_nested_version_and_section(h);
    if (!in.has(3)) return;
    report_printf("        Protocol version:                 %u\n", in.bits(8));
    // kept: only the low byte of the 16-bit tables_defined counts.
    in.bits(8);
    const unsigned tables_defined = in.bits(8);
    report_printf("        Tables defined:                   %u\n", tables_defined);

    for (unsigned number = 1; number <= tables_defined && in.has(entry_size); ++number) {
        const mgt_entry entry = print_entry(in, number);
        const uint16_t type = tracking_type_of(entry.table_type);
        if (entry.table_type_PID != 0 && type != TRACK_NONE) {
            mpeg_ts_pid_tracking *const t = mpeg_ts_pid_tracking_start(entry.table_type_PID, type, 0);
            invariant(t != NULL);
            mpeg_ts_pid_tracking_give_storage(t, private_section_storage);
        }
        if (!in.has(entry.table_type_descriptors_length)) break;
        report_descriptors_and_empty_line(psip, in, entry.table_type_descriptors_length);
    }

    if (!in.has(2)) return;
    check_reserved_1111(in);
    const unsigned descriptors_length = in.bits(12);
    if (!in.has(descriptors_length)) return;
    report_printf("        descriptors_length=%u\n", descriptors_length);
    report_descriptors_and_empty_line(psip, in, descriptors_length);
}
