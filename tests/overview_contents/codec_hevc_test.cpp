#include "mpeg_ts_overview/contents/codec_hevc.h"

#include "tests/overview_contents/bit_writer.h"
#include "tests/overview_contents/codec_test.h"

namespace {

constexpr const char *encoder_vps = "40010c01ffff01600000030090000003000003007b959809";
constexpr const char *encoder_sps =
    "42010101600000030090000003000003007ba003c08010e596566924caf0168080000003008000001904";

std::string found_in(const bytes &data)
{
    return found_by(hevc_details, data);
}

bytes between_start_codes(const char *vps, const char *sps)
{
    return join({hex("00000001 460150 00000001"), hex(vps), hex("00000001"), hex(sps), hex("000001 44")});
}

/// profile_tier_level of Main at level 4.1, progressive, with this many sub-layers above the first.
bit_writer levels(unsigned max_sub_layers_minus1 = 0, std::string_view source_flags = "10",
                  unsigned profile = 1, unsigned tier = 0, unsigned space = 0)
{
    bit_writer out;
    out.u(space, 2)
        .u(tier, 1)
        .u(profile, 5)
        .u(0x60000000, 32)
        .flags(source_flags)
        .flags("0 1")
        .u(0, 44)
        .u(123, 8);
    for (unsigned i = 0; i < max_sub_layers_minus1; ++i) out.flags(i % 2 == 0 ? "11" : "01");
    if (max_sub_layers_minus1 > 0) out.u(0, 2 * (8 - max_sub_layers_minus1));
    for (unsigned i = 0; i < max_sub_layers_minus1; ++i)
        out.u(0, i % 2 == 0 ? 44 : 0).u(0, i % 2 == 0 ? 44 : 0).u(0, 8);
    return out;
}

/// What a test may want otherwise in a set of 1920x1088.
struct fields {
    unsigned max_sub_layers_minus1 = 0;
    bit_writer profile_tier_level = levels();
    unsigned id = 0;
    bit_writer size = bit_writer().ue(1).ue(1920).ue(1088).u(0, 1);
    unsigned log2_max_poc_lsb_minus4 = 4;
    bit_writer ordering = bit_writer().u(1, 1).ue(4).ue(2).ue(0);
    bit_writer scaling_list = bit_writer().u(0, 1);
    bit_writer pcm = bit_writer().u(0, 1);
    bit_writer short_term = bit_writer().ue(0);
    bit_writer long_term = bit_writer().u(0, 1);
    bit_writer vui = bit_writer().u(0, 1);
    bit_writer extension = bit_writer().u(0, 1);
};

bytes set_of(const fields &f)
{
    bit_writer out;
    out.u(0, 4)
        .u(f.max_sub_layers_minus1, 3)
        .u(1, 1)
        .append(f.profile_tier_level)
        .ue(f.id)
        .append(f.size)
        .ue(0)
        .ue(0);
    out.ue(f.log2_max_poc_lsb_minus4)
        .append(f.ordering)
        .ue(0)
        .ue(3)
        .ue(0)
        .ue(3)
        .ue(1)
        .ue(1)
        .append(f.scaling_list);
    out.flags("1 1")
        .append(f.pcm)
        .append(f.short_term)
        .append(f.long_term)
        .flags("1 1")
        .append(f.vui)
        .append(f.extension);
    return out.nal_unit(hex("4201"));
}

/// Up to the default display window.
bit_writer vui_start(bool field_seq_flag = false)
{
    return bit_writer().flags("1 0 0 0 0 0").u(field_seq_flag, 1).flags("0 0");
}

bit_writer vui_with_timing(unsigned num_units_in_tick, unsigned time_scale, bool field_seq_flag = false)
{
    return vui_start(field_seq_flag).u(1, 1).u(num_units_in_tick, 32).u(time_scale, 32).flags("0 0 0");
}

bytes vps_with_timing(unsigned num_units_in_tick, unsigned time_scale, unsigned layer_sets = 1)
{
    bit_writer out;
    out.u(0, 4).flags("11").u(0, 6).u(2, 3).u(1, 1).u(0xFFFF, 16).append(levels(2)).u(1, 1);
    for (int i = 0; i < 3; ++i) out.ue(4).ue(2).ue(0);
    out.u(1, 6).ue(layer_sets - 1);
    for (unsigned i = 1; i < layer_sets; ++i) out.u(3, 2);
    out.u(1, 1).u(num_units_in_tick, 32).u(time_scale, 32).flags("0").ue(0).u(0, 1);
    return out.nal_unit(hex("4001"));
}

constexpr const char *plain = "HEVC | 1920x1088p Main@4.1 | Main | 4.1";

} // namespace

TEST(codec_hevc, sets_of_an_encoder_are_read)
{
    EXPECT_EQ(found_in(between_start_codes(encoder_vps, encoder_sps)),
              "HEVC | 1920x1080 50p Main@4.1 | Main | 4.1");
    EXPECT_EQ(found_in(between_start_codes("40010c01ffff022000000300900000030000030099959409",
                                           "420101022000000300900000030000030099a001e020021c4d965654a4e1780b"
                                           "40400000fa40003a981849261f80004c4b40002625a2")),
              "HEVC | 3840x2160 59.94p Main 10@5.1 | Main 10 | 5.1");
}

TEST(codec_hevc, pictures_that_are_fields_are_half_a_frame)
{
    EXPECT_EQ(found_in(between_start_codes(
                  "40010c01ffff01600000030040000003000003005a959409",
                  "42010101600000030040000003000003005aa005a200905965654a4c2f016868000003000800000300c840")),
              "HEVC | 720x1152 12.5i Main@3.0 | Main | 3.0");
}

TEST(codec_hevc, what_is_scanned_how_is_said_only_when_the_source_flags_tell)
{
    fields f;
    const auto scanned = [&](std::string_view source_flags) {
        f.profile_tier_level = levels(0, source_flags);
        return found_in(set_of(f));
    };
    EXPECT_EQ(scanned("10"), plain);
    EXPECT_EQ(scanned("01"), "HEVC | 1920x1088i Main@4.1 | Main | 4.1");
    EXPECT_EQ(scanned("00"), "HEVC | 1920x1088 Main@4.1 | Main | 4.1");
    EXPECT_EQ(scanned("11"), "HEVC | 1920x1088 Main@4.1 | Main | 4.1");
    f.vui = vui_with_timing(1, 25);
    EXPECT_EQ(scanned("00"), "HEVC | 1920x1088 25 fps Main@4.1 | Main | 4.1");
}

TEST(codec_hevc, the_conformance_window_counts_in_chroma_samples)
{
    const auto size = [](const bit_writer &written) {
        fields f;
        f.size = written;
        const std::string found = found_in(set_of(f));
        return found == "nothing" ? found : found.substr(7, found.find("p ") - 7);
    };
    EXPECT_EQ(size(bit_writer().ue(1).ue(1920).ue(1088).u(1, 1).ue(1).ue(2).ue(0).ue(4)), "1914x1080");
    EXPECT_EQ(size(bit_writer().ue(2).ue(1920).ue(1088).u(1, 1).ue(1).ue(2).ue(0).ue(4)), "1914x1084");
    EXPECT_EQ(size(bit_writer().ue(3).u(0, 1).ue(1920).ue(1088).u(1, 1).ue(1).ue(2).ue(0).ue(4)),
              "1917x1084");
    EXPECT_EQ(size(bit_writer().ue(3).u(1, 1).ue(1920).ue(1088).u(1, 1).ue(1).ue(2).ue(0).ue(4)),
              "1917x1084");
    EXPECT_EQ(size(bit_writer().ue(0).ue(1920).ue(1088).u(1, 1).ue(1).ue(2).ue(0).ue(4)), "1917x1084");
    EXPECT_EQ(size(bit_writer().ue(1).ue(1920).ue(1088).u(1, 1).ue(480).ue(480).ue(0).ue(4)), "nothing");
    EXPECT_EQ(size(bit_writer().ue(1).ue(1920).ue(1088).u(1, 1).ue(0).ue(0).ue(0xFFFFFFFE).ue(0xFFFFFFFE)),
              "nothing");
    EXPECT_EQ(size(bit_writer().ue(1).ue(0).ue(1088).u(0, 1)), "nothing");
    EXPECT_EQ(size(bit_writer().ue(1).ue(1920).ue(0).u(0, 1)), "nothing");
    EXPECT_EQ(size(bit_writer().ue(1).ue(16889).ue(1088).u(0, 1)), "nothing");
    EXPECT_EQ(size(bit_writer().ue(1).ue(1920).ue(16889).u(0, 1)), "nothing");
    EXPECT_EQ(size(bit_writer().ue(4).ue(1920).ue(1088).u(0, 1)), "nothing");
}

TEST(codec_hevc, profiles_levels_and_tiers_have_names)
{
    const auto name = [](unsigned profile, unsigned tier = 0, unsigned space = 0) {
        fields f;
        f.profile_tier_level = levels(0, "10", profile, tier, space);
        const std::string found = found_in(set_of(f));
        return found.substr(found.find(" | ", 8) + 3);
    };
    EXPECT_EQ(name(1), "Main | 4.1");
    EXPECT_EQ(name(2, 1), "Main 10 | 4.1 high tier");
    EXPECT_EQ(name(3), "Main Still Picture | 4.1");
    EXPECT_EQ(name(4), "Range Extensions | 4.1");
    EXPECT_EQ(name(5), "High Throughput | 4.1");
    EXPECT_EQ(name(9), "Screen Content Coding | 4.1");
    EXPECT_EQ(name(11), "High Throughput Screen Content Coding | 4.1");
    EXPECT_EQ(name(0), " | 4.1");
    EXPECT_EQ(name(1, 0, 1), " | ");
}

TEST(codec_hevc, sub_layers_are_stepped_over)
{
    for (unsigned count = 0; count <= 6; ++count)
        for (const bool has_all : {false, true}) {
            fields f;
            f.max_sub_layers_minus1 = count;
            f.profile_tier_level = levels(count);
            f.ordering = bit_writer().u(has_all, 1);
            for (unsigned i = has_all ? 0 : count; i <= count; ++i) f.ordering.ue(i).ue(i).ue(7);
            EXPECT_EQ(found_in(set_of(f)), plain) << count << has_all;
        }
    fields f;
    f.max_sub_layers_minus1 = 7;
    f.profile_tier_level = levels(7);
    EXPECT_EQ(found_in(set_of(f)), "nothing");
}

TEST(codec_hevc, scaling_lists_are_stepped_over)
{
    fields f;
    f.scaling_list = bit_writer().flags("1 0");
    EXPECT_EQ(found_in(set_of(f)), plain);
    f.scaling_list = bit_writer().flags("1 1");
    for (unsigned list = 0; list < 20; ++list) {
        if (list % 3 == 2) {
            f.scaling_list.u(0, 1).ue(list % 6);
            continue;
        }
        f.scaling_list.u(1, 1);
        if (list >= 12) f.scaling_list.se(-5);
        for (unsigned i = 0; i < (list < 6 ? 16 : 64); ++i) f.scaling_list.se(static_cast<int>(i % 5) - 2);
    }
    EXPECT_EQ(found_in(set_of(f)), plain);
}

TEST(codec_hevc, pcm_and_long_term_pictures_are_stepped_over)
{
    fields f;
    f.pcm = bit_writer().u(1, 1).u(7, 4).u(7, 4).ue(0).ue(2).u(1, 1);
    f.long_term = bit_writer().u(1, 1).ue(2).u(0xAB, 8).u(1, 1).u(0x12, 8).u(0, 1);
    EXPECT_EQ(found_in(set_of(f)), plain);
    f.log2_max_poc_lsb_minus4 = 12;
    f.long_term = bit_writer().u(1, 1).ue(1).u(0xABCD, 16).u(1, 1);
    EXPECT_EQ(found_in(set_of(f)), plain);
    f.log2_max_poc_lsb_minus4 = 13;
    f.long_term = bit_writer().u(1, 1).ue(1).u(0xABCD, 17).u(1, 1);
    EXPECT_EQ(found_in(set_of(f)), "nothing");
}

TEST(codec_hevc, predicted_reference_picture_sets_are_as_long_as_their_neighbour)
{
    fields f;
    // {-1, -3 | +2}; the set one picture later, all used: {-1, -2, -4 | +1}.
    f.short_term = bit_writer().ue(3).ue(2).ue(1).ue(0).u(1, 1).ue(1).u(1, 1).ue(1).u(1, 1);
    f.short_term.u(1, 1).u(1, 1).ue(0).flags("1 1 1 1");
    // Five flags for four pictures and the one itself; the second is not used but kept, the third left out.
    f.short_term.u(1, 1).u(0, 1).ue(1).flags("1 01 00 1 1");
    EXPECT_EQ(found_in(set_of(f)), plain);
}

TEST(codec_hevc, a_picture_that_prediction_puts_on_the_current_one_is_left_out)
{
    fields f;
    // {-1 | +1} moved by one: the first would be the current picture; {| +1, +2} remain.
    f.short_term = bit_writer().ue(3).ue(1).ue(1).ue(0).u(1, 1).ue(0).u(1, 1);
    f.short_term.u(1, 1).u(0, 1).ue(0).flags("1 1 1");
    f.short_term.u(1, 1).u(0, 1).ue(0).flags("1 1 1");
    EXPECT_EQ(found_in(set_of(f)), plain);
}

TEST(codec_hevc, more_reference_picture_sets_than_allowed_give_nothing)
{
    fields f;
    f.short_term = bit_writer().ue(64);
    for (int i = 0; i < 64; ++i) f.short_term.flags(i == 0 ? "" : "0").ue(0).ue(0);
    EXPECT_EQ(found_in(set_of(f)), plain);
    f.short_term = bit_writer().ue(65);
    for (int i = 0; i < 65; ++i) f.short_term.flags(i == 0 ? "" : "0").ue(0).ue(0);
    EXPECT_EQ(found_in(set_of(f)), "nothing");
}

TEST(codec_hevc, all_of_the_display_parameters_are_stepped_over)
{
    fields f;
    f.max_sub_layers_minus1 = 1;
    f.profile_tier_level = levels(1);
    f.ordering = bit_writer().u(0, 1).ue(4).ue(2).ue(0);
    f.vui = bit_writer().flags("1 1").u(255, 8).u(64, 16).u(45, 16).flags("1 0 1 101 0 1").u(0x010101, 24);
    f.vui.u(1, 1).ue(1).ue(2).flags("0 0 1 1").ue(0).ue(1).ue(2).ue(3);
    f.vui.u(1, 1).u(1, 32).u(50, 32).u(1, 1).ue(0).u(1, 1);
    f.vui.flags("1 1 1").u(98, 8).u(4, 5).u(0, 1).u(5, 5).u(1, 4).u(2, 4).u(3, 4).u(23, 5).u(15, 5).u(5, 5);
    f.vui.u(1, 1).ue(0).ue(1); // a fixed rate, two buffers of each kind
    for (int i = 0; i < 4; ++i) f.vui.ue(1000).ue(2000).ue(3000).ue(4000).u(1, 1);
    f.vui.flags("0 0 1"); // no fixed rate, low delay: one buffer of each kind
    for (int i = 0; i < 2; ++i) f.vui.ue(1000).ue(2000).ue(3000).ue(4000).u(1, 1);
    f.vui.u(1, 1).flags("0 1 1").ue(0).ue(2).ue(1).ue(15).ue(15);
    EXPECT_EQ(found_in(set_of(f)), "HEVC | 1920x1088 50p Main@4.1 | Main | 4.1");

    f.max_sub_layers_minus1 = 0;
    f.profile_tier_level = levels();
    f.vui = vui_start().u(1, 1).u(1, 32).u(25, 32).flags("0 1 0 0").flags("0 1").ue(7).ue(0).u(0, 1);
    EXPECT_EQ(found_in(set_of(f)), "HEVC | 1920x1088 25p Main@4.1 | Main | 4.1");
    f.vui = vui_start()
                .u(1, 1)
                .u(1, 32)
                .u(25, 32)
                .flags("0 1 0 1 0")
                .u(0, 8)
                .u(0, 15)
                .flags("0 0 0")
                .ue(0)
                .ue(9)
                .ue(9)
                .u(0, 1)
                .u(0, 1);
    EXPECT_EQ(found_in(set_of(f)), "HEVC | 1920x1088 25p Main@4.1 | Main | 4.1");
}

TEST(codec_hevc, the_video_parameter_set_gives_the_rate_where_the_other_has_none)
{
    fields f;
    EXPECT_EQ(found_in(join({vps_with_timing(1, 50), set_of(f)})),
              "HEVC | 1920x1088 50p Main@4.1 | Main | 4.1");
    EXPECT_EQ(found_in(join({vps_with_timing(1, 50, 9), set_of(f)})),
              "HEVC | 1920x1088 50p Main@4.1 | Main | 4.1");
    EXPECT_EQ(found_in(join({vps_with_timing(1, 50), vps_with_timing(0, 50), set_of(f)})), plain);
    f.vui = vui_with_timing(1, 25);
    EXPECT_EQ(found_in(join({vps_with_timing(1, 50), set_of(f)})),
              "HEVC | 1920x1088 25p Main@4.1 | Main | 4.1");
    f.vui = vui_start(true).flags("0 0");
    EXPECT_EQ(found_in(join({vps_with_timing(1, 50), set_of(f)})),
              "HEVC | 1920x2176 25i Main@4.1 | Main | 4.1");
    f.vui = vui_with_timing(1, 50, true);
    EXPECT_EQ(found_in(set_of(f)), "HEVC | 1920x2176 25i Main@4.1 | Main | 4.1");
}

TEST(codec_hevc, a_set_that_does_not_end_with_its_last_field_gives_nothing)
{
    fields f;
    f.vui = bit_writer().flags("0 0");
    EXPECT_EQ(found_in(set_of(f)), "nothing");
    f.vui = bit_writer().u(0, 1);
    f.id = 16;
    EXPECT_EQ(found_in(set_of(f)), "nothing");
    f.id = 0;
    f.extension = bit_writer().flags("1 1000 0000 0 1 0 1 0");
    EXPECT_EQ(found_in(set_of(f)), plain) << "what an extension holds is not known";
}

TEST(codec_hevc, other_nal_units_are_none)
{
    const bytes sps = hex(encoder_sps + 4);
    for (const char *const header : {"C201", "4401", "4209", "4202", "4200", "4301"})
        EXPECT_EQ(found_in(join({hex("000001"), hex(header), sps, hex("000001")})), "nothing") << header;
    EXPECT_EQ(found_in(join({hex("000001 000001 42 000001 4201"), sps, hex("000001")})),
              "HEVC | 1920x1080 50p Main@4.1 | Main | 4.1");
}

TEST(codec_hevc, a_cut_set_gives_nothing_wrong)
{
    const bytes whole = between_start_codes(encoder_vps, encoder_sps);
    expect_nothing_wrong_when_cut(hevc_details, whole, whole.size() - 1);
}

TEST(codec_hevc, changed_bytes_do_no_harm)
{
    expect_no_harm_from_changes(hevc_details, between_start_codes(encoder_vps, encoder_sps));
    fields f;
    f.short_term = bit_writer().ue(3).ue(2).ue(1).ue(0).u(1, 1).ue(1).u(1, 1).ue(1).u(1, 1);
    f.short_term.u(1, 1).u(1, 1).ue(0).flags("1 1 1 1");
    f.short_term.u(1, 1).u(0, 1).ue(1).flags("1 01 00 1 1");
    f.vui = vui_start()
                .u(1, 1)
                .u(1, 32)
                .u(25, 32)
                .flags("0 1 0 1 0")
                .u(0, 8)
                .u(0, 15)
                .flags("0 0 0")
                .ue(0)
                .ue(9)
                .ue(9)
                .u(0, 1)
                .u(0, 1);
    expect_no_harm_from_changes(hevc_details, join({vps_with_timing(1, 50, 9), set_of(f)}));
}
