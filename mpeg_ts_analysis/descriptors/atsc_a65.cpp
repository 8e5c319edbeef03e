#include "mpeg_ts_analysis/descriptors/atsc_a65.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/descriptors/multiple_string.h"
#include "mpeg_ts_analysis/report/hex_dump.h"

namespace {

/// One caption service, its 6 bytes known to be there.
void caption_service(bit_reader &in, unsigned number)
{
    report_printf("                service #%d\n", number);
    char language[4];
    in.text(language);
    report_printf("                    language: '%s'\n", language);

    const unsigned digital_cc = in.bits(1);
    report_printf("                    digital_cc=%u\n", digital_cc);
    if (in.bits(1) != 0x1) report_line("!!! caption_service_descriptor() reserved bit not '1'");
    if (digital_cc) {
        report_printf("                    caption_service_number=%u\n", in.bits(6));
    } else {
        if (in.bits(5) != 0x1F) report_line("!!! caption_service_descriptor() reserved bits not '11111'");
        report_printf("                    line21_field=%u\n", in.bits(1));
    }

    report_printf("                    easy_reader=%u\n", in.bits(1));
    report_printf("                    wide_aspect_ratio=%u\n", in.bits(1));
    if (in.bits(6) != 0x3F) report_line("!!! caption_service_descriptor() reserved bits not '111111'");
    if (in.bits(8) != 0xFF) report_line("!!! caption_service_descriptor() reserved bits not '11111111'");
}

} // namespace

void desc_atsc_A65_2009_6_9_2_caption_service_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        caption_service_descriptor() [ATSC A/65:2009 6.9.2]\n");
    if (length == 0) {
        // kept: the spelling of zero, here and below.
        report_line("!!! caption_service_descriptor() length is zer0");
        return;
    }
    if (in.bits(3) != 0x7) report_line("!!! caption_service_descriptor() reserved bits not '111'");
    const unsigned number_of_services = in.bits(5);
    report_printf("            number_of_services=%u\n", number_of_services);
    for (unsigned number = 1; number <= number_of_services; ++number) {
        if (!in.has(6)) {
            report_line("!!! caption_service_descriptor() overflowed descriptor while parsing");
            return;
        }
        caption_service(in, number);
    }
}

namespace {

/// The dimensions of a rating. Returns false when the descriptor ends inside them.
bool content_advisory_dimensions(bit_reader &in, unsigned rating, unsigned rating_region_count,
                                 unsigned rated_dimensions)
{
    int previous = -1;

    for (unsigned dimension = 1; dimension <= rated_dimensions; ++dimension) {
        if (!in.has(2)) {
            report_printf("!!! content_advisory_descriptor() cut off in %d/%dth rating %d/%dth dimension\n",
                          rating, rating_region_count, dimension, rated_dimensions);
            return false;
        }
        const int rating_dimension_j = static_cast<int>(in.bits(8));
        if (in.bits(4) != 0xF) report_line("!!! content_advisory_descriptor() reserved bits not '1111'");
        report_printf(
            "                    dimension #%d: rating_dimension_j=%d rating_value=%u (dimension refers to ATSC Rating Region Table)\n",
            dimension, rating_dimension_j, in.bits(4));
        if (rating_dimension_j <= previous)
            report_line(
                "!!! content_advisory_descriptor() rating_dimension_j is not listed in numerical order");
        previous = rating_dimension_j;
    }
    return true;
}

/// One rating, its 2 fixed bytes known to be there. Returns false when the descriptor ends inside it.
bool content_advisory_rating(bit_reader &in, unsigned rating, unsigned rating_region_count)
{
    const unsigned rating_region = in.bits(8);
    const unsigned rated_dimensions = in.bits(8);
    report_printf("                rating #%d: region=%u dimensions=%u\n", rating, rating_region,
                  rated_dimensions);
    if (!content_advisory_dimensions(in, rating, rating_region_count, rated_dimensions)) return false;

    if (!in.has(1)) {
        report_line("!!! content_advisory_descriptor() cut off at rating_description_length field");
        return false;
    }
    const unsigned rating_description_length = in.bits(8);
    report_printf("                    description length: %u\n", rating_description_length);
    if (!in.has(rating_description_length)) {
        report_line(
            "!!! content_advisory_descriptor() rating_description_length field is too long to fit within descriptor");
        return false;
    }
    report_printf("                        description:\n");
    desc_atsc_A65_2009_6_39_multiple_string_structure(in.position(), rating_description_length, 28);
    in.skip(rating_description_length);
    return true;
}

void content_advisory_cut_off(unsigned rating, unsigned rating_region_count)
{
    report_printf("!!! content_advisory_descriptor() cut off in %d/%dth rating\n", rating,
                  rating_region_count);
}

} // namespace

void desc_atsc_A65_2009_6_9_3_content_advisory_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        content_advisory_descriptor() [ATSC A/65:2009 6.9.3]\n");
    if (length == 0) {
        report_line("!!! content_advisory_descriptor() length is zer0");
        return;
    }
    // kept: "bytes" for bits.
    if (in.bits(2) != 0x3) report_line("!!! content_advisory_descriptor() reserved bytes not '11'");
    const unsigned rating_region_count = in.bits(6);
    report_printf("            rating_region_count=%u\n", rating_region_count);

    // kept: a count of 0 with nothing behind it is reported as cut off in the first of no ratings.
    if (rating_region_count == 0 && !in.has(1)) return content_advisory_cut_off(1, rating_region_count);
    for (unsigned rating = 1; rating <= rating_region_count; ++rating) {
        if (!in.has(2)) return content_advisory_cut_off(rating, rating_region_count);
        if (!content_advisory_rating(in, rating, rating_region_count)) return;
    }
    if (in.has(1))
        report_printf("!!! content_advisory_descriptor() descriptor bits end with %u bytes left over\n",
                      static_cast<unsigned>(in.bytes_left()));
}

void desc_atsc_A70_2010_ATSC_CA_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        ATSC_CA_descriptor() [ATSC A/70:2010 Part 1 4.1.3.5]\n");
    if (!in.has(2)) return;
    report_printf("            CA_System_ID=0x%04x\n", in.bits(16));
    if (!in.has(1)) return;
    report_printf("            Private data: ");
    report_hex_bytes(in.position(), body + length);
    report_printf("\n");
}

void desc_atsc_A65_2009_6_9_4_extended_channel_name_descriptor(const uint8_t *body, unsigned length)
{
    show("        extended_channel_name_descriptor() [ATSC A/65:2009 6.9.4]\n");
    desc_atsc_A65_2009_6_39_multiple_string_structure(body, length, 12);
}

void desc_atsc_A65_2009_6_9_5_service_location_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        service_location_descriptor() [ATSC A/65:2009 6.9.5]\n");
    if (!in.has(3)) return;
    if (in.bits(3) != 0x7) report_line("!!! service_location_descriptor() reserved bits not '111'");
    report_printf("            PCR_PID=0x%04x\n", in.bits(13));
    const unsigned number_elements = in.bits(8);
    report_printf("            number_elements=%u\n", number_elements);
    for (unsigned element = 1; element <= number_elements && in.has(6); ++element) {
        const unsigned stream_type = in.bits(8);
        if (in.bits(3) != 0x7) report_line("!!! service_location_descriptor() reserved bits not '111'");
        const unsigned elementary_PID = in.bits(13);
        char ISO_639_language_code[4];
        in.text(ISO_639_language_code);
        report_printf(
            "                 element #%d: stream_type=0x%02x elementary_PID=0x%04x language='%s'\n", element,
            stream_type, elementary_PID, ISO_639_language_code);
    }
}

void desc_atsc_A65_2009_6_9_7_component_name_descriptor(const uint8_t *body, unsigned length)
{
    show("        component_name_descriptor() [ATSC A/65:2009 6.9.7]\n");
    desc_atsc_A65_2009_6_39_multiple_string_structure(body, length, 12);
}

void desc_atsc_A65_2009_rc_descriptor(const uint8_t *body, unsigned length)
{
    // kept: the clause is that of the component_name_descriptor.
    show("        rc_descriptor() [ATSC A/65:2009 6.9.7]\n");
    if (length == 0) return;
    report_printf("            RAW DATA: ");
    report_hex_bytes(body, body + length);
    report_printf("\n");
}
