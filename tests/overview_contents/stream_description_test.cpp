#include "tests/support/stream_builder.h"

#include "mpeg_ts_overview/contents/stream_description.h"
#include "mpeg_ts_overview/tables/stream_type.h"

#include <gtest/gtest.h>

namespace {

stream_description described(unsigned stream_type, const bytes &ES_info = {}, bool blu_ray_program = false)
{
    pmt_entry stream;
    stream.stream_type = static_cast<uint8_t>(stream_type);
    stream.elementary_PID = 0x100;
    stream.ES_info = {ES_info.data(), ES_info.data() + ES_info.size()};
    return describe_stream(stream, blu_ray_program);
}

/// "kind: name".
std::string kind_and_name(const stream_description &description)
{
    return std::string(description.kind) + ": " + description.name;
}

bytes registration(std::string_view format_identifier)
{
    return descriptor(0x05, text_bytes(format_identifier));
}

const bytes teletext_of_two_pages = descriptor(0x56, hex("656E67 09 00  66 72 61 11 88"));

} // namespace

TEST(stream_description, types_of_video_and_audio_have_kind_name_and_family)
{
    struct {
        unsigned stream_type;
        const char *text;
        std::optional<codec_family> family;
    } const cases[] = {
        {0x01, "video: MPEG-1 video", codec_family::mpeg_video},
        {0x02, "video: MPEG-2 video", codec_family::mpeg_video},
        {0x03, "audio: MPEG-1 audio", codec_family::mpeg_audio},
        {0x04, "audio: MPEG-2 audio", codec_family::mpeg_audio},
        {0x0F, "audio: AAC",          codec_family::adts      },
        {0x11, "audio: AAC (LATM)",   {}                      },
        {0x1B, "video: H.264 video",  codec_family::h264      },
        {0x24, "video: HEVC video",   codec_family::hevc      },
        {0x33, "video: VVC video",    {}                      },
        {0x81, "audio: AC-3",         codec_family::ac3       },
        {0x87, "audio: E-AC-3",       codec_family::ac3       },
        {0xEA, "video: VC-1 video",   {}                      },
    };
    for (const auto &expected : cases) {
        EXPECT_EQ(kind_and_name(described(expected.stream_type)), expected.text);
        EXPECT_EQ(described(expected.stream_type).family, expected.family) << expected.text;
    }
}

TEST(stream_description, every_type_that_is_video_or_audio_to_the_meters_is_so_here)
{
    for (unsigned type = 0; type < 256; ++type) {
        for (const bool blu_ray : {false, true}) {
            pmt_entry stream;
            stream.stream_type = static_cast<uint8_t>(type);
            const std::string kind = described(type, {}, blu_ray).kind;
            const stream_kind meters_kind = nature_of(stream, blu_ray).kind;
            if (meters_kind == stream_kind::other) continue;
            EXPECT_EQ(kind, meters_kind == stream_kind::video ? "video" : "audio") << type;
        }
    }
}

TEST(stream_description, types_without_a_name_are_private_or_reserved)
{
    EXPECT_EQ(kind_and_name(described(0x00)), "data: reserved");
    EXPECT_EQ(kind_and_name(described(0x7F)), "data: reserved");
    EXPECT_EQ(kind_and_name(described(0x80)), "data: user private");
    EXPECT_EQ(kind_and_name(described(0xFF)), "data: user private");
}

TEST(stream_description, sections_are_data_or_cues)
{
    EXPECT_EQ(kind_and_name(described(0x05)), "data: private sections");
    EXPECT_EQ(kind_and_name(described(0x05, descriptor(0x6F, {}))), "data: application information");
    EXPECT_EQ(kind_and_name(described(0x86)), "cues: SCTE-35 cues");
    EXPECT_EQ(kind_and_name(described(0x86, {}, true)), "audio: DTS-HD Master");
}

TEST(stream_description, private_data_is_what_its_descriptors_say)
{
    EXPECT_EQ(kind_and_name(described(0x06)), "data: private data");
    EXPECT_EQ(kind_and_name(described(0x06, teletext_of_two_pages)), "teletext: teletext");
    EXPECT_EQ(kind_and_name(described(0x06, descriptor(0x46, {}))), "teletext: VBI teletext");
    EXPECT_EQ(kind_and_name(described(0x06, descriptor(0x59, {}))), "subtitles: DVB subtitles");
    EXPECT_EQ(kind_and_name(described(0x06, descriptor(0x6A, {}))), "audio: AC-3");
    EXPECT_EQ(kind_and_name(described(0x06, descriptor(0x7A, {}))), "audio: E-AC-3");
    EXPECT_EQ(kind_and_name(described(0x06, descriptor(0x7B, {}))), "audio: DTS");
    EXPECT_EQ(kind_and_name(described(0x06, descriptor(0x7C, {}))), "audio: AAC");
    EXPECT_EQ(kind_and_name(described(0x06, descriptor(0x7F, hex("15 00")))), "audio: AC-4");
    EXPECT_EQ(kind_and_name(described(0x06, descriptor(0x7F, hex("20")))), "subtitles: TTML subtitles");
    EXPECT_EQ(kind_and_name(described(0x06, descriptor(0x7F, {}))), "data: private data");
    EXPECT_EQ(kind_and_name(described(0x06, descriptor(0xFD, hex("0008")))), "subtitles: ARIB captions");
    EXPECT_EQ(kind_and_name(described(0x06, descriptor(0xFD, hex("000C")))), "data: private data");
    EXPECT_EQ(described(0x06, descriptor(0x6A, {})).family, codec_family::ac3);
    EXPECT_EQ(described(0x06, descriptor(0x7A, {})).family, codec_family::ac3);
    EXPECT_EQ(described(0x06, descriptor(0x7C, {})).family, codec_family::adts);
    EXPECT_EQ(described(0x06, descriptor(0x7B, {})).family, std::nullopt);
}

TEST(stream_description, private_data_is_what_it_is_registered_as)
{
    EXPECT_EQ(kind_and_name(described(0x06, registration("AC-3"))), "audio: AC-3");
    EXPECT_EQ(kind_and_name(described(0x06, registration("EAC3"))), "audio: E-AC-3");
    EXPECT_EQ(kind_and_name(described(0x06, registration("DTS2"))), "audio: DTS");
    EXPECT_EQ(kind_and_name(described(0x06, registration("Opus"))), "audio: Opus");
    EXPECT_EQ(kind_and_name(described(0x06, registration("KLVA"))), "data: KLV metadata");
    EXPECT_EQ(described(0x06, registration("EAC3")).family, codec_family::ac3);
    EXPECT_EQ(kind_and_name(described(0x06, registration("XXXX"))), "data: private data");
}

TEST(stream_description, descriptors_of_private_data_change_no_other_type)
{
    EXPECT_EQ(kind_and_name(described(0x02, descriptor(0x6A, {}))), "video: MPEG-2 video");
    EXPECT_FALSE(described(0x02, teletext_of_two_pages).is_teletext);
}

TEST(stream_description, teletext_is_told_by_either_descriptor)
{
    EXPECT_TRUE(described(0x06, teletext_of_two_pages).is_teletext);
    EXPECT_TRUE(described(0x06, descriptor(0x46, {})).is_teletext);
    EXPECT_TRUE(described(0x06, join({descriptor(0x59, {}), teletext_of_two_pages})).is_teletext);
    EXPECT_FALSE(described(0x06, descriptor(0x59, {})).is_teletext);
}

TEST(stream_description, streams_of_discs_have_the_types_of_discs)
{
    const bytes disc = registration("HDMV");
    EXPECT_EQ(kind_and_name(described(0x83, disc)), "audio: Dolby TrueHD");
    EXPECT_EQ(kind_and_name(described(0x84, {}, true)), "audio: E-AC-3");
    EXPECT_EQ(described(0xA1, disc).family, codec_family::ac3);
    EXPECT_EQ(kind_and_name(described(0x90, disc)), "subtitles: presentation graphics");
    EXPECT_EQ(kind_and_name(described(0x90)), "data: user private");
    EXPECT_EQ(kind_and_name(described(0x1B, {}, true)), "video: H.264 video");
}

TEST(stream_description, languages_are_joined_in_their_order_each_once)
{
    EXPECT_EQ(described(0x03).language, "");
    EXPECT_EQ(described(0x03, descriptor(0x0A, hex("656E67 00"))).language, "eng");
    EXPECT_EQ(described(0x03, descriptor(0x0A, hex("656E67 00 667261 03"))).language, "eng,fra");
    EXPECT_EQ(described(0x06, teletext_of_two_pages).language, "eng,fra");
    EXPECT_EQ(described(0x06, descriptor(0x59, hex("646575 10 0001 0002 656E67 10 0001 0002"))).language,
              "deu,eng");
    EXPECT_EQ(described(0x06, join({descriptor(0x0A, hex("667261 00")), teletext_of_two_pages})).language,
              "fra,eng");
    EXPECT_EQ(described(0x03, join({descriptor(0x0A, hex("656E67 00")), descriptor(0x0A, hex("656E67 03"))}))
                  .language,
              "eng");
}

TEST(stream_description, a_cut_language_is_none_and_an_odd_one_is_valid_text)
{
    EXPECT_EQ(described(0x03, descriptor(0x0A, hex("656E67"))).language, "");
    EXPECT_EQ(described(0x06, descriptor(0x59, hex("646575 10 0001 00"))).language, "");
    EXPECT_EQ(described(0x03, descriptor(0x0A, hex("FF4142 00"))).language, "\xC3\xBF"
                                                                            "AB");
}
