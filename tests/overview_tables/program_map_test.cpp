#include "tests/overview_tables/table_stream.h"

#include "mpeg_ts_overview/tables/program_map.h"

#include <gtest/gtest.h>

struct programs : testing::Test {
    using entries = std::vector<std::pair<unsigned, unsigned>>;

    void pat(const entries &listed, section_fields fields = {})
    {
        stream.section(0, 0, pat_section(0x1234, listed, fields));
    }

    void pmt(unsigned pid, unsigned number, unsigned PCR_PID, const std::vector<pmt_stream> &streams,
             section_fields fields = {}, const bytes &program_info = {})
    {
        stream.section(0, pid, pmt_section(number, PCR_PID, program_info, streams, fields));
    }

    const program_map &map() { return stream.tables->programs(); }
    const stream_role &role(uint16_t pid) { return map().role_of(pid); }
    std::vector<program_facts> facts() { return map().facts(); }

    table_stream stream;
    const std::vector<pmt_stream> video_and_audio = {
        {0x02, 0x101, {}},
        {0x03, 0x102, {}}
    };
};

TEST_F(programs, the_pat_gives_the_pids_of_pmts_and_the_transport_stream_id)
{
    EXPECT_FALSE(map().transport_stream_id());
    EXPECT_FALSE(stream.tables->collects(0x100));
    pat({
        {0, 0x10 },
        {1, 0x100},
        {2, 0x200}
    });
    EXPECT_TRUE(stream.tables->collects(0x100));
    EXPECT_TRUE(stream.tables->collects(0x200));
    EXPECT_EQ(map().transport_stream_id(), 0x1234);
    ASSERT_EQ(facts().size(), 2u);
    EXPECT_EQ(facts()[0].number, 1);
    EXPECT_EQ(facts()[0].pmt_pid, 0x100);
    EXPECT_FALSE(facts()[0].pcr_pid);
    EXPECT_EQ(facts()[1].number, 2);
    EXPECT_FALSE(map().had_map());
}

TEST_F(programs, a_pmt_tells_the_roles_of_its_pids)
{
    pat({
        {1, 0x100}
    });
    pmt(0x100, 1, 0x101,
        {
            {0x02, 0x101, {}},
            {0x03, 0x102, {}},
            {0x06, 0x103, {}}
    });
    EXPECT_EQ(role(0x101).kind, stream_kind::video);
    EXPECT_EQ(role(0x101).program, 1);
    EXPECT_EQ(role(0x101).pcr_pid, 0x101);
    EXPECT_EQ(role(0x102).kind, stream_kind::audio);
    EXPECT_EQ(role(0x103).kind, stream_kind::other);
    EXPECT_EQ(role(0x103).program, 1);
    EXPECT_FALSE(role(0x104).program);
    EXPECT_TRUE(map().is_program_clock(0x101));
    EXPECT_FALSE(map().is_program_clock(0x102));
    EXPECT_TRUE(map().had_map());
    ASSERT_EQ(facts()[0].streams.size(), 3u);
    EXPECT_EQ(facts()[0].pcr_pid, 0x101);
    EXPECT_EQ(facts()[0].streams[1].pid, 0x102);
    EXPECT_EQ(facts()[0].streams[1].stream_type, 0x03);
}

TEST_F(programs, a_pcr_pid_of_0x1FFF_is_none)
{
    pat({
        {1, 0x100}
    });
    pmt(0x100, 1, 0x1FFF, video_and_audio);
    EXPECT_FALSE(role(0x101).pcr_pid);
    EXPECT_FALSE(map().is_program_clock(0x1FFF));
    EXPECT_EQ(facts()[0].pcr_pid, 0x1FFF);
}

TEST_F(programs, a_pmt_before_the_pat_that_names_its_pid_is_not_read)
{
    pmt(0x100, 1, 0x101, video_and_audio);
    pat({
        {1, 0x100}
    });
    EXPECT_FALSE(role(0x101).program);
    pmt(0x100, 1, 0x101, video_and_audio);
    EXPECT_TRUE(role(0x101).program);
}

TEST_F(programs, a_pmt_of_another_program_or_on_another_pid_is_not_read)
{
    pat({
        {1, 0x100},
        {2, 0x200}
    });
    pmt(0x100, 3, 0x101, video_and_audio);
    pmt(0x200, 1, 0x101, video_and_audio);
    EXPECT_FALSE(role(0x101).program);
}

TEST_F(programs, two_programs_may_share_a_pmt_pid)
{
    pat({
        {1, 0x100},
        {2, 0x100}
    });
    pmt(0x100, 1, 0x101,
        {
            {0x02, 0x101, {}}
    });
    pmt(0x100, 2, 0x201,
        {
            {0x02, 0x201, {}}
    });
    EXPECT_EQ(role(0x101).program, 1);
    EXPECT_EQ(role(0x201).program, 2);
}

TEST_F(programs, sections_that_are_not_current_or_have_a_wrong_crc_change_nothing)
{
    section_fields next;
    next.current_next_indicator = 0;
    pat(
        {
            {1, 0x100}
    },
        next);
    EXPECT_TRUE(facts().empty());
    bytes wrong = pat_section(1, {
                                     {1, 0x100}
    });
    wrong[10] ^= 1;
    stream.section(0, 0, wrong);
    EXPECT_TRUE(facts().empty());
    pat({
        {1, 0x100}
    });
    pmt(0x100, 1, 0x101, video_and_audio, next);
    EXPECT_FALSE(role(0x101).program);
}

TEST_F(programs, a_stream_of_two_programs_is_that_of_the_first_in_the_pat)
{
    const std::vector<pmt_stream> as_data = {
        {0x06, 0x101, {}}
    };
    pat({
        {2, 0x200},
        {1, 0x100}
    });
    pmt(0x100, 1, 0x101, video_and_audio);
    EXPECT_EQ(role(0x101).program, 1);
    pmt(0x200, 2, 0x201, as_data);
    EXPECT_EQ(role(0x101).program, 2);
    EXPECT_EQ(role(0x101).pcr_pid, 0x201);
    EXPECT_EQ(role(0x101).kind, stream_kind::other);
    EXPECT_EQ(role(0x102).program, 1);
}

TEST_F(programs, a_pat_in_another_order_changes_whose_the_stream_is)
{
    pat({
        {1, 0x100},
        {2, 0x200}
    });
    pmt(0x100, 1, 0x101, video_and_audio);
    pmt(0x200, 2, 0x201, video_and_audio);
    EXPECT_EQ(role(0x101).program, 1);
    pat(
        {
            {2, 0x200},
            {1, 0x100}
    },
        {1});
    EXPECT_EQ(role(0x101).program, 2);
    EXPECT_EQ(role(0x102).program, 2);
    pat(
        {
            {3, 0x300},
            {1, 0x100},
            {2, 0x200}
    },
        {2});
    EXPECT_EQ(role(0x101).program, 1);
}

TEST_F(programs, a_program_that_leaves_the_pat_keeps_its_facts_and_loses_its_roles)
{
    pat({
        {1, 0x100},
        {2, 0x200}
    });
    pmt(0x100, 1, 0x101, video_and_audio);
    pmt(0x200, 2, 0x201, video_and_audio);
    pat(
        {
            {2, 0x200}
    },
        {1});
    EXPECT_EQ(role(0x101).program, 2);
    EXPECT_FALSE(map().is_program_clock(0x101));
    EXPECT_FALSE(stream.tables->collects(0x100));
    ASSERT_EQ(facts().size(), 2u);
    EXPECT_EQ(facts()[0].number, 1);
    EXPECT_EQ(facts()[0].streams.size(), 2u);
}

TEST_F(programs, a_program_that_comes_back_waits_for_its_pmt)
{
    const entries both = {
        {1, 0x100},
        {2, 0x200}
    };
    pat(both);
    pmt(0x100, 1, 0x101, video_and_audio);
    pat(
        {
            {2, 0x200}
    },
        {1});
    pat(both, {2});
    EXPECT_FALSE(role(0x101).program);
    pmt(0x100, 1, 0x101, video_and_audio);
    EXPECT_EQ(role(0x101).program, 1);
}

TEST_F(programs, a_pmt_that_moves_to_another_pid_is_read_there)
{
    pat({
        {1, 0x100}
    });
    pmt(0x100, 1, 0x101, video_and_audio);
    pat(
        {
            {1, 0x300}
    },
        {1});
    EXPECT_FALSE(role(0x101).program);
    EXPECT_EQ(facts()[0].pmt_pid, 0x300);
    pmt(0x100, 1, 0x101, video_and_audio);
    EXPECT_FALSE(role(0x101).program);
    pmt(0x300, 1, 0x101, video_and_audio);
    EXPECT_EQ(role(0x101).program, 1);
}

TEST_F(programs, a_new_pmt_takes_the_place_of_the_old_one)
{
    pat({
        {1, 0x100}
    });
    pmt(0x100, 1, 0x101, video_and_audio);
    pmt(0x100, 1, 0x102,
        {
            {0x1B, 0x102, {}},
            {0x05, 0x104, {}}
    },
        {1});
    EXPECT_FALSE(role(0x101).program);
    EXPECT_EQ(role(0x102).kind, stream_kind::video);
    EXPECT_TRUE(map().is_program_clock(0x102));
    EXPECT_FALSE(map().is_program_clock(0x101));
    EXPECT_TRUE(stream.tables->collects(0x104));
    EXPECT_EQ(facts()[0].streams.size(), 2u);
    EXPECT_TRUE(stream.tables->uses().ever_named(0x101));
}

TEST_F(programs, a_pmt_that_cannot_be_read_leaves_the_old_one)
{
    pat({
        {1, 0x100}
    });
    pmt(0x100, 1, 0x101, video_and_audio);
    stream.section(0, 0x100, long_section(0x02, 1, hex("E1 01 F0 20"), {1}));
    EXPECT_EQ(role(0x101).program, 1);
}

TEST_F(programs, the_sections_of_a_pat_add_up)
{
    section_fields first;
    first.last_section_number = 1;
    section_fields second = first;
    second.section_number = 1;
    pat(
        {
            {2, 0x200}
    },
        second);
    pat(
        {
            {1, 0x100}
    },
        first);
    ASSERT_EQ(facts().size(), 2u);
    EXPECT_EQ(facts()[0].number, 2);
    pmt(0x200, 2, 0x101, video_and_audio);
    pmt(0x100, 1, 0x101, video_and_audio);
    EXPECT_EQ(role(0x101).program, 1);
}

TEST_F(programs, sections_above_the_last_are_forgotten)
{
    section_fields second;
    second.section_number = second.last_section_number = 1;
    pat(
        {
            {2, 0x200}
    },
        second);
    EXPECT_TRUE(stream.tables->collects(0x200));
    pat({
        {1, 0x100}
    });
    EXPECT_FALSE(stream.tables->collects(0x200));
    EXPECT_EQ(facts().size(), 2u);
}

TEST_F(programs, a_pmt_in_hand_survives_a_new_pat_that_names_its_pid_too)
{
    pat({
        {1, 0x100}
    });
    const bytes section = pmt_section(1, 0x101, descriptor(0x80, repeated(0, 200)), video_and_audio);
    const stream_builder built = stream_builder().section(0x100, section);
    ASSERT_EQ(built.packet_count(), 2u);
    stream.packet(0, built.data().data());
    pat(
        {
            {3, 0x300},
            {1, 0x100}
    },
        {1});
    stream.packet(0, built.data().data() + 188);
    EXPECT_EQ(role(0x101).program, 1);
}

TEST_F(programs, ca_systems_are_named_once_each_at_both_levels)
{
    const bytes ecm = descriptor(0x09, hex("01 02 E5 01"));
    const bytes other = descriptor(0x09, hex("0B 00 E5 02"));
    const bytes cut = descriptor(0x09, hex("0B 00 E5"));
    EXPECT_FALSE(map().has_conditional_access());
    pat({
        {1, 0x100}
    });
    pmt(0x100, 1, 0x101,
        {
            {0x02, 0x101, join({other, ecm})},
            {0x03, 0x102, ecm               }
    },
        {}, join({ecm, cut}));
    ASSERT_EQ(facts()[0].ca_systems.size(), 2u);
    EXPECT_EQ(facts()[0].ca_systems[0].id, 0x0102);
    EXPECT_EQ(facts()[0].ca_systems[0].pid, 0x501);
    EXPECT_EQ(facts()[0].ca_systems[1].id, 0x0B00);
    EXPECT_EQ(facts()[0].ca_systems[1].pid, 0x502);
    EXPECT_TRUE(map().has_conditional_access());
    EXPECT_TRUE(stream.tables->uses().ever_named(0x501));
    EXPECT_FALSE(stream.tables->collects(0x501));
}

TEST_F(programs, what_a_section_changes_is_listed)
{
    pat({
        {1, 0x100}
    });
    ASSERT_EQ(map().listing_changes().size(), 1u);
    EXPECT_TRUE(map().listing_changes()[0].is_listed);
    EXPECT_EQ(map().listing_changes()[0].program_number, 1);
    EXPECT_EQ(map().listing_changes()[0].pmt_pid, 0x100);
    pat({
        {1, 0x100}
    });
    EXPECT_TRUE(map().listing_changes().empty());

    pmt(0x100, 1, 0x103, video_and_audio);
    EXPECT_EQ(map().changed_pids(), (std::vector<uint16_t>{0x101, 0x102, 0x103}));
    pmt(0x100, 1, 0x103, video_and_audio);
    EXPECT_TRUE(map().changed_pids().empty());

    pat(
        {
            {1, 0x300}
    },
        {1});
    ASSERT_EQ(map().listing_changes().size(), 2u);
    EXPECT_FALSE(map().listing_changes()[0].is_listed);
    EXPECT_EQ(map().listing_changes()[0].pmt_pid, 0x100);
    EXPECT_TRUE(map().listing_changes()[1].is_listed);
    EXPECT_EQ(map().listing_changes()[1].pmt_pid, 0x300);
    EXPECT_EQ(map().changed_pids(), (std::vector<uint16_t>{0x103, 0x101, 0x102}));
}

TEST_F(programs, the_first_of_two_entries_of_a_program_counts)
{
    pat({
        {1, 0x100},
        {1, 0x200}
    });
    ASSERT_EQ(facts().size(), 1u);
    EXPECT_EQ(facts()[0].pmt_pid, 0x100);
    pmt(0x200, 1, 0x101, video_and_audio);
    EXPECT_FALSE(role(0x101).program);
    pmt(0x100, 1, 0x101, video_and_audio);
    EXPECT_EQ(role(0x101).program, 1);
}

TEST_F(programs, streams_beyond_the_limit_are_counted)
{
    entries many;
    std::vector<pmt_stream> streams;
    for (unsigned number = 1; number <= 100; ++number) many.emplace_back(number, 0x100);
    for (unsigned i = 0; i < 200; ++i) streams.push_back({0x02, 0x200 + i, {}});
    pat(many);
    for (unsigned number = 1; number <= 100; ++number) pmt(0x100, number, 0x1FFF, streams);
    EXPECT_EQ(map().streams_not_kept(), 100 * 200 - mapped_stream_limit);
    pmt(0x100, 1, 0x1FFF, video_and_audio, {1});
    pmt(0x100, 100, 0x1FFF, video_and_audio, {1});
    EXPECT_EQ(map().streams_not_kept(), 100 * 200 - mapped_stream_limit);
    EXPECT_EQ(facts()[99].streams.size(), 2u);
}

TEST_F(programs, cat_and_mgt_name_pids_as_long_as_they_are_current)
{
    const pid_directory &uses = stream.tables->uses();
    stream.section(0, 0x01, long_section(0x01, 0xFFFF, descriptor(0x09, hex("01 02 E6 01"))));
    EXPECT_TRUE(uses.is(0x601, pid_use::conditional_access));
    EXPECT_TRUE(stream.tables->had_cat());
    stream.section(0, 0x01, long_section(0x01, 0xFFFF, {}, {1}));
    EXPECT_FALSE(uses.is(0x601, pid_use::conditional_access));
    EXPECT_TRUE(uses.ever_named(0x601));

    stream.section(0, 0x1FFB, long_section(0xC7, 0, hex("00 0001 0100 FD00 E0 00000000 F000 F000")));
    EXPECT_TRUE(stream.tables->collects(0x1D00));
    stream.section(0, 0x1FFB, long_section(0xC7, 0, hex("00 0001 0100 FD01 E0 00000000 F000 F000"), {1}));
    EXPECT_FALSE(stream.tables->collects(0x1D00));
    EXPECT_TRUE(stream.tables->collects(0x1D01));
}
