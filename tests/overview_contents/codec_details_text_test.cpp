#include "mpeg_ts_overview/contents/codec_details_text.h"

#include <gtest/gtest.h>

TEST(codec_details_text, nothing_known_is_an_empty_line)
{
    EXPECT_EQ(codec_details_text({}), "");
}

TEST(codec_details_text, a_picture_has_size_rate_and_scan)
{
    codec_details details;
    details.interlaced = false;
    EXPECT_EQ(codec_details_text(details), "");
    details.interlaced.reset();
    details.width = 1280;
    EXPECT_EQ(codec_details_text(details), "");
    details.height = 720;
    EXPECT_EQ(codec_details_text(details), "1280x720");
    details.interlaced = true;
    EXPECT_EQ(codec_details_text(details), "1280x720i");
    details.rate = frame_rate{25, 1};
    EXPECT_EQ(codec_details_text(details), "1280x720 25i");
    details.interlaced = false;
    EXPECT_EQ(codec_details_text(details), "1280x720 25p");
    details.interlaced.reset();
    EXPECT_EQ(codec_details_text(details), "1280x720 25 fps");
}

TEST(codec_details_text, rates_have_at_most_three_decimals)
{
    codec_details details;
    details.interlaced = false;
    const auto text = [&](unsigned long long num, unsigned long long den) {
        details.rate = frame_rate{num, den};
        return codec_details_text(details);
    };
    EXPECT_EQ(text(24000, 1001), "23.976p");
    EXPECT_EQ(text(30000, 1001), "29.97p");
    EXPECT_EQ(text(60000, 1001), "59.94p");
    EXPECT_EQ(text(100, 1), "100p");
    EXPECT_EQ(text(25, 2), "12.5p");
    EXPECT_EQ(text(10001, 1000), "10.001p");
    EXPECT_EQ(text(1999999, 100000), "20p");
}

TEST(codec_details_text, a_profile_has_its_level_behind_it)
{
    codec_details details;
    details.name = "H.264";
    details.profile = "Main";
    EXPECT_EQ(codec_details_text(details), "Main");
    details.level = "4.0";
    EXPECT_EQ(codec_details_text(details), "Main@4.0");
    details.name = "MPEG-2 video";
    details.level = "High";
    EXPECT_EQ(codec_details_text(details), "Main@High");
    details.profile = "4:2:2";
    details.level = "High";
    EXPECT_EQ(codec_details_text(details), "4:2:2@High");
    details.profile = "";
    EXPECT_EQ(codec_details_text(details), "");
}

TEST(codec_details_text, sound_has_sample_rate_channels_and_bit_rate)
{
    codec_details details;
    details.profile = "LC";
    details.sample_rate_hz = 48000;
    EXPECT_EQ(codec_details_text(details), "LC 48 kHz");
    details.channels = 2;
    EXPECT_EQ(codec_details_text(details), "LC 48 kHz 2 ch");
    details.low_frequency_channel = false;
    EXPECT_EQ(codec_details_text(details), "LC 48 kHz 2 ch");
    details.sample_rate_hz = 22050;
    details.channels = 5;
    details.low_frequency_channel = true;
    details.bit_rate_bps = 448000;
    EXPECT_EQ(codec_details_text(details), "LC 22.05 kHz 5.1 ch 448 kbit/s");
}
