#include "mpeg_ts_overview/contents/codec_ac3.h"
#include "mpeg_ts_overview/contents/codec_adts.h"
#include "mpeg_ts_overview/contents/codec_mpeg_audio.h"
#include "tests/overview_contents/codec_test.h"

namespace {

/// As found_by, without the profile and level that most audio has not.
std::string found_in(codec_reader reader, const bytes &data)
{
    const std::string found = found_by(reader, data);
    const std::string_view neither = " |  | ";
    return found.ends_with(neither) ? found.substr(0, found.size() - neither.size()) : found;
}

/// A frame of this many bytes that begins like this, filled with what is no sync word.
bytes frame(std::string_view header, size_t length)
{
    const bytes start = hex(header);
    return join({start, repeated(0x55, length - start.size())});
}

/// Two frames.
bytes twice(std::string_view header, size_t length)
{
    return join({frame(header, length), frame(header, length)});
}

struct codec_case {
    codec_reader reader;
    std::string_view header;
    size_t frame_bytes;
    size_t header_bytes;
    std::string_view expected;
};

const codec_case cases[] = {
    {mpeg_audio_details, "fffda404",         576,  4, "MPEG-1 audio layer II | 48 kHz 2 ch 192 kbit/s"   },
    {mpeg_audio_details, "fffd48c4",         288,  4, "MPEG-1 audio layer II | 32 kHz 1 ch 64 kbit/s"    },
    {mpeg_audio_details, "fff38064",         208,  4, "MPEG-2 audio layer III | 22.05 kHz 2 ch 64 kbit/s"},
    {mpeg_audio_details, "fff5a4c4",         576,  4, "MPEG-2 audio layer II | 24 kHz 1 ch 96 kbit/s"    },
    {mpeg_audio_details, "ffffc004",         416,  4, "MPEG-1 audio layer I | 44.1 kHz 2 ch 384 kbit/s"  },
    {mpeg_audio_details, "fffb9264",         418,  4, "MPEG-1 audio layer III | 44.1 kHz 2 ch 128 kbit/s"},
    {mpeg_audio_details, "ffe384c4",         384,  4, "MPEG-2.5 audio layer III | 12 kHz 1 ch 64 kbit/s" },
    {adts_details,       "fff14c8024fffc",   295,  7, "AAC | LC 48 kHz 2 ch | LC | "                     },
    {adts_details,       "fff15180323ffc",   401,  7, "AAC | LC 44.1 kHz 5.1 ch | LC | "                 },
    {adts_details,       "fff90dc0323ffc",   401,  7, "AAC | Main 48 kHz 7.1 ch | Main | "               },
    {adts_details,       "fff0d8003a3ffc",   465,  7, "AAC | LTP 24 kHz | LTP | "                        },
    {ac3_details,        "0b77b50b1e40ebf8", 1792, 8, "AC-3 | 48 kHz 5.1 ch 448 kbit/s"                  },
    {ac3_details,        "0b77d80e544043e1", 834,  8, "AC-3 | 44.1 kHz 2 ch 192 kbit/s"                  },
    {ac3_details,        "0b7702ff3f87c000", 1536, 8, "E-AC-3 | 48 kHz 5.1 ch 384 kbit/s"                },
    {ac3_details,        "0b77011fb287c000", 576,  8, "E-AC-3 | 32 kHz 1 ch 96 kbit/s"                   },
};

} // namespace

TEST(codec_audio, frames_of_encoders_are_read)
{
    for (const codec_case &c : cases)
        EXPECT_EQ(found_in(c.reader, twice(c.header, c.frame_bytes)), c.expected) << c.header;
}

TEST(codec_audio, a_frame_elsewhere_counts_when_another_follows)
{
    for (const codec_case &c : cases) {
        const bytes before = hex("47 FF 0B 77 FF");
        EXPECT_EQ(found_in(c.reader, join({before, twice(c.header, c.frame_bytes)})), c.expected) << c.header;
        EXPECT_EQ(found_in(c.reader, join({before, frame(c.header, c.frame_bytes)})), "nothing") << c.header;
        EXPECT_EQ(found_in(c.reader, join({before, frame(c.header, c.frame_bytes), repeated(0x55, 64)})),
                  "nothing")
            << c.header;
    }
}

TEST(codec_audio, a_frame_at_the_start_counts_alone_when_the_data_end)
{
    for (const codec_case &c : cases) {
        EXPECT_EQ(found_in(c.reader, frame(c.header, c.frame_bytes)), c.expected) << c.header;
        EXPECT_EQ(found_in(c.reader, join({frame(c.header, c.frame_bytes), repeated(0x55, 64)})), "nothing")
            << c.header;
        EXPECT_EQ(found_in(c.reader, join({frame(c.header, c.frame_bytes - 1), repeated(0x55, 1),
                                           frame(c.header, c.frame_bytes)})),
                  c.expected);
    }
}

TEST(codec_audio, a_cut_frame_gives_nothing_wrong)
{
    for (const codec_case &c : cases)
        expect_nothing_wrong_when_cut(c.reader, twice(c.header, c.frame_bytes), c.header_bytes);
}

TEST(codec_audio, bytes_without_a_sync_word_give_nothing)
{
    for (const codec_reader reader : {mpeg_audio_details, adts_details, ac3_details}) {
        EXPECT_EQ(found_in(reader, {}), "nothing");
        EXPECT_EQ(found_in(reader, repeated(0x00, 8192)), "nothing");
        EXPECT_EQ(found_in(reader, repeated(0xFF, 8192)), "nothing");
        std::mt19937 random(1);
        for (int round = 0; round < 30; ++round) {
            bytes data(8192);
            for (uint8_t &byte : data) byte = static_cast<uint8_t>(random());
            EXPECT_EQ(found_in(reader, data), "nothing");
        }
    }
}

TEST(codec_audio, changed_bytes_do_no_harm)
{
    for (const codec_case &c : cases)
        expect_no_harm_from_changes(c.reader, join({hex(c.header), repeated(0, 40), hex(c.header)}));
}

TEST(codec_mpeg_audio, reserved_values_give_nothing)
{
    for (const char *const header :
         {"ffed a404", "fff9 a404", "fffd 0404", "fffd f404", "fffd ac04", "fffd a406"})
        EXPECT_EQ(found_in(mpeg_audio_details, hex(header)), "nothing") << header;
}

TEST(codec_mpeg_audio, every_bit_rate_of_each_layer_is_known)
{
    const unsigned rates[5][14] = {
        {32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
        {32, 48, 56, 64,  80,  96,  112, 128, 160, 192, 224, 256, 320, 384},
        {32, 40, 48, 56,  64,  80,  96,  112, 128, 160, 192, 224, 256, 320},
        {32, 48, 56, 64,  80,  96,  112, 128, 144, 160, 176, 192, 224, 256},
        {8,  16, 24, 32,  40,  48,  56,  64,  80,  96,  112, 128, 144, 160},
    };
    const unsigned starts[5] = {0xFFFF, 0xFFFD, 0xFFFB, 0xFFF7, 0xFFF5};
    for (unsigned table = 0; table < 5; ++table)
        for (unsigned index = 1; index < 15; ++index) {
            const bytes header =
                join({big_endian(starts[table], 2), big_endian(index << 4 | 4, 1), hex("04")});
            const std::string found = found_in(mpeg_audio_details, header);
            EXPECT_NE(found.find(" " + std::to_string(rates[table][index - 1]) + " kbit/s"),
                      std::string::npos)
                << found;
        }
}

TEST(codec_mpeg_audio, frames_of_different_bit_rates_have_none)
{
    EXPECT_EQ(found_in(mpeg_audio_details, join({frame("fffb9464", 384), frame("fffba464", 480)})),
              "MPEG-1 audio layer III | 48 kHz 2 ch");
}

TEST(codec_mpeg_audio, another_layer_or_rate_confirms_nothing)
{
    EXPECT_EQ(found_in(mpeg_audio_details, join({frame("fffda404", 576), hex("fffba404")})), "nothing");
    EXPECT_EQ(found_in(mpeg_audio_details, join({frame("fffda404", 576), hex("fffda804")})), "nothing");
    EXPECT_EQ(found_in(mpeg_audio_details, join({frame("fffda404", 576), hex("fff5a404")})), "nothing");
}

TEST(codec_adts, reserved_values_give_nothing)
{
    for (const char *const header : {"fff34c8024fffc", "fff1748024fffc", "fff9cc8024fffc", "fff14c8000dffc",
                                     "fff04c80011ffc", "ffe14c8024fffc"})
        EXPECT_EQ(found_in(adts_details, hex(header)), "nothing") << header;
    EXPECT_EQ(found_in(adts_details, hex("fff14c8000fffc")), "AAC | LC 48 kHz 2 ch | LC | ")
        << "as short as its header";
    EXPECT_EQ(found_in(adts_details, hex("fff04c80013ffc")), "AAC | LC 48 kHz 2 ch | LC | ")
        << "with its CRC";
}

TEST(codec_adts, another_frame_of_other_parameters_confirms_nothing)
{
    for (const char *const next : {"fff94c8024fffc", "fff10c8024fffc", "fff1508024fffc", "fff14c4024fffc"})
        EXPECT_EQ(found_in(adts_details, join({frame("fff14c8024fffc", 295), hex(next)})), "nothing") << next;
}

TEST(codec_adts, sample_rates_and_channels_have_their_index)
{
    const char *const rates[] = {"96",    "88.2", "64", "48",     "44.1", "32",  "24",
                                 "22.05", "16",   "12", "11.025", "8",    "7.35"};
    for (unsigned index = 0; index < 16; ++index) {
        const bytes header = join({hex("fff1"), big_endian(0x40 | index << 2, 1), hex("8024fffc")});
        EXPECT_EQ(found_in(adts_details, header),
                  index > 12 ? "nothing" : std::string("AAC | LC ") + rates[index] + " kHz 2 ch | LC | ");
    }
    const char *const channels[] = {"", " 1 ch", " 2 ch", " 3 ch", " 4 ch", " 5 ch", " 5.1 ch", " 7.1 ch"};
    for (unsigned configuration = 0; configuration < 8; ++configuration) {
        const bytes header = join({hex("fff1"), big_endian(0x4C | configuration >> 2, 1),
                                   big_endian((configuration & 3) << 6, 1), hex("24fffc")});
        EXPECT_EQ(found_in(adts_details, header),
                  std::string("AAC | LC 48 kHz") + channels[configuration] + " | LC | ");
    }
}

TEST(codec_ac3, reserved_values_give_nothing)
{
    for (const char *const header :
         {"0b78b50b1e40ebf8", "0b77b50bde40ebf8", "0b77b50b2640ebf8", "0b77b50b1e48ebf8", "0b77b50b1e50ebf8",
          "0b77c2ff3f87c000", "0b7702fff787c000", "0b7702ff3f8fc000", "0b7700023f87c000"})
        EXPECT_EQ(found_in(ac3_details, hex(header)), "nothing") << header;
}

TEST(codec_ac3, every_frame_size_code_has_rate_and_length)
{
    const unsigned rates[] = {32,  40,  48,  56,  64,  80,  96,  112, 128, 160,
                              192, 224, 256, 320, 384, 448, 512, 576, 640};
    const unsigned words_44100[] = {69,  87,  104, 121, 139, 174, 208,  243,  278, 348,
                                    417, 487, 557, 696, 835, 975, 1114, 1253, 1393};
    for (unsigned fscod = 0; fscod < 3; ++fscod)
        for (unsigned code = 0; code < 64; ++code) {
            const bytes header = join({hex("0b770000"), big_endian(fscod << 6 | code, 1), hex("40 43 e1")});
            if (code >= 38) {
                EXPECT_EQ(found_in(ac3_details, header), "nothing");
                continue;
            }
            const unsigned rate = rates[code / 2];
            const unsigned words = fscod == 0   ? 2 * rate
                                   : fscod == 2 ? 3 * rate
                                                : words_44100[code / 2] + code % 2;
            const bytes data = join({header, repeated(0x55, 2 * words - 8), header});
            const char *const sample_rate = fscod == 0 ? "48" : fscod == 1 ? "44.1" : "32";
            EXPECT_EQ(found_in(ac3_details, data),
                      std::string("AC-3 | ") + sample_rate + " kHz 2 ch " + std::to_string(rate) + " kbit/s");
        }
}

TEST(codec_ac3, channels_are_those_of_the_mode_and_the_low_one)
{
    const char *const channels[] = {"2", "1", "2", "3", "3", "4", "4", "5"};
    const unsigned bits_before_lfe[] = {0, 0, 2, 2, 2, 4, 2, 4};
    for (unsigned acmod = 0; acmod < 8; ++acmod)
        for (const unsigned lfeon : {0u, 1u}) {
            const std::string expected = std::string(channels[acmod]) + (lfeon == 1 ? ".1 ch " : " ch ");
            const unsigned bits = acmod << 13 | lfeon << (12 - bits_before_lfe[acmod]);
            const std::string ac3 = found_in(ac3_details, join({hex("0b7700001e40"), big_endian(bits, 2)}));
            EXPECT_NE(ac3.find(" " + expected), std::string::npos) << ac3;
            const std::string eac3 =
                found_in(ac3_details,
                         join({hex("0b7702ff"), big_endian(0x30 | acmod << 1 | lfeon, 1), hex("87c000")}));
            EXPECT_NE(eac3.find(" " + expected), std::string::npos) << eac3;
        }
}

TEST(codec_ac3, enhanced_frames_have_one_to_six_blocks_and_lower_rates)
{
    const char *const rates[] = {"2304", "1152", "768", "384"};
    for (unsigned numblkscod = 0; numblkscod < 4; ++numblkscod) {
        const bytes header = join({hex("0b7702ff"), big_endian(numblkscod << 4 | 0x0F, 1), hex("87c000")});
        EXPECT_EQ(found_in(ac3_details, header),
                  std::string("E-AC-3 | 48 kHz 5.1 ch ") + rates[numblkscod] + " kbit/s");
    }
    const char *const lower[] = {"24 kHz 5.1 ch 192", "22.05 kHz 5.1 ch 176.4", "16 kHz 5.1 ch 128"};
    for (unsigned fscod2 = 0; fscod2 < 3; ++fscod2) {
        const bytes header = join({hex("0b7702ff"), big_endian(0xC0 | fscod2 << 4 | 0x0F, 1), hex("87c000")});
        EXPECT_EQ(found_in(ac3_details, header), std::string("E-AC-3 | ") + lower[fscod2] + " kbit/s");
    }
}

TEST(codec_ac3, with_other_substreams_channels_and_bit_rate_are_not_said)
{
    const bytes first = frame("0b7702ff3f87c000", 1536);
    EXPECT_EQ(found_in(ac3_details, join({first, hex("0b7742ff3f87c000")})), "E-AC-3 | 48 kHz")
        << "dependent";
    EXPECT_EQ(found_in(ac3_details, join({first, hex("0b770aff3f87c000")})), "E-AC-3 | 48 kHz")
        << "independent";
    EXPECT_EQ(found_in(ac3_details, join({first, hex("0b7782ff3f87c000")})),
              "E-AC-3 | 48 kHz 5.1 ch 384 kbit/s")
        << "converted";
    EXPECT_EQ(found_in(ac3_details, join({frame("0b77b50b1e40ebf8", 1792), hex("0b7742ff3f87c000")})),
              "AC-3 | 48 kHz");
}

TEST(codec_ac3, the_first_independent_substream_is_looked_for)
{
    const bytes dependent = frame("0b7742ff3687c000", 1536);
    const bytes first = frame("0b7702ff3f87c000", 1536);
    EXPECT_EQ(found_in(ac3_details, join({dependent, first, dependent})), "E-AC-3 | 48 kHz");
    EXPECT_EQ(found_in(ac3_details, dependent), "nothing");
    EXPECT_EQ(found_in(ac3_details, join({dependent, dependent})), "nothing");
}

TEST(codec_ac3, enhanced_frames_of_different_lengths_have_no_bit_rate)
{
    EXPECT_EQ(found_in(ac3_details, join({frame("0b7702ff3f87c000", 1536), hex("0b77011f3f87c000")})),
              "E-AC-3 | 48 kHz 5.1 ch");
    EXPECT_EQ(found_in(ac3_details, join({frame("0b7702ff3f87c000", 1536), hex("0b7702ff7f87c000")})),
              "nothing");
}
