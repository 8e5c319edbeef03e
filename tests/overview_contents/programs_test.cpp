#include "tests/support/stream_builder.h"
#include "tests/support/table_sections.h"

#include "mpeg_ts_overview/contents/programs.h"
#include "mpeg_ts_overview/tables/program_map.h"

#include <gtest/gtest.h>

struct programs_described : testing::Test {
    program_descriptions descriptions;
    stream_headers headers;
    std::vector<program_facts> programs;
    std::vector<pid_facts> pids;
    rates_facts rates;

    /// What is new in the PMT.
    const std::vector<program_descriptions::described_stream> *receive(const bytes &data)
    {
        const offered_section section(0x1000, data, {});
        EXPECT_TRUE(section.is_whole());
        return descriptions.on_current_map(*section);
    }

    program_stream &add_program(unsigned number, unsigned pid, unsigned stream_type)
    {
        program_facts &program = programs.emplace_back();
        program.number = static_cast<uint16_t>(number);
        program.pmt_pid = 0x1000;
        program_stream &stream = program.streams.emplace_back();
        stream.pid = static_cast<uint16_t>(pid);
        stream.stream_type = static_cast<uint8_t>(stream_type);
        return stream;
    }

    void count(unsigned pid, uint64_t packets, uint64_t mean_bps)
    {
        pids.emplace_back();
        pids.back().pid = static_cast<uint16_t>(pid);
        pids.back().packets = packets;
        rates.pids.emplace_back();
        rates.pids.back().pid = static_cast<uint16_t>(pid);
        rates.pids.back().rate.mean_bps = mean_bps;
    }

    void describe() { descriptions.add_to(programs, pids, rates, headers); }
};

TEST_F(programs_described, a_map_is_new_once)
{
    const bytes first = pmt_section(1, 0x100,
                                    {
    },
                                    {{0x02, 0x100, {}}});
    const bytes second = pmt_section(1, 0x100,
                                     {
    },
                                     {{0x1B, 0x101, {}}});
    const auto *const streams = receive(first);
    ASSERT_NE(streams, nullptr);
    ASSERT_EQ(streams->size(), 1u);
    EXPECT_EQ(streams->front().pid, 0x100);
    EXPECT_STREQ(streams->front().description.name, "MPEG-2 video");
    EXPECT_EQ(receive(first), nullptr);
    ASSERT_NE(receive(second), nullptr);
    ASSERT_NE(receive(first), nullptr);
}

TEST_F(programs_described, streams_are_described_as_the_last_map_did)
{
    receive(pmt_section(1, 0x100,
                        {
    },
                        {{0x02, 0x100, descriptor(0x0A, hex("656E67 00"))}}));
    receive(pmt_section(1, 0x100,
                        {
    },
                        {{0x1B, 0x100, descriptor(0x0A, hex("667261 00"))}}));
    add_program(1, 0x100, 0x1B);
    describe();
    const program_stream &stream = programs[0].streams[0];
    EXPECT_EQ(stream.name, "H.264 video");
    EXPECT_EQ(stream.kind, "video");
    EXPECT_EQ(stream.language, "fra");
    EXPECT_EQ(stream.details, "");
}

TEST_F(programs_described, streams_of_a_disc_are_told_by_their_program)
{
    receive(pmt_section(1, 0x100, descriptor(0x05, text_bytes("HDMV")),
                        {
                            {0x86, 0x100, {}}
    }));
    add_program(1, 0x100, 0x86);
    describe();
    EXPECT_EQ(programs[0].streams[0].name, "DTS-HD Master");
}

TEST_F(programs_described, what_never_came_is_absent_and_has_no_rate)
{
    receive(pmt_section(1, 0x100,
                        {
    },
                        {{0x02, 0x100, {}}}));
    add_program(1, 0x100, 0x02);
    count(0x200, 10, 1000);
    describe();
    EXPECT_TRUE(programs[0].absent);
    EXPECT_TRUE(programs[0].streams[0].absent);
    EXPECT_EQ(programs[0].streams[0].mean_bps, std::nullopt);
    EXPECT_EQ(programs[0].streams[0].share, std::nullopt);
}

TEST_F(programs_described, the_share_is_of_all_packets)
{
    receive(pmt_section(1, 0x100,
                        {
    },
                        {{0x02, 0x100, {}}}));
    add_program(1, 0x100, 0x02);
    count(0x100, 30, 3000);
    count(0x1000, 10, 1000);
    count(0x1FFF, 80, 8000);
    describe();
    EXPECT_FALSE(programs[0].absent);
    EXPECT_FALSE(programs[0].streams[0].absent);
    EXPECT_EQ(programs[0].streams[0].mean_bps, 3000u);
    EXPECT_DOUBLE_EQ(programs[0].streams[0].share.value_or(0), 0.25);
}

TEST_F(programs_described, the_header_names_the_codec_and_gives_its_details)
{
    receive(pmt_section(1, 0x100,
                        {
    },
                        {{0x04, 0x100, {}}}));
    headers.look_for(0x100, codec_family::mpeg_audio);
    const bytes frame = join({hex("fffda404"), repeated(0x55, 572)});
    const stream_builder stream = stream_builder().unit(0x100, pes_packet(0xC0, join({frame, frame})));
    for (size_t i = 0; i < stream.packet_count(); ++i)
        headers.on_packet(read_packet(stream.data().data() + 188 * i), {});
    headers.on_end();
    add_program(1, 0x100, 0x04);
    describe();
    EXPECT_EQ(programs[0].streams[0].name, "MPEG-1 audio layer II");
    EXPECT_EQ(programs[0].streams[0].details, "48 kHz 2 ch 192 kbit/s");
}

TEST_F(programs_described, descriptors_tell_the_details_where_no_header_came)
{
    receive(pmt_section(1, 0x100,
                        {
    },
                        {{0x02, 0x100, descriptor(0x02, hex("1A 48 5F"))},
                         {0x04, 0x101, descriptor(0x03, hex("67"))},
                         {0x81, 0x102, descriptor(0x81, hex("08 28 05"))}}));
    add_program(1, 0x100, 0x02);
    for (const unsigned pid : {0x101u, 0x102u})
        programs[0].streams.emplace_back().pid = static_cast<uint16_t>(pid);
    describe();
    EXPECT_EQ(programs[0].streams[0].name, "MPEG-2 video");
    EXPECT_EQ(programs[0].streams[0].details, "25 fps Main@Main");
    EXPECT_EQ(programs[0].streams[1].name, "MPEG-1 audio layer II");
    EXPECT_EQ(programs[0].streams[1].details, "");
    EXPECT_EQ(programs[0].streams[2].name, "AC-3");
    EXPECT_EQ(programs[0].streams[2].details, "48 kHz 2 ch 192 kbit/s");
}

TEST_F(programs_described, a_header_goes_before_a_descriptor)
{
    receive(pmt_section(1, 0x100,
                        {
    },
                        {{0x04, 0x100, descriptor(0x03, hex("77"))}}));
    headers.look_for(0x100, codec_family::mpeg_audio);
    const bytes frame = join({hex("fffda404"), repeated(0x55, 572)});
    const stream_builder stream = stream_builder().unit(0x100, pes_packet(0xC0, join({frame, frame})));
    for (size_t i = 0; i < stream.packet_count(); ++i)
        headers.on_packet(read_packet(stream.data().data() + 188 * i), {});
    headers.on_end();
    add_program(1, 0x100, 0x04);
    describe();
    EXPECT_EQ(programs[0].streams[0].name, "MPEG-1 audio layer II");
    EXPECT_EQ(programs[0].streams[0].details, "48 kHz 2 ch 192 kbit/s");
}

TEST_F(programs_described, h_264_is_called_video_with_a_header_too)
{
    receive(pmt_section(1, 0x100,
                        {
    },
                        {{0x1B, 0x100, {}}}));
    headers.look_for(0x100, codec_family::h264);
    const bytes parameter_sets = hex("000001 674d4020eca02802dd80880000030008000003032078c18cb0 000001");
    const stream_builder stream = stream_builder().unit(0x100, pes_packet(0xE0, parameter_sets));
    headers.on_packet(read_packet(stream.data().data()), {});
    headers.on_end();
    add_program(1, 0x100, 0x1B);
    describe();
    EXPECT_EQ(programs[0].streams[0].name, "H.264 video");
    EXPECT_NE(programs[0].streams[0].details, "");
}

TEST_F(programs_described, a_program_without_a_map_has_no_streams)
{
    programs.emplace_back().pmt_pid = 0x1000;
    count(0x1000, 1, 1);
    describe();
    EXPECT_FALSE(programs[0].absent);
    EXPECT_TRUE(programs[0].streams.empty());
}

TEST_F(programs_described, no_more_streams_are_described_than_the_program_map_keeps)
{
    std::vector<pmt_stream> streams(200, pmt_stream{0x02, 0x100, {}});
    size_t described = 0;
    for (unsigned number = 1; number <= 100; ++number)
        described += receive(pmt_section(number, 0x100, {}, streams))->size();
    EXPECT_EQ(described, mapped_stream_limit);
    EXPECT_EQ(receive(pmt_section(1, 0x100,
                                  {
    },
                                  {{0x02, 0x100, {}}}))
                  ->size(),
              1u);
    EXPECT_EQ(receive(pmt_section(101, 0x100, {}, streams))->size(), 199u);
}
