#include "mpeg_ts_analysis/tables/atsc_rrt.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_loop.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/descriptors/multiple_string.h"
#include "mpeg_ts_analysis/tables/table_print.h"

namespace {

/// Prints a text of the length just read under its title. Returns false, with the reader at the text's first
/// byte, when the text runs past the fence.
bool print_text(bit_reader &in, const char *title, int indent)
{
    const unsigned length = in.bits(8);

    if (!in.has(length)) return false;
    report_line(title);
    desc_atsc_A65_2009_6_39_multiple_string_structure(in.position(), length, indent);
    in.skip(length);
    return true;
}

/// The values of a dimension, up to the first that does not fit.
void print_values(bit_reader &in, unsigned values_defined)
{
    for (unsigned value = 1; value <= values_defined; ++value) {
        report_printf("            value #%d:\n", value);
        if (!in.has(1) || !print_text(in, "                abbrev_rating_value:", 20)) return;
        if (!in.has(1) || !print_text(in, "                rating_value:", 20)) return;
        if (!in.has(1)) return;
    }
}

/// Returns false when the section ends inside the dimension's own fields.
bool print_dimension(bit_reader &in, unsigned number)
{
    report_printf("        dimension #%d:\n", number);
    if (!in.has(1) || !print_text(in, "            name:", 16)) return false;
    if (!in.has(1)) return false;
    if (in.bits(3) != 0x7) report_line("!!! reserved bits not '111'");
    const unsigned graduated_scale = in.bits(1);
    const unsigned values_defined = in.bits(4);
    report_printf("            graduated_scale=%u values_defined=%u\n", graduated_scale, values_defined);
    print_values(in, values_defined);
    return true;
}

} // namespace

void atsc_rating_region_table_section(mpeg_ts_pid_tracking *t, const mpeg_ts_pat_main_header *h,
                                      const uint8_t *p, const uint8_t *fence)
{
    bit_reader in(p, fence);

    show("    rating_region_table_section() [ATSC A/65:2009 6.4]\n");
    report_printf("        Table ID extension:               0x%02x 0x%02x\n", h->table_id_extension >> 8,
                  h->table_id_extension & 0xFF);
    report_nested_version_and_section(h);
    if (!in.has(2)) return;
    report_printf("        protocol_version=%u\n", in.bits(8));
    const unsigned rating_region_name_length = in.bits(8);
    report_printf("        rating_region_name_length=%u\n", rating_region_name_length);
    if (!in.has(rating_region_name_length)) return;
    report_line("        rating_region_name:");
    desc_atsc_A65_2009_6_39_multiple_string_structure(in.position(), rating_region_name_length, 12);
    in.skip(rating_region_name_length);

    if (!in.has(1)) return;
    const unsigned dimensions_defined = in.bits(8);
    report_printf("        dimensions defined=%u\n", dimensions_defined);
    for (unsigned dimension = 1; dimension <= dimensions_defined; ++dimension)
        if (!print_dimension(in, dimension)) break;

    if (!in.has(2)) return;
    if (in.bits(6) != 0x3F) report_line("!!! reserved bits not '111111'");
    const unsigned descriptors_length = in.bits(10);
    // kept: the loop runs to the section's end, whatever descriptors_length says.
    if (in.has(descriptors_length)) descriptor_loop(t, in.position(), fence);
}
