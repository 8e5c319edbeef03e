#include "tests/overview_contents/si_sections.h"
#include "tests/overview_contents/splice_sections.h"
#include "tests/overview_contents/teletext_stream.h"
#include "tests/support/table_sections.h"

#include "mpeg_ts_overview/contents/contents.h"

#include <algorithm>
#include <gtest/gtest.h>

struct contents_found : testing::Test {
    pid_directory directory;
    program_map map{directory};
    program_clocks clocks;
    recording_contents contents{directory, map, clocks};

    void receive(unsigned pid, const bytes &data, const moment &at = {})
    {
        const offered_section section(pid, data, at);
        ASSERT_TRUE(section.is_whole());
        map.on_section(*section);
        contents.on_section(*section);
        map.settle_roles();
    }

    void receive_program(const std::vector<pmt_stream> &streams)
    {
        receive(0, pat_section(1, {
                                      {7, 0x1000}
        }));
        receive(0x1000, pmt_section(7, 0x100, {}, streams));
    }

    overview found()
    {
        overview result;
        result.programs = map.facts();
        contents.finish(result);
        return result;
    }
};

TEST_F(contents_found, programs_get_their_service_and_channel)
{
    receive_program({});
    receive(0x11, sdt_section(sdt_entry(7, service_descriptor(1, "Provider", "Name"))));
    receive(0x10, nit_section(descriptor(0x40, text_bytes("Net")),
                              nit_entry(1, 0x2222, descriptor(0x83, hex("0007 FC05")))));
    const overview result = found();
    ASSERT_EQ(result.programs.size(), 1u);
    EXPECT_EQ(result.programs[0].service_name, "Name");
    EXPECT_EQ(result.programs[0].channel, "5");
    EXPECT_EQ(result.transport_stream.transport_stream_id, 1);
    EXPECT_EQ(result.transport_stream.original_network_id, 0x2222);
    EXPECT_EQ(result.transport_stream.network_name, "Net");
    EXPECT_TRUE(result.limits_reached.empty());
}

TEST_F(contents_found, the_nit_tells_the_network_where_no_sdt_does)
{
    receive_program({});
    receive(0x10, nit_section({}, nit_entry(1, 0x2222, descriptor(0x83, hex("0007 FC05")))));
    const overview result = found();
    EXPECT_EQ(result.transport_stream.original_network_id, 0x2222);
    EXPECT_EQ(result.programs[0].channel, "5");
    EXPECT_EQ(result.transport_stream.network_name, std::nullopt);
}

TEST_F(contents_found, a_nit_on_the_network_pid_of_the_pat_counts)
{
    receive(0, pat_section(1, {
                                  {0, 0x30  },
                                  {7, 0x1000}
    }));
    receive(0x30, nit_section(descriptor(0x40, text_bytes("Net")), {}));
    EXPECT_EQ(found().transport_stream.network_name, "Net");
}

TEST_F(contents_found, channel_numbers_of_other_networks_and_streams_do_not_count)
{
    receive_program({});
    receive(0x11, sdt_section({}));
    receive(0x10, nit_section({}, join({nit_entry(1, 0x9999, descriptor(0x83, hex("0007 FC05"))),
                                        nit_entry(2, 0x2222, descriptor(0x83, hex("0007 FC06")))})));
    EXPECT_EQ(found().programs[0].channel, std::nullopt);
}

TEST_F(contents_found, a_virtual_channel_goes_before_a_logical_one)
{
    receive_program({});
    receive(0x10, nit_section({}, nit_entry(1, 0x2222, descriptor(0x83, hex("0007 FC05")))));
    receive(0x1FFB, vct_section({virtual_channel("WXYZ", 7, 1, 7)}));
    EXPECT_EQ(found().programs[0].channel, "7.1");
}

TEST_F(contents_found, tables_on_pids_of_others_say_nothing)
{
    receive_program({});
    const bytes sdt = sdt_section(sdt_entry(7, service_descriptor(1, "Provider", "Name")));
    receive(0x12, sdt);
    receive(0x1000, sdt);
    receive(0x11, eit_section(0x4E, 7, eit_entry(1, "C079 120000", "010000")));
    receive(0x11, short_section(0x70, hex("C079 120000")));
    const overview result = found();
    EXPECT_EQ(result.programs[0].service_name, std::nullopt);
    EXPECT_TRUE(result.guide.events.empty());
    EXPECT_FALSE(result.clock.first);
}

TEST_F(contents_found, a_pid_that_a_program_uses_has_lost_its_fixed_meaning)
{
    receive_program({
        {0x02, 0x12, {}}
    });
    receive(0x12, eit_section(0x4E, 7, eit_entry(1, "C079 120000", "010000")));
    EXPECT_TRUE(found().guide.events.empty());
}

TEST_F(contents_found, sections_that_are_not_current_or_have_no_crc_say_nothing)
{
    section_fields next;
    next.current_next_indicator = 0;
    receive(0x12, eit_section(0x4E, 7, eit_entry(1, "C079 120000", "010000"), next));
    receive(0x12, short_section(0x4E, repeated(0, 40)));
    EXPECT_TRUE(found().guide.events.empty());
}

TEST_F(contents_found, guide_and_clock_are_found)
{
    receive(0x12, eit_section(0x4E, 7, eit_entry(1, "C079 120000", "010000")));
    receive(0x14, short_section(0x70, hex("C079 120000")), at_packet(4));
    const overview result = found();
    EXPECT_EQ(result.guide.events.size(), 1u);
    ASSERT_TRUE(result.clock.first);
    EXPECT_EQ(result.clock.first->at.packet, 4u);
}

TEST_F(contents_found, only_streams_with_headers_or_teletext_are_looked_into)
{
    receive_program({
        {0x1B,             0x101,           {} },
        {    0x06,           0x102, descriptor(0x56, {})},
        {    0x06,           0x103, descriptor(0x59, {})},
        {    0x0B,           0x104,              {}   },
        { 0x06, 0x105,             descriptor(0x6A,    {})},
    });
    EXPECT_TRUE(contents.wants(0x101));
    EXPECT_TRUE(contents.wants(0x102));
    EXPECT_FALSE(contents.wants(0x103));
    EXPECT_FALSE(contents.wants(0x104));
    EXPECT_TRUE(contents.wants(0x105));
    EXPECT_FALSE(contents.wants(0x1000));
}

TEST_F(contents_found, a_pid_whose_map_says_otherwise_is_teletext_no_more)
{
    receive_program({
        {0x06, 0x102, descriptor(0x56, {})}
    });
    receive(0x1000, pmt_section(7, 0x100,
                                {
    },
                                {{0x06, 0x102, descriptor(0x59, {})}}));
    EXPECT_FALSE(contents.wants(0x102));
}

TEST_F(contents_found, a_page_of_teletext_ends_where_its_pid_is_something_else)
{
    const auto send = [&](const bytes &pes) {
        for (size_t done = 0; done < pes.size(); done += 184) {
            ts_packet packet;
            packet.pid = 0x102;
            packet.payload = pes.data() + done;
            packet.fence = packet.payload + std::min<size_t>(184, pes.size() - done);
            packet.payload_unit_start_indicator = done == 0;
            contents.on_packet(packet, {});
        }
    };
    const auto name_pid_by = [&](unsigned tag) {
        receive(0x1000, pmt_section(7, 0x100,
                                    {
        },
                                    {{0x06, 0x102, descriptor(tag, {})}}));
    };
    receive_program({});
    name_pid_by(0x56);
    send(teletext_pes_of({header(0x100), row(1, 1, "of the page")}));
    name_pid_by(0x59);
    name_pid_by(0x56);
    send(teletext_pes_of({row(1, 2, "of another"), header(0x1FF)}));
    EXPECT_TRUE(found().teletext.pages.empty());
}

TEST_F(contents_found, the_map_of_a_program_that_the_pat_does_not_list_says_nothing)
{
    receive(0, pat_section(1, {
                                  {7, 0x1000}
    }));
    receive(0x1000, pmt_section(8, 0x100,
                                {
    },
                                {{0x1B, 0x101, {}}}));
    receive(0x1001, pmt_section(7, 0x100,
                                {
    },
                                {{0x1B, 0x101, {}}}));
    EXPECT_FALSE(contents.wants(0x101));
}

TEST_F(contents_found, a_cue_has_the_clock_of_its_program)
{
    receive_program({
        {0x86, 0x105, {}}
    });
    ts_packet packet;
    packet.pid = 0x100;
    packet.PCR = 0;
    packet.at = at_packet(10, 1);
    clocks.on_packet(packet, {});
    receive(0x105, splice_section(0x06, splice_time(5 * 90000)), at_packet(20, 3));
    const overview result = found();
    ASSERT_EQ(result.cues.cues.size(), 1u);
    EXPECT_EQ(result.cues.cues[0].program, 7);
    EXPECT_EQ(result.cues.cues[0].pre_roll_ticks, 3 * ticks_per_second);
}

TEST_F(contents_found, private_sections_of_another_kind_are_no_cues)
{
    receive_program({
        {0x05, 0x200, {}}
    });
    receive(0x200, splice_section(0x06, splice_time(90000)));
    receive(0x1000, splice_section(0x06, splice_time(90000)));
    receive(0x12, splice_section(0x06, splice_time(90000)));
    EXPECT_TRUE(found().cues.cues.empty());
}

TEST_F(contents_found, what_the_caps_dropped_is_told)
{
    for (unsigned id = 0; id < guide_event_limit + 2; ++id)
        receive(0x12, eit_section(0x50, 1, eit_entry(id, "C079 120000", "010000")));
    receive_program({
        {0x86, 0x105, {}}
    });
    for (uint64_t i = 0; i < cue_limit + 3; ++i) receive(0x105, splice_section(0x06, splice_time(i)));
    const overview result = found();
    ASSERT_EQ(result.limits_reached.size(), 2u);
    EXPECT_EQ(result.limits_reached[0].what, "guide");
    EXPECT_EQ(result.limits_reached[0].limit, guide_event_limit);
    EXPECT_EQ(result.limits_reached[0].dropped, 2u);
    EXPECT_EQ(result.limits_reached[1].what, "cues");
    EXPECT_EQ(result.limits_reached[1].dropped, 3u);
}
