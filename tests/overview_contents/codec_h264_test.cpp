#include "mpeg_ts_overview/contents/codec_h264.h"

#include "tests/overview_contents/bit_writer.h"
#include "tests/overview_contents/codec_test.h"

namespace {

std::string found_in(const bytes &data)
{
    return found_by(h264_details, data);
}

bytes between_start_codes(const char *digits)
{
    return join({hex("00000109F0 00000001"), hex(digits), hex("000001 68")});
}

/// What a test may want otherwise in a set of profile Main.
struct fields {
    unsigned profile_idc = 77;
    std::string_view constraints = "000000";
    unsigned level_idc = 40;
    unsigned id = 0;
    unsigned pic_order_cnt_type = 2;
    unsigned width_in_mbs = 120, height_in_map_units = 68;
    bool frame_mbs_only = true;
    bit_writer chroma = {}; // of profiles that have it
    bit_writer pic_order_cnt = {};
    std::vector<unsigned> crop = {};
    bit_writer vui = bit_writer().flags("0");
};

bytes set_of(const fields &f)
{
    bit_writer out;
    out.u(f.profile_idc, 8).flags(f.constraints).u(0, 2).u(f.level_idc, 8).ue(f.id);
    out.append(f.chroma);
    out.ue(0).ue(f.pic_order_cnt_type);
    out.append(f.pic_order_cnt);
    out.ue(4).u(0, 1).ue(f.width_in_mbs - 1).ue(f.height_in_map_units - 1).u(f.frame_mbs_only, 1);
    if (!f.frame_mbs_only) out.u(1, 1);
    out.u(1, 1).u(!f.crop.empty(), 1);
    for (const unsigned offset : f.crop) out.ue(offset);
    out.append(f.vui);
    return out.nal_unit(hex("67"));
}

bit_writer vui_with_timing(unsigned num_units_in_tick, unsigned time_scale)
{
    return bit_writer().flags("1 0 0 0 0 1").u(num_units_in_tick, 32).u(time_scale, 32).flags("1 0 0 0 0");
}

} // namespace

TEST(codec_h264, sets_of_an_encoder_are_read)
{
    EXPECT_EQ(found_in(between_start_codes(
                  "67640028acd94078044fde022000000300200000064c4c001e848003d09c98601f162d96")),
              "H.264 | 1920x1080 25i High@4.0 | High | 4.0");
    EXPECT_EQ(found_in(between_start_codes("674d4020eca02802dd80880000030008000003032078c18cb0")),
              "H.264 | 1280x720 50p Main@3.2 | Main | 3.2");
    EXPECT_EQ(found_in(between_start_codes("6742c00cd901419f9f011000003e90000bb800f142a480")),
              "H.264 | 320x180 23.976p Constrained Baseline@1.2 | Constrained Baseline | 1.2");
    EXPECT_EQ(found_in(between_start_codes("677a0028b6cd9405a0227e27011000003e90000ea600f1831960")),
              "H.264 | 1440x1080 29.97p High 4:2:2@4.0 | High 4:2:2 | 4.0");
}

TEST(codec_h264, without_timing_there_is_no_rate)
{
    EXPECT_EQ(found_in(set_of({})), "H.264 | 1920x1088p Main@4.0 | Main | 4.0");
}

TEST(codec_h264, cropping_counts_in_chroma_samples_and_fields)
{
    fields f;
    f.crop = {0, 0, 0, 4};
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1920x1080p Main@4.0 | Main | 4.0");
    f.height_in_map_units = 34;
    f.frame_mbs_only = false;
    f.crop = {1, 2, 0, 2};
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1914x1080i Main@4.0 | Main | 4.0");
    f.profile_idc = 122;
    f.chroma = bit_writer().ue(2).ue(2).ue(2).flags("0 0");
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1914x1084i High 4:2:2@4.0 | High 4:2:2 | 4.0");
    f.profile_idc = 244;
    f.chroma = bit_writer().ue(3).u(0, 1).ue(0).ue(0).flags("0 0");
    EXPECT_EQ(found_in(set_of(f)),
              "H.264 | 1917x1084i High 4:4:4 Predictive@4.0 | High 4:4:4 Predictive | 4.0");
    f.chroma = bit_writer().ue(3).u(1, 1).ue(0).ue(0).flags("0 0");
    EXPECT_EQ(found_in(set_of(f)),
              "H.264 | 1917x1084i High 4:4:4 Predictive@4.0 | High 4:4:4 Predictive | 4.0");
    f.chroma = bit_writer().ue(0).ue(0).ue(0).flags("0 0");
    EXPECT_EQ(found_in(set_of(f)),
              "H.264 | 1917x1084i High 4:4:4 Predictive@4.0 | High 4:4:4 Predictive | 4.0");
}

TEST(codec_h264, sizes_that_are_none_give_nothing)
{
    fields f;
    f.crop = {480, 480, 0, 0};
    EXPECT_EQ(found_in(set_of(f)), "nothing");
    f.crop = {0, 0, 0, 544};
    EXPECT_EQ(found_in(set_of(f)), "nothing");
    f.crop = {0xFFFFFFFE, 0xFFFFFFFE, 0, 0};
    EXPECT_EQ(found_in(set_of(f)), "nothing");
    f.crop = {};
    f.width_in_mbs = 1056;
    f.height_in_map_units = 1056;
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 16896x16896p Main@4.0 | Main | 4.0");
    f.width_in_mbs = 1057;
    EXPECT_EQ(found_in(set_of(f)), "nothing");
    f.width_in_mbs = 1056;
    f.height_in_map_units = 1057;
    EXPECT_EQ(found_in(set_of(f)), "nothing");
}

TEST(codec_h264, profiles_have_names)
{
    const bit_writer chroma = bit_writer().ue(1).ue(0).ue(0).flags("0 0");
    const auto name = [&](unsigned profile_idc, std::string_view constraints = "000000") {
        fields f;
        f.profile_idc = profile_idc;
        f.constraints = constraints;
        if (profile_idc != 66 && profile_idc != 77 && profile_idc != 88 && profile_idc != 1)
            f.chroma = chroma;
        const std::string found = found_in(set_of(f));
        return found == "nothing" ? found : found.substr(found.find(" | ", 9) + 3);
    };
    EXPECT_EQ(name(44), "CAVLC 4:4:4 Intra | 4.0");
    EXPECT_EQ(name(66), "Baseline | 4.0");
    EXPECT_EQ(name(66, "010000"), "Constrained Baseline | 4.0");
    EXPECT_EQ(name(77), "Main | 4.0");
    EXPECT_EQ(name(83), "Scalable Baseline | 4.0");
    EXPECT_EQ(name(86), "Scalable High | 4.0");
    EXPECT_EQ(name(88), "Extended | 4.0");
    EXPECT_EQ(name(100), "High | 4.0");
    EXPECT_EQ(name(100, "000010"), "Progressive High | 4.0");
    EXPECT_EQ(name(100, "000011"), "Constrained High | 4.0");
    EXPECT_EQ(name(110), "High 10 | 4.0");
    EXPECT_EQ(name(110, "000100"), "High 10 Intra | 4.0");
    EXPECT_EQ(name(118), "Multiview High | 4.0");
    EXPECT_EQ(name(122, "000100"), "High 4:2:2 Intra | 4.0");
    EXPECT_EQ(name(128), "Stereo High | 4.0");
    EXPECT_EQ(name(134), " | 4.0");
    EXPECT_EQ(name(135), " | 4.0");
    EXPECT_EQ(name(138), " | 4.0");
    EXPECT_EQ(name(139), " | 4.0");
    EXPECT_EQ(name(244, "000100"), "High 4:4:4 Intra | 4.0");
    EXPECT_EQ(name(1), " | 4.0");
}

TEST(codec_h264, level_1b_is_told_by_its_number_or_a_constraint)
{
    fields f;
    f.level_idc = 9;
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1920x1088p Main@1b | Main | 1b");
    f.level_idc = 11;
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1920x1088p Main@1.1 | Main | 1.1");
    f.constraints = "000100";
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1920x1088p Main@1b | Main | 1b");
}

TEST(codec_h264, the_rate_is_that_of_frames_and_likely)
{
    fields f;
    f.vui = vui_with_timing(1001, 60000);
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1920x1088 29.97p Main@4.0 | Main | 4.0");
    f.vui = vui_with_timing(0, 50);
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1920x1088p Main@4.0 | Main | 4.0");
    f.vui = vui_with_timing(1, 0);
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1920x1088p Main@4.0 | Main | 4.0");
    f.vui = vui_with_timing(1, 90000);
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1920x1088p Main@4.0 | Main | 4.0");
    f.vui = vui_with_timing(0xFFFFFFFF, 0xFFFFFFFF);
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1920x1088p Main@4.0 | Main | 4.0");
}

TEST(codec_h264, all_parts_that_may_stand_in_a_set_are_stepped_over)
{
    fields f;
    f.profile_idc = 100;
    f.chroma = bit_writer().ue(1).ue(0).ue(0).flags("0 1");
    f.chroma.u(1, 1);
    for (int i = 0; i < 16; ++i) f.chroma.se(i % 2 == 0 ? 3 : -3);
    f.chroma.u(1, 1).se(-8).u(0, 4); // a list that ends at its first value, and four that are not there
    f.chroma.u(1, 1);
    for (int i = 0; i < 64; ++i) f.chroma.se(2);
    f.chroma.u(0, 1);
    f.pic_order_cnt_type = 1;
    f.pic_order_cnt = bit_writer().u(0, 1).se(-3).se(4).ue(3).se(1).se(-200).se(70000);
    f.vui = bit_writer().flags("1 1").u(255, 8).u(64, 16).u(45, 16).flags("1 1 1 101 0 1").u(0x010101, 24);
    f.vui.u(1, 1).ue(1).ue(2).flags("1").u(1, 32).u(50, 32).u(1, 1);
    for (int kind = 0; kind < 2; ++kind) {
        f.vui.u(1, 1).ue(1).u(4, 4).u(5, 4);
        for (int i = 0; i < 2; ++i) f.vui.ue(100000).ue(0xFFFFFFFE).u(1, 1);
        f.vui.u(0x12345, 20);
    }
    f.vui.flags("0 1 1 1").ue(2).ue(1).ue(16).ue(16).ue(2).ue(4);
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1920x1088 25p High@4.0 | High | 4.0");

    f.pic_order_cnt_type = 0;
    f.pic_order_cnt = bit_writer().ue(12);
    EXPECT_EQ(found_in(set_of(f)), "H.264 | 1920x1088 25p High@4.0 | High | 4.0");

    f.profile_idc = 244;
    f.chroma = bit_writer().ue(3).u(0, 1).ue(0).ue(0).flags("0 1").u(0, 12);
    EXPECT_EQ(found_in(set_of(f)),
              "H.264 | 1920x1088 25p High 4:4:4 Predictive@4.0 | High 4:4:4 Predictive | 4.0");
}

TEST(codec_h264, a_set_that_does_not_end_with_its_last_field_gives_nothing)
{
    fields f;
    f.vui = bit_writer().flags("0 1");
    EXPECT_EQ(found_in(set_of(f)), "nothing");
    f.vui = bit_writer().flags("0 00000000");
    EXPECT_EQ(found_in(set_of(f)), "nothing");
    f.vui = bit_writer().flags("1");
    EXPECT_EQ(found_in(set_of(f)), "nothing");
    f.vui = bit_writer().flags("0");
    f.id = 32;
    EXPECT_EQ(found_in(set_of(f)), "nothing");
    f.id = 0;
    f.profile_idc = 100;
    f.chroma = bit_writer().ue(4).ue(0).ue(0).flags("0 0");
    EXPECT_EQ(found_in(set_of(f)), "nothing");
}

TEST(codec_h264, other_nal_units_are_none)
{
    const char *const set = "4d4020eca02802dd80880000030008000003032078c18cb0";
    for (const char *const header : {"E7", "07", "68", "6F"})
        EXPECT_EQ(found_in(join({hex("000001"), hex(header), hex(set), hex("000001")})), "nothing") << header;
    EXPECT_EQ(found_in(join({hex("000001 000001 67 000001 67"), hex(set), hex("000001")})),
              "H.264 | 1280x720 50p Main@3.2 | Main | 3.2");
    EXPECT_EQ(found_in(join({hex("000001 67"), hex(set), hex("000000 0000 000001")})),
              "H.264 | 1280x720 50p Main@3.2 | Main | 3.2");
    EXPECT_EQ(found_in(join({hex("000001 67"), repeated(0x55, 5000), hex("000001")})), "nothing");
}

TEST(codec_h264, a_cut_set_gives_nothing_wrong)
{
    const bytes whole =
        between_start_codes("67640028acd94078044fde022000000300200000064c4c001e848003d09c98601f162d96");
    expect_nothing_wrong_when_cut(h264_details, whole, whole.size() - 1);
}

TEST(codec_h264, changed_bytes_do_no_harm)
{
    expect_no_harm_from_changes(
        h264_details,
        between_start_codes("67640028acd94078044fde022000000300200000064c4c001e848003d09c98601f162d96"));
}
