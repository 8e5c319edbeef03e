// The two AVC descriptors, which print in every dump mode.
#include "tests/descriptors/descriptor_test.h"

struct iso_13818_1_avc : descriptor_test {
    /// Expects the same report in the modes none and contents.
    void expect_in_both_modes(unsigned tag, const bytes &body, const std::string &expected)
    {
        EXPECT_EQ(contents(tag, body), expected);
        EXPECT_EQ(none(tag, body), expected);
    }
};

namespace {

const std::string timing_heading =
    "        AVC_timing_and_HRD_descriptor() [ISO/IEC 13818-1:2000/Amd.3:2004 (E) 2.6.66]\n";

const std::string timing_present = timing_heading + "            hrd_management_valid_flag=1\n"
                                                    "            reserved=42\n"
                                                    "            picture_and_timing_info_present=1\n";

const std::string picture_flags = "            fixed_frame_rate_flag=1\n"
                                  "            temporal_poc_flag=0\n"
                                  "            picture_to_display_conversion_flag=1\n"
                                  "            reserved=21\n";

} // namespace

TEST_F(iso_13818_1_avc, video_prints_the_groups_whose_byte_is_present)
{
    const std::string heading = "        AVC_video_descriptor() [SCTE 187-2 2012 8.2]\n";
    const std::string profile = "            profile_idc=0x64\n";
    const std::string constraints = "            constraint_set0_flag=1\n"
                                    "            constraint_set1_flag=0\n"
                                    "            constraint_set2_flag=1\n"
                                    "            constraint_set3_flag=0\n"
                                    "            constraint_set4_flag=0\n"
                                    "            constraint_set5_flag=1\n"
                                    "            AVC_compatible_flags=2\n";
    const std::string level = "            level_idc=0x0a\n";
    const std::string pictures = "            AVC_still_present=1\n"
                                 "            AVC_24_hour_picture_flag=0\n"
                                 "            frame_packing_SEI_not_present_flag=1\n"
                                 "            reserved=21\n";

    expect_in_both_modes(0x28, {}, heading);
    expect_in_both_modes(0x28, hex("64"), heading + profile);
    expect_in_both_modes(0x28, hex("64 A6"), heading + profile + constraints);
    expect_in_both_modes(0x28, hex("64 A6 0A"), heading + profile + constraints + level);
    expect_in_both_modes(0x28, hex("64 A6 0A B5"), heading + profile + constraints + level + pictures);
    expect_in_both_modes(0x28, hex("64 A6 0A B5 FF"), heading + profile + constraints + level + pictures);
}

TEST_F(iso_13818_1_avc, video_reads_each_flag_from_its_own_bit)
{
    expect_in_both_modes(0x28, hex("FF 59 FF 4A"),
                         "        AVC_video_descriptor() [SCTE 187-2 2012 8.2]\n"
                         "            profile_idc=0xff\n"
                         "            constraint_set0_flag=0\n"
                         "            constraint_set1_flag=1\n"
                         "            constraint_set2_flag=0\n"
                         "            constraint_set3_flag=1\n"
                         "            constraint_set4_flag=1\n"
                         "            constraint_set5_flag=0\n"
                         "            AVC_compatible_flags=1\n"
                         "            level_idc=0xff\n"
                         "            AVC_still_present=0\n"
                         "            AVC_24_hour_picture_flag=1\n"
                         "            frame_packing_SEI_not_present_flag=0\n"
                         "            reserved=10\n");
}

TEST_F(iso_13818_1_avc, timing_of_an_empty_body_is_its_heading)
{
    expect_in_both_modes(0x2A, {}, timing_heading);
}

TEST_F(iso_13818_1_avc, timing_without_picture_and_timing_info_goes_on_with_the_next_byte)
{
    const std::string first = timing_heading + "            hrd_management_valid_flag=0\n"
                                               "            reserved=63\n"
                                               "            picture_and_timing_info_present=0\n";
    expect_in_both_modes(0x2A, hex("7E"), first);
    expect_in_both_modes(0x2A, hex("7E B5"), first + picture_flags);
    expect_in_both_modes(0x2A, hex("7E B5 FF"), first + picture_flags);
    expect_in_both_modes(0x2A, hex("7E 4A"),
                         first + "            fixed_frame_rate_flag=0\n"
                                 "            temporal_poc_flag=1\n"
                                 "            picture_to_display_conversion_flag=0\n"
                                 "            reserved=10\n");
}

TEST_F(iso_13818_1_avc, timing_reads_N_and_K_when_the_90kHz_flag_is_1)
{
    const std::string flag = timing_present + "                90kHz_flag=1\n"
                                              "                reserved=85\n";
    const std::string N_and_K = flag + "                    N=16909060\n"
                                       "                    K=4294967295\n";
    const std::string units = N_and_K + "                num_units_in_tick=3003\n";
    const bytes body = hex("D5 D5 01020304 FFFFFFFF 00000BBB B5");

    for (size_t length = 1; length <= body.size(); ++length)
        expect_in_both_modes(0x2A, bytes(body.data(), body.data() + length),
                             length < 2    ? timing_present
                             : length < 10 ? flag
                             : length < 14 ? N_and_K
                             : length < 15 ? units
                                           : units + picture_flags);
}

TEST_F(iso_13818_1_avc, timing_reads_no_N_and_K_when_the_90kHz_flag_is_0)
{
    const std::string flag = timing_present + "                90kHz_flag=0\n"
                                              "                reserved=127\n";
    const std::string units = flag + "                num_units_in_tick=4294967295\n";
    const bytes body = hex("D5 7F FFFFFFFF B5");

    for (size_t length = 1; length <= body.size(); ++length)
        expect_in_both_modes(0x2A, bytes(body.data(), body.data() + length),
                             length < 2   ? timing_present
                             : length < 6 ? flag
                             : length < 7 ? units
                                          : units + picture_flags);
}
