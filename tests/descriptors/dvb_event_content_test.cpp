// Genres and components.
#include "tests/descriptors/descriptor_test.h"

#include <cstdio>
#include <map>

struct dvb_event_content : descriptor_test {};

namespace {

const std::string component_heading = "        component_descriptor() [ETSI EN 300 468 (2010-04) 6.2.8]\n";

constexpr const char *level_1[16] = {"undefined content",
                                     "Movie/Drama",
                                     "News/Current affairs",
                                     "Show/Game show",
                                     "Sports",
                                     "Children's/Youth programmes",
                                     "Music/Ballet/Dance",
                                     "Arts/Culture (without music)",
                                     "Social/Political issues/Economics",
                                     "Education/Science/Factual topics",
                                     "Leisure hobbies",
                                     "Special characteristics",
                                     "?",
                                     "?",
                                     "?",
                                     "User defined content"};

/// The second levels that have names, from 0 on.
const std::map<unsigned, std::vector<const char *>> level_2 = {
    {1,
     {"general movie/drama", "detective/thriller", "adventure/western/war", "science fiction/fantasy/horror",
      "comedy", "soap/melodrama/folkloric", "romance", "serious/classical/religious/historical movie/drama",
      "adult movie/drama"}                                                                  },
    {2,
     {"news/current affairs (general)", "news/weather report", "news magazine", "documentary",
      "discussion/interview/debate"}                                                        },
    {3,  {"show/game show (general)", "game show/quiz/contest", "variety show", "talk show"}},
    {5,
     {"children's/youth programmes (general)", "pre-school children's programmes",
      "entertainment programmes for 6 to 14", "entertainment programmes for 10 to 16",
      "informational/educational/school programmes", "cartoons/puppets"}                    },
    {8,
     {"social/political issues/economics (general)", "magazines/reports/documentary",
      "economics/social advisory"}                                                          },
    {11, {"original language", "black and white", "unpublished", "live broadcast"}          },
};

std::string level_2_name(unsigned level_1_nibble, unsigned level_2_nibble)
{
    const auto names = level_2.find(level_1_nibble);
    if (names == level_2.end()) return "?";
    if (level_2_nibble == 15) return "user defined";
    return level_2_nibble < names->second.size() ? names->second[level_2_nibble] : "?";
}

/// stream_content and component_type.
const std::map<std::pair<unsigned, unsigned>, const char *> components = {
    {{1, 0x01}, "MPEG-2 video, 4:3 aspect ratio, 25 Hz"                                                },
    {{1, 0x02}, "MPEG-2 video, 16:9 aspect ratio with pan vectors, 25 Hz"                              },
    {{1, 0x03}, "MPEG-2 video, 16:9 aspect ratio without pan vectors, 25 Hz"                           },
    {{1, 0x04}, "MPEG-2 video, > 16:9 aspect ratio, 25 Hz"                                             },
    {{1, 0x05}, "MPEG-2 video, 4:3 aspect ratio, 30 Hz"                                                },
    {{1, 0x06}, "MPEG-2 video, 16:9 aspect ratio with pan vectors, 30 Hz"                              },
    {{1, 0x07}, "MPEG-2 video, 16:9 aspect ratio without pan vectors, 30 Hz"                           },
    {{1, 0x08}, "MPEG-2 video, > 16:9 aspect ratio, 30 Hz"                                             },
    {{1, 0x09}, "MPEG-2 high definition video, 4:3 aspect ratio, 25 Hz"                                },
    {{1, 0x0A}, "MPEG-2 high definition video, 16:9 aspect ratio with pan vectors, 25 Hz"              },
    {{1, 0x0B}, "MPEG-2 high definition video, 16:9 aspect ratio without pan vectors, 25 Hz"           },
    {{1, 0x0C}, "MPEG-2 high definition video, > 16:9 aspect ratio, 25 Hz"                             },
    {{1, 0x0D}, "MPEG-2 high definition video, 4:3 aspect ratio, 30 Hz"                                },
    {{1, 0x0E}, "MPEG-2 high definition video, 16:9 aspect ratio with pan vectors, 30 Hz"              },
    {{1, 0x0F}, "MPEG-2 high definition video, 16:9 aspect ratio without pan vectors, 30 Hz"           },
    {{1, 0x10}, "MPEG-2 high definition video, > 16:9 aspect ratio, 30 Hz"                             },
    {{2, 0x01}, "MPEG-1 Layer 2 audio, single mono channel"                                            },
    {{2, 0x02}, "MPEG-1 Layer 2 audio, dual mono channel"                                              },
    {{2, 0x03}, "MPEG-1 Layer 2 audio, stereo (2 channel)"                                             },
    {{2, 0x04}, "MPEG-1 Layer 2 audio, multi-lingual, multi-channel"                                   },
    {{2, 0x05}, "MPEG-1 Layer 2 audio, surround sound"                                                 },
    {{2, 0x40}, "MPEG-1 Layer 2 audio description for the visually impaired"                           },
    {{2, 0x41}, "MPEG-1 Layer 2 audio for the hard of hearing"                                         },
    {{2, 0x42}, "receiver-mixed supplementary audio as per annex E of TS 101 154 [9]"                  },
    {{2, 0x47}, "MPEG-1 Layer 2 audio, receiver mix audio description as per annex E of TS 101 154 [9]"},
    {{2, 0x48}, "MPEG-1 Layer 2 audio, broadcaster mix audio description"                              },
};

} // namespace

TEST_F(dvb_event_content, content_names_both_levels)
{
    EXPECT_EQ(contents(0x54, hex("10 00 4F 00")),
              "        content_descriptor() [DVB A38 6.2.9]\n"
              "            content_nibble_level_1=1 content_nibble_level_2=0 user_byte=0x00\n"
              "                This is a Movie/Drama, a general movie/drama\n"
              "            content_nibble_level_1=4 content_nibble_level_2=15 user_byte=0x00\n"
              "                This is a Sports, a ?\n");
    EXPECT_EQ(none(0x54, hex("10 00 4F 00")), "");
}

TEST_F(dvb_event_content, content_names_every_pair_of_nibbles)
{
    for (unsigned first = 0; first < 16; ++first)
        for (unsigned second = 0; second < 16; ++second)
            EXPECT_EQ(contents(0x54, join({big_endian(first << 4 | second, 1), hex("AB")})),
                      "        content_descriptor() [DVB A38 6.2.9]\n"
                      "            content_nibble_level_1=" +
                          std::to_string(first) + " content_nibble_level_2=" + std::to_string(second) +
                          " user_byte=0xab\n"
                          "                This is a " +
                          level_1[first] + ", a " + level_2_name(first, second) + "\n");
}

TEST_F(dvb_event_content, content_ignores_an_odd_trailing_byte)
{
    EXPECT_EQ(contents(0x54, hex("B3 01 10")),
              "        content_descriptor() [DVB A38 6.2.9]\n"
              "            content_nibble_level_1=11 content_nibble_level_2=3 user_byte=0x01\n"
              "                This is a Special characteristics, a live broadcast\n");
    for (const char *body : {"", "10"})
        EXPECT_EQ(contents(0x54, hex(body)), "        content_descriptor() [DVB A38 6.2.9]\n");
    EXPECT_EQ(none(0x54, hex("10")), "");
}

TEST_F(dvb_event_content, component_describes_every_pair_that_has_a_description)
{
    for (unsigned stream_content = 0; stream_content < 16; ++stream_content)
        for (unsigned component_type = 0; component_type <= 0xFF; ++component_type) {
            const auto description = components.find({stream_content, component_type});
            char codes[64];
            std::snprintf(codes, sizeof codes, "stream_content=0x%x component_type=0x%02x", stream_content,
                          component_type);
            EXPECT_EQ(contents(0x50, join({big_endian(0xF0u | stream_content, 1),
                                           big_endian(component_type, 1), hex("0A 656E67")})),
                      component_heading +
                          "            reserved_future_use=15\n"
                          "            " +
                          codes + " (" + (description != components.end() ? description->second : "(null)") +
                          ")\n"
                          "            component_tag=0x0a\n"
                          "            ISO_639_language_code=eng\n");
        }
}

TEST_F(dvb_event_content, component_of_stream_content_5_has_a_null_description_and_its_text_is_dropped)
{
    const bytes body = join({hex("05 0B 01 646575"), text_bytes("HD video")});
    EXPECT_EQ(contents(0x50, body), component_heading +
                                        "            reserved_future_use=0\n"
                                        "            stream_content=0x5 component_type=0x0b ((null))\n"
                                        "            component_tag=0x01\n"
                                        "            ISO_639_language_code=deu\n");
    EXPECT_EQ(none(0x50, body), "");
}

TEST_F(dvb_event_content, component_below_6_bytes_is_its_heading)
{
    for (size_t length = 0; length < 6; ++length)
        EXPECT_EQ(contents(0x50, repeated(0xF1, length)), component_heading);
    EXPECT_EQ(none(0x50, hex("F1")), "");
}
