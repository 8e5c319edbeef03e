#include "mpeg_ts_overview/contents/codec_mpeg_video.h"

#include "tests/overview_contents/bit_writer.h"
#include "tests/overview_contents/codec_test.h"

namespace {

std::string found_in(const bytes &data)
{
    return found_by(mpeg_video_details, data);
}

/// What a test may want otherwise in an MPEG-2 header.
struct fields {
    unsigned horizontal_size = 720, vertical_size = 576, aspect_ratio = 3, frame_rate_code = 3,
             marker_bit = 1;
    bool has_intra = false, has_non_intra = false;
    unsigned profile_and_level = 0x48, progressive = 0, chroma_format = 1, extension_marker_bit = 1;
    unsigned rate_n = 0, rate_d = 0;
};

bytes sequence_header(const fields &f)
{
    bit_writer out;
    out.u(0x000001B3, 32)
        .u(f.horizontal_size & 0xFFF, 12)
        .u(f.vertical_size & 0xFFF, 12)
        .u(f.aspect_ratio, 4);
    out.u(f.frame_rate_code, 4).u(15000, 18).u(f.marker_bit, 1).u(112, 10).u(0, 1).u(f.has_intra, 1);
    if (f.has_intra)
        for (unsigned i = 0; i < 64; ++i) out.u(16 + i, 8);
    out.u(f.has_non_intra, 1);
    if (f.has_non_intra)
        for (unsigned i = 0; i < 64; ++i) out.u(16 + i, 8);
    return out.padded();
}

bytes sequence_extension(const fields &f, unsigned identifier = 1)
{
    bit_writer out;
    out.u(0x000001B5, 32)
        .u(identifier, 4)
        .u(f.profile_and_level, 8)
        .u(f.progressive, 1)
        .u(f.chroma_format, 2);
    out.u(f.horizontal_size >> 12, 2)
        .u(f.vertical_size >> 12, 2)
        .u(0, 12)
        .u(f.extension_marker_bit, 1)
        .u(0, 8);
    out.u(0, 1).u(f.rate_n, 2).u(f.rate_d, 5);
    return out.padded();
}

std::string found_with(const fields &f)
{
    return found_in(join({sequence_header(f), sequence_extension(f)}));
}

} // namespace

TEST(codec_mpeg_video, headers_of_an_encoder_are_read)
{
    EXPECT_EQ(found_in(hex("000001b35002d033ffffe340000001b5146a00010000000001b800080040")),
              "MPEG-2 video | 1280x720 25p Main@High 1440 | Main | High 1440");
    EXPECT_EQ(found_in(hex("000001b32d01e014ffffe018000001b5148200010000000001b800080040")),
              "MPEG-2 video | 720x480 29.97i Main@Main | Main | Main");
    EXPECT_EQ(found_in(hex("000001b378043833ffffe018000001b5182400010000000001b800080040")),
              "MPEG-2 video | 1920x1080 25i 4:2:2@High | 4:2:2 | High");
    EXPECT_EQ(found_in(hex("000001b316012013ffffe018000001b80008004000000100000ffff80000")),
              "MPEG-1 video | 352x288 25p |  | ");
}

TEST(codec_mpeg_video, quantiser_matrices_are_stepped_over)
{
    for (const bool has_intra : {false, true})
        for (const bool has_non_intra : {false, true}) {
            fields f;
            f.has_intra = has_intra;
            f.has_non_intra = has_non_intra;
            EXPECT_EQ(found_with(f), "MPEG-2 video | 720x576 25i Main@Main | Main | Main")
                << has_intra << has_non_intra;
        }
}

TEST(codec_mpeg_video, every_frame_rate_has_its_code)
{
    const char *const rates[] = {"23.976", "24", "25", "29.97", "30", "50", "59.94", "60"};
    for (unsigned code = 0; code < 16; ++code) {
        fields f;
        f.frame_rate_code = code;
        const bool is_rate = code >= 1 && code <= 8;
        EXPECT_EQ(found_with(f), is_rate ? std::string("MPEG-2 video | 720x576 ") + rates[code - 1] +
                                               "i Main@Main | Main | Main"
                                         : "nothing");
    }
}

TEST(codec_mpeg_video, the_extension_widens_size_and_rate)
{
    fields f;
    f.horizontal_size = 0x1000 + 7680 - 4096;
    f.vertical_size = 4320;
    f.rate_n = 1;
    f.rate_d = 4;
    f.progressive = 1;
    EXPECT_EQ(found_with(f), "MPEG-2 video | 7680x4320 10p Main@Main | Main | Main");
}

TEST(codec_mpeg_video, profiles_and_levels_have_names)
{
    const auto name = [](unsigned profile_and_level) {
        fields f;
        f.profile_and_level = profile_and_level;
        const std::string found = found_with(f);
        return found.substr(found.find("i") == std::string::npos ? 0 : found.find(" | ", 15) + 3);
    };
    EXPECT_EQ(name(0x14), "High | High");
    EXPECT_EQ(name(0x26), "Spatially Scalable | High 1440");
    EXPECT_EQ(name(0x38), "SNR Scalable | Main");
    EXPECT_EQ(name(0x4A), "Main | Low");
    EXPECT_EQ(name(0x58), "Simple | Main");
    EXPECT_EQ(name(0x60), " | ");
    EXPECT_EQ(name(0x82), "4:2:2 | High");
    EXPECT_EQ(name(0x85), "4:2:2 | Main");
    EXPECT_EQ(name(0x8A), "Multi-view | High");
    EXPECT_EQ(name(0x8B), "Multi-view | High 1440");
    EXPECT_EQ(name(0x8D), "Multi-view | Main");
    EXPECT_EQ(name(0x8E), "Multi-view | Low");
    EXPECT_EQ(name(0x84), " | ");
    EXPECT_EQ(name(0xC8), " | ");
}

TEST(codec_mpeg_video, values_that_are_forbidden_give_nothing)
{
    const auto expect_nothing_with = [](auto change) {
        fields f;
        change(f);
        EXPECT_EQ(found_with(f), "nothing");
    };
    expect_nothing_with([](fields &f) { f.horizontal_size = 0; });
    expect_nothing_with([](fields &f) { f.vertical_size = 0; });
    expect_nothing_with([](fields &f) { f.aspect_ratio = 0; });
    expect_nothing_with([](fields &f) { f.marker_bit = 0; });
    expect_nothing_with([](fields &f) { f.extension_marker_bit = 0; });
    expect_nothing_with([](fields &f) { f.chroma_format = 0; });
}

TEST(codec_mpeg_video, what_follows_tells_mpeg_1_from_mpeg_2)
{
    const bytes header = sequence_header({});
    for (const char *const code : {"00", "B2", "B8"})
        EXPECT_EQ(found_in(join({header, hex("00000001"), hex(code)})), "MPEG-1 video | 720x576 25p |  | ")
            << code;
    for (const char *const code : {"01", "B3", "B7", "E0"})
        EXPECT_EQ(found_in(join({header, hex("000001"), hex(code)})), "nothing") << code;
    EXPECT_EQ(found_in(join({header, hex("01 000001 B8")})), "nothing");
    EXPECT_EQ(found_in(join({header, sequence_extension({}, 2)})), "nothing");
}

TEST(codec_mpeg_video, the_first_good_header_counts)
{
    fields bad;
    bad.aspect_ratio = 0;
    EXPECT_EQ(found_in(join({sequence_header(bad), sequence_extension({}), hex("FF 00 00"),
                             sequence_header({}), sequence_extension({})})),
              "MPEG-2 video | 720x576 25i Main@Main | Main | Main");
}

TEST(codec_mpeg_video, a_cut_header_gives_nothing_wrong)
{
    fields f;
    f.has_intra = f.has_non_intra = true;
    const bytes whole = join({hex("47 00"), sequence_header(f), sequence_extension(f), hex("000001B8")});
    expect_nothing_wrong_when_cut(mpeg_video_details, whole, whole.size() - 4);
    const bytes mpeg_1 = join({sequence_header({}), hex("000001B8 0000")});
    expect_nothing_wrong_when_cut(mpeg_video_details, mpeg_1, mpeg_1.size() - 2);
}

TEST(codec_mpeg_video, changed_bytes_do_no_harm)
{
    expect_no_harm_from_changes(mpeg_video_details, join({sequence_header({}), sequence_extension({})}));
}
