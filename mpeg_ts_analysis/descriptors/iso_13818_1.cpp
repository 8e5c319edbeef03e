#include "mpeg_ts_analysis/descriptors/iso_13818_1.h"

#include "mpeg12_ts/bit_reader.h"
#include "mpeg_ts_analysis/descriptors/descriptor_print.h"
#include "mpeg_ts_analysis/report/invariant.h"

namespace {

constexpr const char *frame_rate_names[] = {nullptr,
                                            "23.976fps (24000/1001)",
                                            "24fps     (24/1)",
                                            "25fps     (25/1)",
                                            "29.97fps  (30000/1001)",
                                            "30fps     (30/1)",
                                            "50fps     (50/1)",
                                            "59.94fps  (60000/1001)",
                                            "60fps     (60/1)"};

/// The fields behind the first byte, present when MPEG_1_only_flag is 0. Each line needs its byte.
void video_stream_descriptor_mpeg_2_fields(bit_reader in)
{
    if (!in.has(1)) return;
    show("            profile_and_level_indication=0x%02x\n", in.bits(8));
    if (!in.has(1)) return;
    const unsigned chroma_format_and_flags = in.bits(8);
    show("            chroma_format=%u\n", chroma_format_and_flags >> 6);
    // kept: two bits, of which the upper one is the lower one of chroma_format.
    show("            frame_rate_extension_flag=%u\n", (chroma_format_and_flags >> 5) & 3);
    if ((chroma_format_and_flags & 0x1F) != 0x1F)
        report_line("!!! video_stream_descriptor() reserved field has zero bits");
}

} // namespace

void desc_isoiec13818_1_2_6_2_video_stream_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        video_stream_descriptor() [ISO/IEC 13818-1 2.6.2]\n");
    show("            multiple_frame_rate_flag=%u\n", in.bits(1));
    show_named("            frame_rate_code=%u -> %s\n", in.bits(4), frame_rate_names);
    const unsigned MPEG_1_only_flag = in.bits(1);
    show("            MPEG_1_only_flag=%u\n", MPEG_1_only_flag);
    show("            constrained_parameter_flag=%u\n", in.bits(1));
    show("            still_picture_flag=%u\n", in.bits(1));
    if (!MPEG_1_only_flag) video_stream_descriptor_mpeg_2_fields(in);
}

void desc_isoiec13818_1_2_6_4_audio_stream_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    const unsigned free_format_flag = in.bits(1);
    const unsigned ID = in.bits(1);
    const unsigned layer = in.bits(2);
    const unsigned variable_rate_audio_indicator = in.bits(1);
    if (in.bits(3) != 0x7) report_line("!!! audio_stream_descriptor() reserved field contains 0 bits");

    show("        audio_stream_descriptor() [ISO/IEC 13818-1 2.6.4]\n");
    show("            free_format_flag=%u\n", free_format_flag);
    show("            ID=%u\n", ID);
    // kept: layer 0, which is reserved, prints as Layer-4.
    show("            layer=%u (MPEG Layer-%u)\n", layer, 4 - layer);
    show("            variable_rate_audio_indicator=%u\n", variable_rate_audio_indicator);
}

void desc_isoiec13818_1_2_6_8_registration_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);
    char text[5] = {};

    for (unsigned i = 0; i < 4; ++i)
        text[i] = body[i] >= 0x20 && body[i] <= 0x7F ? static_cast<char>(body[i]) : '_';
    show("        registration_descriptor() [ISO/IEC 13818-1 2.6.8]\n");
    show("            format_identifier=0x%08x '%s'\n", in.bits(32), text);
}

namespace {

constexpr const char *alignment_type_names[] = {nullptr, "Slice, or video access unit", "Video access unit",
                                                "GOP, or SEQ", "SEQ"};

} // namespace

void desc_isoiec13818_1_2_6_10_data_stream_alignment_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        data_stream_alignment_descriptor() [ISO/IEC 13818-1 2.6.10]\n");
    show_named("            alignment_type=0x%02x %s\n", in.bits(8), alignment_type_names);
}

void desc_isoiec13818_1_2_6_16_CA_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    show("        CA_descriptor() [ISO/IEC 13818-1 2.6.16]\n");
    show("            CA_system_ID = 0x%04x\n", in.bits(16));
    in.bits(3);
    show("            CA_PID = 0x%04x\n", in.bits(13));
}

namespace {

constexpr const char *audio_type_names[] = {nullptr, "Clean effects", "Hearing impaired",
                                            "Visual impaired commentary"};

} // namespace

void desc_isoiec13818_1_2_6_18_ISO_639_language_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    if (length % 4 != 0) report_line("!!! ISO_639_language_descriptor() length is not a multiple of 4 bytes");
    show("        ISO_639_language_descriptor() [ISO/IEC 13818-1 2.6.18]. %u entries\n", length / 4);
    while (in.has(4)) {
        char ISO_639_language_code[4];
        in.text(ISO_639_language_code);
        show("            ISO_639_language_code=%s\n", ISO_639_language_code);
        show_named("            audio_type=0x%02x %s\n", in.bits(8), audio_type_names);
    }
}

void desc_isoiec13818_1_2_6_20_system_clock_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    const unsigned external_clock_reference_indicator = in.bits(1);
    if (in.bits(1) != 0x1) report_line("!!! system_clock_descriptor() a reserved bit is 0");
    const unsigned clock_accuracy_integer = in.bits(6);
    const unsigned clock_accuracy_exponent = in.bits(3);
    if (in.bits(5) != 0x1F) report_line("!!! system_clock_descriptor() a reserved field has 0 bits");

    show("        system_clock_descriptor() [ISO/IEC 13818-1 2.6.20]\n");
    show("            external_clock_reference_indicator=%u\n", external_clock_reference_indicator);
    show("            clock_accuracy_integer=%u\n", clock_accuracy_integer);
    show("            clock_accuracy_exponent=%u\n", clock_accuracy_exponent);
    show("                accuracy is %u parts per million\n",
         clock_accuracy_integer << clock_accuracy_exponent);
}

void desc_isoiec13818_1_2_6_22_multiplex_buffer_utilization_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    const unsigned bound_valid_flag = in.bits(1);
    const unsigned LTW_offset_lower_bound = in.bits(15);
    if (in.bits(1) != 0x1) report_line("!!! multiplex_buffer_utilization_descriptor() a reserved field is 0");
    const unsigned LTW_offset_upper_bound = in.bits(15);

    // kept: the clause is that of the system_clock_descriptor.
    show("        multiplex_buffer_utilization_descriptor() [ISO/IEC 13818-1 2.6.20]\n");
    show("            bound_valid_flag=%u\n", bound_valid_flag);
    show("            LTW_offset_lower_bound=%u\n", LTW_offset_lower_bound);
    show("            LTW_offset_upper_bound=%u\n", LTW_offset_upper_bound);
}

void desc_isoiec13818_1_2_6_26_maximum_bitrate_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    if (in.bits(2) != 0x3) report_line("!!! maximum_bitrate_descriptor() reserved field contains 0 bits");
    show("        maximum_bitrate_descriptor() [ISO/IEC 13818-1 2.6.26]\n");
    // Units of 50 bytes per second.
    show("            maximum_bitrate=%u bits/sec\n", in.bits(22) * 400);
}

void desc_isoiec13818_1_2_6_28_private_data_indicator_descriptor(const uint8_t *body, unsigned length)
{
    const uint8_t *const f = body + length;
    const uint8_t *const p = body + 4;
    invariant(p <= f);
    bit_reader value(body, f);
    bit_reader characters(body, f);
    char text[5];

    characters.text(text);
    show("        private_data_indicator_descriptor() [ISO/IEC 13818-1 2.6.28]\n");
    show("            private_data_indicator=0x%08X '%s'\n", value.bits(32), text);
}

void desc_isoiec13818_1_2_6_30_smoothing_buffer_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    if (in.bits(2) != 0x3) report_line("!!! smoothing_buffer_descriptor() reserved field contains 0 bits");
    const unsigned sb_leak_rate = in.bits(22);
    if (in.bits(2) != 0x3) report_line("!!! smoothing_buffer_descriptor() reserved field contains 0 bits");
    const unsigned sb_size = in.bits(22);

    show("        smoothing_buffer_descriptor() [ISO/IEC 13818-1 2.6.30]\n");
    show("            sb_leak_rate=%u bits/sec\n", sb_leak_rate * 400);
    show("            sb_size=%u bytes\n", sb_size);
}

void desc_isoiec13818_1_2_6_32_STD_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    if (in.bits(7) != 0x7F) report_line("!!! STD_descriptor() reserved field contains 0 bits");
    show("        STD_descriptor() [ISO/IEC 13818-1 2.6.32]\n");
    show("            leak_valid_flag=%u\n", in.bits(1));
}

// kept: this decoder and the next print in every dump mode.
void desc_scte_187_2_2012_8_2_AVC_video_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    report_printf("        AVC_video_descriptor() [SCTE 187-2 2012 8.2]\n");
    if (!in.has(1)) return;
    report_printf("            profile_idc=0x%02x\n", in.bits(8));
    if (!in.has(1)) return;
    report_printf("            constraint_set0_flag=%u\n", in.bits(1));
    report_printf("            constraint_set1_flag=%u\n", in.bits(1));
    report_printf("            constraint_set2_flag=%u\n", in.bits(1));
    report_printf("            constraint_set3_flag=%u\n", in.bits(1));
    report_printf("            constraint_set4_flag=%u\n", in.bits(1));
    report_printf("            constraint_set5_flag=%u\n", in.bits(1));
    report_printf("            AVC_compatible_flags=%u\n", in.bits(2));
    if (!in.has(1)) return;
    report_printf("            level_idc=0x%02x\n", in.bits(8));
    if (!in.has(1)) return;
    report_printf("            AVC_still_present=%u\n", in.bits(1));
    report_printf("            AVC_24_hour_picture_flag=%u\n", in.bits(1));
    report_printf("            frame_packing_SEI_not_present_flag=%u\n", in.bits(1));
    report_printf("            reserved=%u\n", in.bits(5));
}

namespace {

/// Returns false when the descriptor ends inside the timing fields.
bool AVC_picture_and_timing_info(bit_reader &in)
{
    if (!in.has(1)) return false;
    const unsigned flag_90kHz = in.bits(1);
    report_printf("                90kHz_flag=%u\n", flag_90kHz);
    report_printf("                reserved=%u\n", in.bits(7));
    // kept: the flag's sense is the reverse of the standard's.
    if (flag_90kHz) {
        if (!in.has(8)) return false;
        report_printf("                    N=%u\n", in.bits(32));
        report_printf("                    K=%u\n", in.bits(32));
    }
    if (!in.has(4)) return false;
    report_printf("                num_units_in_tick=%u\n", in.bits(32));
    return true;
}

} // namespace

void desc_isoiec13818_1_2000_amd_3_2_6_66_AVC_timing_and_HRD_descriptor(const uint8_t *body, unsigned length)
{
    bit_reader in(body, body + length);

    report_printf("        AVC_timing_and_HRD_descriptor() [ISO/IEC 13818-1:2000/Amd.3:2004 (E) 2.6.66]\n");
    if (!in.has(1)) return;
    report_printf("            hrd_management_valid_flag=%u\n", in.bits(1));
    report_printf("            reserved=%u\n", in.bits(6));
    const unsigned picture_and_timing_info_present = in.bits(1);
    report_printf("            picture_and_timing_info_present=%u\n", picture_and_timing_info_present);
    if (picture_and_timing_info_present && !AVC_picture_and_timing_info(in)) return;
    if (!in.has(1)) return;
    report_printf("            fixed_frame_rate_flag=%u\n", in.bits(1));
    report_printf("            temporal_poc_flag=%u\n", in.bits(1));
    report_printf("            picture_to_display_conversion_flag=%u\n", in.bits(1));
    report_printf("            reserved=%u\n", in.bits(5));
}
