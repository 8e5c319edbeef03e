#include "mpeg_ts_analysis/tables/atsc_tvct.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/tables/table_print.h"
#include "text/utf8.h"

namespace {

constexpr unsigned short_name_units = 7;
constexpr unsigned short_name_size = 2 * short_name_units;
constexpr unsigned fixed_size_after_name =
    16; ///< bytes of a channel between short_name and descriptors_length

void check_reserved_111111(bit_reader &in)
{
    if (in.bits(6) != 0x3F)
        report_line("!!! terrestrial_virtual_channel_table_section() reserved bits not '111111'");
}

void read_short_name(bit_reader &in, char (&short_name)[256])
{
    char *w = short_name;
    for (unsigned i = 0; i < short_name_units; ++i)
        utf8_encode(&w, short_name + sizeof(short_name) - 1, in.bits(16));
    *w = '\0';
}

/// The fields between short_name and descriptors_length, known to be there.
void print_channel_fields(bit_reader &in, const char *short_name)
{
    if (in.bits(4) != 0xF)
        report_line("!!! terrestrial_virtual_channel_table_section() reserved bits not '1111'");
    const unsigned major_channel_number = in.bits(10);
    const unsigned minor_channel_number = in.bits(10);
    const unsigned modulation_mode = in.bits(8);
    const unsigned carrier_frequency = in.bits(32);
    const unsigned channel_TSID = in.bits(16);
    const unsigned program_number = in.bits(16);
    const unsigned ETM_location = in.bits(2);
    const unsigned access_controlled = in.bits(1);
    const unsigned hidden = in.bits(1);
    if (in.bits(2) != 0x3)
        report_line("!!! terrestrial_virtual_channel_table_section() reserved bits not '11'");
    const unsigned hide_guide = in.bits(1);
    if (in.bits(3) != 0x7)
        report_line("!!! terrestrial_virtual_channel_table_section() reserved bits not '111'");
    const unsigned service_type = in.bits(6);
    const unsigned source_id = in.bits(16);

    report_printf("            Channel %u.%u '%s':\n", major_channel_number, minor_channel_number,
                  short_name);
    report_printf("                modulation_mode=%u\n", modulation_mode);
    report_printf("                carrier_frequency=%u\n", carrier_frequency);
    report_printf("                channel_TSID=0x%04x\n", channel_TSID);
    report_printf("                program_number=%u\n", program_number);
    report_printf("                ETM_location=%u\n", ETM_location);
    report_printf("                access_controlled=%u\n", access_controlled);
    report_printf("                hidden=%u\n", hidden);
    report_printf("                hide_guide=%u\n", hide_guide);
    report_printf("                service_type=0x%02x\n", service_type);
    report_printf("                source_id=0x%04x\n", source_id);
}

/// One channel, its short_name known to be there. Returns false when the section ends inside it; the reader
/// then stands behind the last byte that was read.
bool on_channel(mpeg_ts_pid_tracking *t, bit_reader &in)
{
    char short_name[256];

    read_short_name(in, short_name);
    if (!in.has(fixed_size_after_name)) return false;
    print_channel_fields(in, short_name);
    if (!in.has(2)) return false;
    check_reserved_111111(in);
    const unsigned descriptors_length = in.bits(10);
    if (!in.has(descriptors_length)) return false;
    report_printf("                descriptors_length=%u\n", descriptors_length);
    report_descriptors_and_empty_line(t, in, descriptors_length);
    return true;
}

/// The word at p is read from the storage, whatever the section holds there; its descriptors must end before
/// the fence.
void on_additional_descriptors(mpeg_ts_pid_tracking *t, const uint8_t *p, const uint8_t *fence)
{
    bit_reader in(p, t->tbl_asm.fence);

    check_reserved_111111(in);
    const unsigned additional_descriptors_length = in.bits(10);
    const uint8_t *const descriptors = in.position();
    if (fence - descriptors < static_cast<long>(additional_descriptors_length)) return;
    report_printf("                additional_descriptors_length=%u\n", additional_descriptors_length);
    report_descriptors_and_empty_line(t, in, additional_descriptors_length);
}

} // namespace

void atsc_terrestrial_virtual_channel_table_section(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                                    const uint8_t *p, const uint8_t *fence)
{
    bit_reader in(p, fence);

    show("    terrestrial_virtual_channel_table_section() [ATSC A/65:2009 6.3.1]\n");
    report_printf("        Transport stream ID:              0x%04x\n", h->table_id_extension);
    report_nested_version_and_section(h);
    if (!in.has(2)) return;
    report_printf("        Protocol version:                 %u\n", in.bits(8));
    const unsigned num_channels_in_section = in.bits(8);
    report_printf("        Channels in section:              %u\n", num_channels_in_section);
    for (unsigned channel = 1; channel <= num_channels_in_section && in.has(short_name_size); ++channel)
        if (!on_channel(t, in)) break;
    on_additional_descriptors(t, in.position(), fence);
}
