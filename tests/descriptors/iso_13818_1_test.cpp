#include "tests/descriptors/descriptor_test.h"

struct iso_13818_1 : descriptor_test {};

namespace {

/// A video_stream_descriptor of MPEG-1 whose frame_rate_code line ends in this text.
std::string video_stream_of_frame_rate(unsigned code, const std::string &name)
{
    return "        video_stream_descriptor() [ISO/IEC 13818-1 2.6.2]\n"
           "            multiple_frame_rate_flag=0\n"
           "            frame_rate_code=" +
           std::to_string(code) + " -> " + name +
           "\n"
           "            MPEG_1_only_flag=1\n"
           "            constrained_parameter_flag=0\n"
           "            still_picture_flag=0\n";
}

} // namespace

TEST_F(iso_13818_1, video_stream_names_the_frame_rate_and_reads_the_overlapping_flag)
{
    EXPECT_EQ(report_of_descriptors(descriptor(0x02, hex("1B 44 5F"))),
              "        video_stream_descriptor() [ISO/IEC 13818-1 2.6.2]\n"
              "            multiple_frame_rate_flag=0\n"
              "            frame_rate_code=3 -> 25fps     (25/1)\n"
              "            MPEG_1_only_flag=0\n"
              "            constrained_parameter_flag=1\n"
              "            still_picture_flag=1\n"
              "            profile_and_level_indication=0x44\n"
              "            chroma_format=1\n"
              "            frame_rate_extension_flag=2\n");
}

TEST_F(iso_13818_1, video_stream_reports_zero_reserved_bits_behind_its_lines)
{
    for (unsigned bit = 0; bit < 5; ++bit)
        EXPECT_EQ(contents(0x02, join({hex("80 00"), big_endian(0xFFu & ~(1u << bit), 1)})),
                  "        video_stream_descriptor() [ISO/IEC 13818-1 2.6.2]\n"
                  "            multiple_frame_rate_flag=1\n"
                  "            frame_rate_code=0 -> \n"
                  "            MPEG_1_only_flag=0\n"
                  "            constrained_parameter_flag=0\n"
                  "            still_picture_flag=0\n"
                  "            profile_and_level_indication=0x00\n"
                  "            chroma_format=3\n"
                  "            frame_rate_extension_flag=3\n"
                  "!!! video_stream_descriptor() reserved field has zero bits\n");
}

TEST_F(iso_13818_1, video_stream_reports_zero_reserved_bits_in_every_dump_mode)
{
    EXPECT_EQ(none(0x02, hex("1B 44 5E")), "!!! video_stream_descriptor() reserved field has zero bits\n");
    EXPECT_EQ(none(0x02, hex("1B 44 5F")), "");
}

TEST_F(iso_13818_1, video_stream_of_MPEG_1_has_no_further_lines_and_no_reserved_check)
{
    EXPECT_EQ(contents(0x02, hex("04 44 00")), video_stream_of_frame_rate(0, ""));
    EXPECT_EQ(none(0x02, hex("04 44 00")), "");
}

TEST_F(iso_13818_1, video_stream_prints_only_the_lines_whose_bytes_are_present)
{
    const std::string first = "        video_stream_descriptor() [ISO/IEC 13818-1 2.6.2]\n"
                              "            multiple_frame_rate_flag=0\n"
                              "            frame_rate_code=3 -> 25fps     (25/1)\n"
                              "            MPEG_1_only_flag=0\n"
                              "            constrained_parameter_flag=0\n"
                              "            still_picture_flag=1\n";
    EXPECT_EQ(contents(0x02, hex("19")), first);
    EXPECT_EQ(contents(0x02, hex("19 85")), first + "            profile_and_level_indication=0x85\n");
}

TEST_F(iso_13818_1, video_stream_names_frame_rate_codes_1_to_8_only)
{
    const char *const names[16] = {"",
                                   "23.976fps (24000/1001)",
                                   "24fps     (24/1)",
                                   "25fps     (25/1)",
                                   "29.97fps  (30000/1001)",
                                   "30fps     (30/1)",
                                   "50fps     (50/1)",
                                   "59.94fps  (60000/1001)",
                                   "60fps     (60/1)"};
    for (unsigned code = 0; code < 16; ++code)
        EXPECT_EQ(contents(0x02, big_endian(code << 3 | 0x04, 1)),
                  video_stream_of_frame_rate(code, names[code] != nullptr ? names[code] : ""));
}

TEST_F(iso_13818_1, audio_stream_counts_the_layer_down_from_4)
{
    const char *const layers[] = {"0 (MPEG Layer-4)", "1 (MPEG Layer-3)", "2 (MPEG Layer-2)",
                                  "3 (MPEG Layer-1)"};
    for (unsigned layer = 0; layer < 4; ++layer)
        EXPECT_EQ(contents(0x03, big_endian(0x8Fu | layer << 4, 1)),
                  std::string("        audio_stream_descriptor() [ISO/IEC 13818-1 2.6.4]\n"
                              "            free_format_flag=1\n"
                              "            ID=0\n"
                              "            layer=") +
                      layers[layer] + "\n            variable_rate_audio_indicator=1\n");
}

TEST_F(iso_13818_1, audio_stream_reports_zero_reserved_bits_before_its_heading)
{
    for (unsigned bit = 0; bit < 3; ++bit)
        EXPECT_EQ(contents(0x03, big_endian(0x47u & ~(1u << bit), 1)),
                  "!!! audio_stream_descriptor() reserved field contains 0 bits\n"
                  "        audio_stream_descriptor() [ISO/IEC 13818-1 2.6.4]\n"
                  "            free_format_flag=0\n"
                  "            ID=1\n"
                  "            layer=0 (MPEG Layer-4)\n"
                  "            variable_rate_audio_indicator=0\n");
    EXPECT_EQ(none(0x03, hex("F8")), "!!! audio_stream_descriptor() reserved field contains 0 bits\n");
    EXPECT_EQ(none(0x03, hex("FF")), "");
}

TEST_F(iso_13818_1, registration_replaces_what_is_no_text_by_an_underscore)
{
    EXPECT_EQ(contents(0x05, hex("48 44 4D 01")),
              "        registration_descriptor() [ISO/IEC 13818-1 2.6.8]\n"
              "            format_identifier=0x48444d01 'HDM_'\n");
    EXPECT_EQ(contents(0x05, hex("1F 20 7F 80")),
              "        registration_descriptor() [ISO/IEC 13818-1 2.6.8]\n"
              "            format_identifier=0x1f207f80 '_ \x7F_'\n");
    EXPECT_EQ(contents(0x05, hex("00 FF 7E 41")),
              "        registration_descriptor() [ISO/IEC 13818-1 2.6.8]\n"
              "            format_identifier=0x00ff7e41 '__~A'\n");
}

TEST_F(iso_13818_1, registration_does_not_print_the_additional_identification_info)
{
    EXPECT_EQ(contents(0x05, hex("43 55 45 49 01 02 03")),
              "        registration_descriptor() [ISO/IEC 13818-1 2.6.8]\n"
              "            format_identifier=0x43554549 'CUEI'\n");
    EXPECT_EQ(none(0x05, hex("43 55 45 49")), "");
}

TEST_F(iso_13818_1, data_stream_alignment_names_types_1_to_4_only)
{
    const std::pair<const char *, const char *> types[] = {
        {"00", "0x00 "                           },
        {"01", "0x01 Slice, or video access unit"},
        {"02", "0x02 Video access unit"          },
        {"03", "0x03 GOP, or SEQ"                },
        {"04", "0x04 SEQ"                        },
        {"05", "0x05 "                           },
        {"FF", "0xff "                           },
    };
    for (const auto &[body, text] : types)
        EXPECT_EQ(contents(0x06, hex(body)),
                  std::string("        data_stream_alignment_descriptor() [ISO/IEC 13818-1 2.6.10]\n"
                              "            alignment_type=") +
                      text + "\n");
    EXPECT_EQ(none(0x06, hex("01")), "");
}

TEST_F(iso_13818_1, CA_has_spaces_around_the_equals_signs_and_drops_the_private_data)
{
    EXPECT_EQ(contents(0x09, hex("0B 00 F2 34 AA BB")), "        CA_descriptor() [ISO/IEC 13818-1 2.6.16]\n"
                                                        "            CA_system_ID = 0x0b00\n"
                                                        "            CA_PID = 0x1234\n");
    EXPECT_EQ(contents(0x09, hex("00 01 00 02")), "        CA_descriptor() [ISO/IEC 13818-1 2.6.16]\n"
                                                  "            CA_system_ID = 0x0001\n"
                                                  "            CA_PID = 0x0002\n");
    EXPECT_EQ(none(0x09, hex("0B 00 F2 34")), "");
}

TEST_F(iso_13818_1, ISO_639_language_names_audio_types_1_to_3_only)
{
    EXPECT_EQ(contents(0x0A, hex("656E6700 64657501 66726102 6E6F7203 73776504 737061FF")),
              "        ISO_639_language_descriptor() [ISO/IEC 13818-1 2.6.18]. 6 entries\n"
              "            ISO_639_language_code=eng\n"
              "            audio_type=0x00 \n"
              "            ISO_639_language_code=deu\n"
              "            audio_type=0x01 Clean effects\n"
              "            ISO_639_language_code=fra\n"
              "            audio_type=0x02 Hearing impaired\n"
              "            ISO_639_language_code=nor\n"
              "            audio_type=0x03 Visual impaired commentary\n"
              "            ISO_639_language_code=swe\n"
              "            audio_type=0x04 \n"
              "            ISO_639_language_code=spa\n"
              "            audio_type=0xff \n");
}

TEST_F(iso_13818_1, ISO_639_language_of_length_6_warns_and_prints_one_entry)
{
    EXPECT_EQ(contents(0x0A, hex("656E6701 6465")),
              "!!! ISO_639_language_descriptor() length is not a multiple of 4 bytes\n"
              "        ISO_639_language_descriptor() [ISO/IEC 13818-1 2.6.18]. 1 entries\n"
              "            ISO_639_language_code=eng\n"
              "            audio_type=0x01 Clean effects\n");
    EXPECT_EQ(none(0x0A, hex("656E6701 6465")),
              "!!! ISO_639_language_descriptor() length is not a multiple of 4 bytes\n");
}

TEST_F(iso_13818_1, ISO_639_language_may_be_empty_or_shorter_than_an_entry)
{
    EXPECT_EQ(contents(0x0A, {}),
              "        ISO_639_language_descriptor() [ISO/IEC 13818-1 2.6.18]. 0 entries\n");
    EXPECT_EQ(contents(0x0A, hex("656E67")),
              "!!! ISO_639_language_descriptor() length is not a multiple of 4 bytes\n"
              "        ISO_639_language_descriptor() [ISO/IEC 13818-1 2.6.18]. 0 entries\n");
    EXPECT_EQ(none(0x0A, {}), "");
}

TEST_F(iso_13818_1, ISO_639_language_code_is_not_filtered)
{
    EXPECT_EQ(contents(0x0A, hex("01E9FF02")),
              "        ISO_639_language_descriptor() [ISO/IEC 13818-1 2.6.18]. 1 entries\n"
              "            ISO_639_language_code=\x01\xE9\xFF\n"
              "            audio_type=0x02 Hearing impaired\n");
}

TEST_F(iso_13818_1, private_data_indicator_prints_upper_case_digits_and_unfiltered_text)
{
    EXPECT_EQ(contents(0x0F, hex("4A 7F AB FE")),
              "        private_data_indicator_descriptor() [ISO/IEC 13818-1 2.6.28]\n"
              "            private_data_indicator=0x4A7FABFE 'J\x7F\xAB\xFE'\n");
    EXPECT_EQ(contents(0x0F, hex("00 00 00 0A FF")),
              "        private_data_indicator_descriptor() [ISO/IEC 13818-1 2.6.28]\n"
              "            private_data_indicator=0x0000000A ''\n");
    EXPECT_EQ(none(0x0F, hex("4A 7F AB FE")), "");
}
