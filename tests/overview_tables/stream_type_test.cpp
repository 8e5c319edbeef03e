#include "tests/support/stream_builder.h"

#include "mpeg_ts_overview/tables/stream_type.h"

#include <gtest/gtest.h>
#include <set>

struct streams : testing::Test {
    static stream_nature nature(unsigned type, const bytes &ES_info = {}, bool blu_ray_program = false)
    {
        pmt_entry entry;
        entry.stream_type = static_cast<uint8_t>(type);
        entry.ES_info = {ES_info.data(), ES_info.data() + ES_info.size()};
        return nature_of(entry, blu_ray_program);
    }

    static std::set<unsigned> types_of(stream_kind kind, bool blu_ray_program = false)
    {
        std::set<unsigned> types;
        for (unsigned type = 0; type < 256; ++type)
            if (nature(type, {}, blu_ray_program).kind == kind) types.insert(type);
        return types;
    }

    static bytes registration(std::string_view format_identifier)
    {
        return descriptor(0x05, text_bytes(format_identifier));
    }
};

TEST_F(streams, the_types_of_video_are_these)
{
    EXPECT_EQ(types_of(stream_kind::video),
              (std::set<unsigned>{0x01, 0x02, 0x10, 0x1B, 0x1E, 0x1F, 0x20, 0x21, 0x24, 0x25, 0x33, 0x42,
                                  0xD1, 0xD2, 0xD4, 0xEA}));
}

TEST_F(streams, the_types_of_audio_are_these)
{
    EXPECT_EQ(types_of(stream_kind::audio),
              (std::set<unsigned>{0x03, 0x04, 0x0F, 0x11, 0x1C, 0x2D, 0x2E, 0x81, 0x87}));
}

TEST_F(streams, blu_ray_has_more_types_of_audio)
{
    EXPECT_EQ(types_of(stream_kind::audio, true),
              (std::set<unsigned>{0x03, 0x04, 0x0F, 0x11, 0x1C, 0x2D, 0x2E, 0x80, 0x81, 0x82, 0x83, 0x84,
                                  0x85, 0x86, 0x87, 0xA1, 0xA2}));
    EXPECT_EQ(nature(0x80, registration("HDMV")).kind, stream_kind::audio);
    EXPECT_EQ(nature(0x80, registration("HDMW")).kind, stream_kind::other);
}

TEST_F(streams, splice_information_is_of_type_0x86_outside_of_blu_ray)
{
    for (unsigned type = 0; type < 256; ++type) {
        EXPECT_EQ(nature(type).splices, type == 0x86) << type;
        EXPECT_FALSE(nature(type, {}, true).splices) << type;
    }
    EXPECT_TRUE(nature(0x86, registration("HDMV")).splices);
    EXPECT_EQ(nature(0x86, registration("HDMV")).kind, stream_kind::other);
}

TEST_F(streams, private_data_is_audio_by_its_descriptors)
{
    for (unsigned tag = 0; tag < 256; ++tag) {
        const bool is_audio = tag == 0x6A || tag == 0x7A || tag == 0x7B || tag == 0x7C;
        EXPECT_EQ(nature(0x06, descriptor(tag, {})).kind, is_audio ? stream_kind::audio : stream_kind::other);
    }
    EXPECT_EQ(nature(0x06, descriptor(0x7F, hex("15 00"))).kind, stream_kind::audio);
    EXPECT_EQ(nature(0x06, descriptor(0x7F, hex("06 15"))).kind, stream_kind::other);
    EXPECT_EQ(nature(0x06, descriptor(0x7F, {})).kind, stream_kind::other);
    EXPECT_EQ(nature(0x05, descriptor(0x6A, {})).kind, stream_kind::other);
}

TEST_F(streams, private_data_is_audio_by_its_registration)
{
    for (const char *known : {"AC-3", "EAC3", "DTS1", "DTS2", "DTS3", "Opus"})
        EXPECT_EQ(nature(0x06, registration(known)).kind, stream_kind::audio) << known;
    for (const char *unknown : {"AC-4", "DTS4", "opus", "VC-1", "AC-"})
        EXPECT_EQ(nature(0x06, registration(unknown)).kind, stream_kind::other) << unknown;
    EXPECT_EQ(nature(0x06, registration("AC-3 and more")).kind, stream_kind::audio);
}

TEST_F(streams, still_pictures_are_told_by_the_descriptors_of_video)
{
    EXPECT_FALSE(nature(0x02).still_pictures);
    EXPECT_FALSE(nature(0x02, descriptor(0x02, hex("FE"))).still_pictures);
    EXPECT_TRUE(nature(0x02, descriptor(0x02, hex("01"))).still_pictures);
    EXPECT_FALSE(nature(0x1B, descriptor(0x28, hex("FF FF FF 7F"))).still_pictures);
    EXPECT_TRUE(nature(0x1B, descriptor(0x28, hex("00 00 00 80"))).still_pictures);
    EXPECT_FALSE(nature(0x24, descriptor(0x38, join({repeated(0xFF, 12), hex("BF")}))).still_pictures);
    EXPECT_TRUE(nature(0x24, descriptor(0x38, join({repeated(0x00, 12), hex("40")}))).still_pictures);
    EXPECT_FALSE(nature(0x24, descriptor(0x38, repeated(0xFF, 12))).still_pictures);
    EXPECT_FALSE(nature(0x03, descriptor(0x02, hex("01"))).still_pictures);
}

TEST_F(streams, a_loop_that_is_cut_is_read_as_far_as_it_goes)
{
    bytes cut = join({descriptor(0x0A, hex("01 02")), registration("HDMV")});
    cut.pop_back();
    const byte_range loop = {cut.data(), cut.data() + cut.size()};
    EXPECT_FALSE(is_registered(loop, "HDMV"));
    const bytes tag_alone = hex("05");
    EXPECT_FALSE(is_registered({tag_alone.data(), tag_alone.data() + 1}, "HDMV"));
}
