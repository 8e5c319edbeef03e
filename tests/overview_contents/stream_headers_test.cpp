#include "tests/support/stream_builder.h"

#include "mpeg_ts_overview/contents/stream_headers.h"

#include <gtest/gtest.h>

namespace {

const bytes sequence_header = hex("000001b35002d033ffffe340000001b5146a00010000000001b800080040");

/// An MPEG-1 layer II frame of 576 bytes.
bytes audio_frame()
{
    return join({hex("fffda404"), repeated(0x55, 572)});
}

} // namespace

struct headers_found : testing::Test {
    stream_headers headers;
    stream_builder stream;
    size_t given = 0;

    /// Gives the packets that were built since, all with that sequence.
    void give(const packet_sequence &sequence = {})
    {
        for (; given < stream.packet_count(); ++given) {
            const ts_packet packet = read_packet(stream.data().data() + 188 * given);
            if (headers.wants(packet.pid)) headers.on_packet(packet, sequence);
        }
    }

    void give_video(unsigned pid)
    {
        stream.unit(pid, pes_packet(0xE0, sequence_header, 90000));
        give();
    }
};

TEST_F(headers_found, no_pid_is_wanted_before_it_is_looked_for)
{
    for (unsigned pid = 0; pid < mpeg_ts_pid_count; ++pid)
        EXPECT_FALSE(headers.wants(static_cast<uint16_t>(pid)));
    EXPECT_EQ(headers.details_of(0x100, codec_family::mpeg_video), nullptr);
}

TEST_F(headers_found, a_pid_is_wanted_until_its_header_is_found)
{
    headers.look_for(0x100, codec_family::mpeg_video);
    EXPECT_TRUE(headers.wants(0x100));
    give_video(0x100);
    give_video(0x100);
    EXPECT_FALSE(headers.wants(0x100));
    const codec_details *const details = headers.details_of(0x100, codec_family::mpeg_video);
    ASSERT_NE(details, nullptr);
    EXPECT_EQ(details->width, 1280u);
}

TEST_F(headers_found, what_is_found_is_not_looked_for_again)
{
    headers.look_for(0x100, codec_family::mpeg_video);
    give_video(0x100);
    give_video(0x100);
    headers.look_for(0x100, codec_family::mpeg_video);
    EXPECT_FALSE(headers.wants(0x100));
    EXPECT_NE(headers.details_of(0x100, codec_family::mpeg_video), nullptr);
}

TEST_F(headers_found, another_family_begins_anew)
{
    headers.look_for(0x100, codec_family::mpeg_video);
    give_video(0x100);
    give_video(0x100);
    headers.look_for(0x100, codec_family::mpeg_audio);
    EXPECT_TRUE(headers.wants(0x100));
    EXPECT_EQ(headers.details_of(0x100, codec_family::mpeg_video), nullptr);
    EXPECT_EQ(headers.details_of(0x100, codec_family::mpeg_audio), nullptr);
}

TEST_F(headers_found, pids_do_not_mix)
{
    headers.look_for(0x100, codec_family::mpeg_video);
    headers.look_for(0x101, codec_family::mpeg_audio);
    stream.unit(0x101, pes_packet(0xC0, join({audio_frame(), audio_frame()}), 90000));
    give_video(0x100);
    headers.on_end();
    ASSERT_NE(headers.details_of(0x100, codec_family::mpeg_video), nullptr);
    ASSERT_NE(headers.details_of(0x101, codec_family::mpeg_audio), nullptr);
    EXPECT_EQ(headers.details_of(0x101, codec_family::mpeg_audio)->name, "MPEG-1 audio layer II");
}

TEST_F(headers_found, what_the_end_cuts_short_counts)
{
    headers.look_for(0x100, codec_family::mpeg_video);
    give_video(0x100);
    EXPECT_EQ(headers.details_of(0x100, codec_family::mpeg_video), nullptr);
    headers.on_end();
    EXPECT_NE(headers.details_of(0x100, codec_family::mpeg_video), nullptr);
}

TEST_F(headers_found, scrambled_packets_and_those_with_errors_are_gaps)
{
    headers.look_for(0x100, codec_family::mpeg_video);
    stream.unit(0x100, pes_packet(0xE0, sequence_header, 90000)).scramble(2);
    stream.unit(0x100, pes_packet(0xE0, sequence_header, 90000)).flip_bit(1, 7);
    give();
    headers.on_end();
    EXPECT_EQ(headers.details_of(0x100, codec_family::mpeg_video), nullptr);
}

TEST_F(headers_found, nothing_is_joined_over_a_loss)
{
    headers.look_for(0x100, codec_family::mpeg_audio);
    const bytes sound = join({repeated(0x55, 10), audio_frame(), audio_frame()});
    stream.payload(0x100, pes_packet(0xC0, bytes(sound.begin(), sound.begin() + 170)), true);
    give();
    packet_sequence lost;
    lost.broken = lost.error = true;
    stream.payload(0x100, bytes(sound.begin() + 170, sound.begin() + 350));
    give(lost);
    for (long at = 350; at + 180 < static_cast<long>(sound.size()); at += 180)
        stream.payload(0x100, bytes(sound.begin() + at, sound.begin() + at + 180));
    give();
    headers.on_end();
    EXPECT_EQ(headers.details_of(0x100, codec_family::mpeg_audio), nullptr);
}

TEST_F(headers_found, a_loss_of_sync_is_a_gap_on_every_pid)
{
    headers.look_for(0x100, codec_family::mpeg_video);
    stream.payload(0x100, pes_packet(0xE0, bytes(sequence_header.begin(), sequence_header.begin() + 8)),
                   true);
    give();
    headers.on_sync_loss();
    stream.payload(0x100, bytes(sequence_header.begin() + 8, sequence_header.end()));
    give();
    headers.on_end();
    EXPECT_EQ(headers.details_of(0x100, codec_family::mpeg_video), nullptr);
}

TEST_F(headers_found, duplicates_are_passed_over)
{
    headers.look_for(0x100, codec_family::mpeg_video);
    packet_sequence copy;
    copy.duplicate = true;
    stream.payload(0x100, pes_packet(0xE0, bytes(sequence_header.begin(), sequence_header.begin() + 8)),
                   true);
    give();
    stream.payload(0x100, repeated(0xFF, 100));
    give(copy);
    stream.payload(0x100, bytes(sequence_header.begin() + 8, sequence_header.end()));
    give();
    headers.on_end();
    EXPECT_NE(headers.details_of(0x100, codec_family::mpeg_video), nullptr);
}

TEST(stream_headers, headers_of_512_streams_are_sought_at_once)
{
    stream_headers many;
    const bytes begun = join({hex("000001 E0 0000 80 00 00"), repeated(0x55, 160)});
    ts_packet packet;
    packet.payload = begun.data();
    packet.fence = begun.data() + begun.size();
    packet.payload_unit_start_indicator = true;
    for (uint16_t pid = 0x100; pid < 0x100 + 600; ++pid) {
        many.look_for(pid, codec_family::mpeg_video);
        packet.pid = pid;
        many.on_packet(packet, {});
    }
    EXPECT_EQ(many.not_found(), 88u);
    EXPECT_TRUE(many.wants(0x100 + 599)) << "as soon as there is room";
}
