#include "mpeg_ts_overview/contents/header_finder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/support/hex.h"
#include "tests/support/stream_builder.h"

namespace {

const bytes sequence = hex("000001b35002d033ffffe340000001b5146a00010000000001b800080040");

/// Gives the PES packet to the finder in payloads of this size.
void feed(header_finder &finder, const bytes &pes, size_t payload_size = 184)
{
    for (size_t i = 0; i < pes.size(); i += payload_size) {
        const bytes payload(pes.begin() + static_cast<long>(i),
                            pes.begin() + static_cast<long>(std::min(i + payload_size, pes.size())));
        finder.on_payload(payload.data(), payload.data() + payload.size(), i == 0);
    }
}

std::string name_found(const header_finder &finder)
{
    return finder.details() ? finder.details()->name : "nothing";
}

/// An MPEG-1 layer II frame of 576 bytes.
bytes audio_frame()
{
    return join({hex("fffda404"), repeated(0x55, 572)});
}

} // namespace

TEST(header_finder, stream_types_have_families)
{
    for (unsigned stream_type = 0; stream_type < 256; ++stream_type) {
        const auto family = codec_family_of(stream_type);
        switch (stream_type) {
        case 0x01:
        case 0x02:
            EXPECT_EQ(family, codec_family::mpeg_video);
            break;
        case 0x03:
        case 0x04:
            EXPECT_EQ(family, codec_family::mpeg_audio);
            break;
        case 0x0F:
            EXPECT_EQ(family, codec_family::adts);
            break;
        case 0x1B:
            EXPECT_EQ(family, codec_family::h264);
            break;
        case 0x24:
            EXPECT_EQ(family, codec_family::hevc);
            break;
        case 0x81:
        case 0x87:
            EXPECT_EQ(family, codec_family::ac3);
            break;
        default:
            EXPECT_FALSE(family);
        }
    }
}

TEST(header_finder, each_family_is_read_by_its_reader)
{
    const auto name = [](codec_family family, const bytes &data) {
        header_finder finder(family);
        feed(finder, pes_packet(0xE0, data));
        finder.on_end();
        return name_found(finder);
    };
    EXPECT_EQ(name(codec_family::mpeg_video, sequence), "MPEG-2 video");
    EXPECT_EQ(
        name(codec_family::h264, hex("000001 674d4020eca02802dd80880000030008000003032078c18cb0 000001")),
        "H.264");
    EXPECT_EQ(
        name(codec_family::hevc, hex("000001 42010101600000030090000003000003007ba003c08010e596566924caf0"
                                     "168080000003008000001904 000001")),
        "HEVC");
    EXPECT_EQ(name(codec_family::mpeg_audio, audio_frame()), "MPEG-1 audio layer II");
    EXPECT_EQ(name(codec_family::adts, hex("fff14c8024fffc")), "AAC");
    EXPECT_EQ(name(codec_family::ac3, hex("0b77b50b1e40ebf8")), "AC-3");
}

TEST(header_finder, a_video_header_is_found_at_the_next_unit_start)
{
    header_finder finder(codec_family::mpeg_video);
    feed(finder, pes_packet(0xE0, sequence, 90000, 86400));
    EXPECT_FALSE(finder.is_done());
    feed(finder, pes_packet(0xE0, hex("00000100 000F")));
    EXPECT_TRUE(finder.is_done());
    EXPECT_EQ(finder.details()->width, 1280u);
    feed(finder, pes_packet(0xE0, sequence));
    finder.on_gap();
    finder.on_end();
    EXPECT_EQ(name_found(finder), "MPEG-2 video");
}

TEST(header_finder, a_header_is_found_in_payloads_of_any_size)
{
    for (size_t payload_size = 14; payload_size <= 60; ++payload_size) {
        header_finder finder(codec_family::mpeg_video);
        feed(finder, pes_packet(0xE0, sequence, 90000), payload_size);
        finder.on_end();
        EXPECT_EQ(name_found(finder), "MPEG-2 video") << payload_size;
    }
}

TEST(header_finder, a_pes_header_cut_by_its_packet_is_passed_over)
{
    header_finder finder(codec_family::mpeg_video);
    feed(finder, pes_packet(0xE0, sequence, 90000), 13);
    finder.on_end();
    EXPECT_EQ(name_found(finder), "nothing");
}

TEST(header_finder, of_a_long_video_packet_the_first_8_kib_are_read)
{
    const auto name = [](size_t before) {
        header_finder finder(codec_family::mpeg_video);
        feed(finder, pes_packet(0xE0, join({repeated(0x55, before), sequence, repeated(0x55, 20000)})));
        finder.on_end();
        return name_found(finder);
    };
    EXPECT_EQ(name(8192 - 30), "MPEG-2 video");
    EXPECT_EQ(name(8192), "nothing");
}

TEST(header_finder, audio_is_joined_across_pes_packets)
{
    header_finder finder(codec_family::mpeg_audio);
    const bytes sound = join({repeated(0x55, 100), audio_frame(), audio_frame()});
    for (size_t i = 0; i < sound.size(); i += 120) {
        const auto size = static_cast<long>(std::min<size_t>(120, sound.size() - i));
        feed(finder, pes_packet(0xC0, bytes(sound.begin() + static_cast<long>(i),
                                            sound.begin() + static_cast<long>(i) + size)));
    }
    finder.on_end();
    EXPECT_EQ(name_found(finder), "MPEG-1 audio layer II");
}

TEST(header_finder, audio_is_read_as_soon_as_a_piece_is_full)
{
    header_finder finder(codec_family::mpeg_audio);
    for (int i = 0; i < 14; ++i) feed(finder, pes_packet(0xC0, audio_frame(), 90000));
    EXPECT_FALSE(finder.is_done());
    feed(finder, pes_packet(0xC0, audio_frame(), 90000));
    EXPECT_TRUE(finder.is_done());
    EXPECT_EQ(name_found(finder), "MPEG-1 audio layer II");
}

TEST(header_finder, nothing_is_joined_across_a_gap)
{
    header_finder finder(codec_family::mpeg_audio);
    const bytes sound = join({repeated(0x55, 10), audio_frame(), audio_frame()});
    feed(finder, pes_packet(0xC0, bytes(sound.begin(), sound.begin() + 400)));
    finder.on_gap();
    finder.on_payload(sound.data() + 400, sound.data() + sound.size(), false);
    finder.on_end();
    EXPECT_EQ(name_found(finder), "nothing");
}

TEST(header_finder, what_came_whole_before_a_gap_counts)
{
    header_finder finder(codec_family::mpeg_video);
    feed(finder, pes_packet(0xE0, sequence));
    finder.on_gap();
    EXPECT_TRUE(finder.is_done());
    EXPECT_EQ(name_found(finder), "MPEG-2 video");
}

TEST(header_finder, payloads_before_the_first_unit_start_are_passed_over)
{
    header_finder finder(codec_family::mpeg_video);
    finder.on_payload(sequence.data(), sequence.data() + sequence.size(), false);
    finder.on_end();
    EXPECT_EQ(name_found(finder), "nothing");
}

TEST(header_finder, units_that_are_no_clear_pes_packets_are_passed_over)
{
    const bytes good = pes_packet(0xE0, sequence);
    const auto name = [](const bytes &unit) {
        header_finder finder(codec_family::mpeg_video);
        feed(finder, unit);
        finder.on_end();
        return name_found(finder);
    };
    const auto changed = [&](size_t position, uint8_t byte) {
        bytes unit = good;
        unit[position] = byte;
        return unit;
    };
    EXPECT_EQ(name(good), "MPEG-2 video");
    EXPECT_EQ(name(changed(2, 0)), "nothing") << "no start code";
    EXPECT_EQ(name(changed(6, 0x40)), "nothing") << "no marker";
    EXPECT_EQ(name(changed(6, 0x90)), "nothing") << "scrambled";
    EXPECT_EQ(name(changed(8, 0xFF)), "nothing") << "header longer than the packet";
    for (const uint8_t stream_id : hex("BC BE BF F0 F1 F2 F8 FF"))
        EXPECT_EQ(name(changed(3, stream_id)), "nothing") << unsigned{stream_id};
    for (size_t length = 0; length < 9; ++length)
        EXPECT_EQ(name(bytes(good.begin(), good.begin() + static_cast<long>(length))), "nothing") << length;
}

TEST(header_finder, a_finder_gives_up)
{
    header_finder finder(codec_family::mpeg_video);
    const bytes other = pes_packet(0xE0, hex("00000100 000F"));
    for (int i = 0; i < 1000; ++i) feed(finder, other);
    EXPECT_FALSE(finder.is_done());
    feed(finder, other);
    EXPECT_TRUE(finder.is_done());
    feed(finder, pes_packet(0xE0, sequence));
    finder.on_end();
    EXPECT_EQ(name_found(finder), "nothing");
}

TEST(header_finder, a_finder_that_was_given_nothing_ends_with_nothing)
{
    header_finder finder(codec_family::hevc);
    finder.on_gap();
    finder.on_end();
    EXPECT_TRUE(finder.is_done());
    EXPECT_FALSE(finder.details());
}

TEST(header_finder, random_payloads_do_no_harm)
{
    std::mt19937 random(1);
    for (const codec_family family : {codec_family::mpeg_video, codec_family::h264, codec_family::hevc,
                                      codec_family::mpeg_audio, codec_family::adts, codec_family::ac3}) {
        header_finder finder(family);
        for (int packet = 0; packet < 3000; ++packet) {
            bytes payload(random() % 185);
            for (uint8_t &byte : payload)
                byte = static_cast<uint8_t>(random() % 3 == 0 ? random() : random() % 2);
            const bool unit_start = random() % 16 == 0 && payload.size() >= 9;
            if (unit_start) std::copy_n(pes_packet(0xE0, {}).begin(), 9, payload.begin());
            finder.on_payload(payload.data(), payload.data() + payload.size(), unit_start);
            if (random() % 64 == 0) finder.on_gap();
        }
        finder.on_end();
        EXPECT_FALSE(finder.details());
    }
}
