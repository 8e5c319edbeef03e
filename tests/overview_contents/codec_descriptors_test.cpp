#include "mpeg_ts_overview/contents/codec_descriptors.h"

#include "mpeg_ts_overview/contents/codec_details_text.h"

#include "tests/support/stream_builder.h"

#include <gtest/gtest.h>

namespace {

/// Name and details; "nothing" when no descriptor of the family says any.
std::string said(codec_family family, const bytes &ES_info)
{
    const bytes block(ES_info.begin(), ES_info.end());
    const auto details = described_details({block.data(), block.data() + block.size()}, family);
    return details ? details->name + " | " + codec_details_text(*details) : "nothing";
}

} // namespace

TEST(codec_descriptors, a_video_stream_has_rate_profile_and_level)
{
    const auto video = [](std::string_view body) {
        return said(codec_family::mpeg_video, descriptor(0x02, hex(body)));
    };
    EXPECT_EQ(video("1A 48 5F"), "MPEG-2 video | 25 fps Main@Main");
    EXPECT_EQ(video("1A 44 5F"), "MPEG-2 video | 25 fps Main@High");
    EXPECT_EQ(video("9A 48 5F"), "MPEG-2 video | Main@Main"); // several rates
    EXPECT_EQ(video("1A 48 7F"), "MPEG-2 video | Main@Main"); // frame_rate_extension_flag
    EXPECT_EQ(video("02 48 5F"), "MPEG-2 video | Main@Main"); // a forbidden rate
    EXPECT_EQ(video("1E"), "MPEG-1 video | 25 fps");
}

TEST(codec_descriptors, an_audio_stream_has_its_layer)
{
    const auto audio = [](std::string_view body) {
        return said(codec_family::mpeg_audio, descriptor(0x03, hex(body)));
    };
    EXPECT_EQ(audio("77"), "MPEG-1 audio layer I | ");
    EXPECT_EQ(audio("67"), "MPEG-1 audio layer II | ");
    EXPECT_EQ(audio("17"), "MPEG-2 audio layer III | ");
    EXPECT_EQ(audio("47"), "nothing"); // a reserved layer
}

TEST(codec_descriptors, h_264_has_profile_and_level)
{
    EXPECT_EQ(said(codec_family::h264, descriptor(0x28, hex("64 00 28 3F"))), "H.264 | High@4.0");
    EXPECT_EQ(said(codec_family::h264, descriptor(0x28, hex("42 40 1E 3F"))),
              "H.264 | Constrained Baseline@3.0");
    EXPECT_EQ(said(codec_family::h264, descriptor(0x28, hex("4D 10 0B 3F"))), "H.264 | Main@1b");
}

TEST(codec_descriptors, hevc_has_profile_tier_and_level)
{
    const auto hevc = [](std::string_view body) {
        return said(codec_family::hevc, descriptor(0x38, hex(body)));
    };
    EXPECT_EQ(hevc("01 60000000 900000000000 7B 3F"), "HEVC | Main@4.1");
    EXPECT_EQ(hevc("22 20000000 400000000000 99 3F"), "HEVC | Main 10@5.1 high tier");
    EXPECT_EQ(hevc("01 60000000 C00000000000 7B 3F"), "HEVC | Main@4.1");
    EXPECT_EQ(hevc("41 60000000 000000000000 7B 3F"), "HEVC | "); // another profile space
}

TEST(codec_descriptors, aac_has_profile_and_channels)
{
    EXPECT_EQ(said(codec_family::adts, descriptor(0x2B, hex("01 02 00"))), "AAC | LC 2 ch");
    EXPECT_EQ(said(codec_family::adts, descriptor(0x2B, hex("00 06 00"))), "AAC | Main 5.1 ch");
    EXPECT_EQ(said(codec_family::adts, descriptor(0x2B, hex("03 07 00"))), "AAC | 7.1 ch");
    EXPECT_EQ(said(codec_family::adts, descriptor(0x2B, hex("01 00 00"))), "AAC | LC");
    EXPECT_EQ(said(codec_family::adts, descriptor(0x2B, hex("01 08 00"))), "AAC | LC");
}

TEST(codec_descriptors, ac_3_in_dvb_has_channels_where_it_says_exactly_how_many)
{
    for (const unsigned tag : {0x6Au, 0x7Au}) {
        const auto ac3 = [&](std::string_view body) {
            return said(codec_family::ac3, descriptor(tag, hex(body)));
        };
        EXPECT_EQ(ac3("80 40"), " | 1 ch");
        EXPECT_EQ(ac3("80 41"), " | 2 ch");
        EXPECT_EQ(ac3("80 C2"), " | 2 ch");
        EXPECT_EQ(ac3("80 43"), " | 2 ch");
        EXPECT_EQ(ac3("80 44"), "nothing");
        EXPECT_EQ(ac3("40 42"), "nothing"); // no component_type
    }
}

TEST(codec_descriptors, ac_3_in_atsc_has_rate_channels_and_bit_rate_where_they_are_exact)
{
    const auto ac3 = [](std::string_view body) {
        return said(codec_family::ac3, descriptor(0x81, hex(body)));
    };
    EXPECT_EQ(ac3("08 28 05"), " | 48 kHz 2 ch 192 kbit/s");
    EXPECT_EQ(ac3("28 48 0F"), " | 44.1 kHz 5 ch 640 kbit/s");
    EXPECT_EQ(ac3("48 00 03"), " | 32 kHz 1 ch 32 kbit/s");
    EXPECT_EQ(ac3("68 A8 05"), " | 2 ch");              // one of several rates, a highest bit rate
    EXPECT_EQ(ac3("08 28 11"), " | 48 kHz 192 kbit/s"); // at most so many channels
}

TEST(codec_descriptors, those_of_other_families_say_nothing)
{
    const bytes all = join({descriptor(0x0A, hex("656E6700")), descriptor(0x28, hex("64 00 28 3F"))});
    EXPECT_EQ(said(codec_family::h264, all), "H.264 | High@4.0");
    EXPECT_EQ(said(codec_family::hevc, all), "nothing");
    EXPECT_EQ(said(codec_family::mpeg_audio, descriptor(0x02, hex("1A 48 5F"))), "nothing");
}

TEST(codec_descriptors, cut_ones_say_nothing)
{
    struct {
        codec_family family;
        unsigned tag;
        const char *whole;
    } const cases[] = {
        {codec_family::mpeg_video, 0x02, "1A 48 5F"                      },
        {codec_family::mpeg_audio, 0x03, "67"                            },
        {codec_family::h264,       0x28, "64 00 28 3F"                   },
        {codec_family::hevc,       0x38, "01 60000000 900000000000 7B 3F"},
        {codec_family::adts,       0x2B, "01 02 00"                      },
        {codec_family::ac3,        0x6A, "80 42"                         },
        {codec_family::ac3,        0x7A, "80 42"                         },
        {codec_family::ac3,        0x81, "08 28 05"                      },
    };
    for (const auto &known : cases) {
        bytes body = hex(known.whole);
        EXPECT_NE(said(known.family, descriptor(known.tag, body)), "nothing") << known.tag;
        while (!body.empty()) {
            body.pop_back();
            EXPECT_EQ(said(known.family, descriptor(known.tag, body)), "nothing") << known.tag;
        }
    }
}
