#include "tests/overview_tables/table_stream.h"

#include <gtest/gtest.h>

struct standard : testing::Test {
    std::string name() { return stream.tables->standard(); }

    /// What a recording of that one section is.
    static std::string of(unsigned pid, const bytes &section)
    {
        table_stream one;
        one.section(0, pid, section);
        return one.tables->standard();
    }

    static bytes spoilt(bytes section)
    {
        section[section.size() - 1] ^= 1;
        return section;
    }

    table_stream stream;
    const bytes nit = long_section(0x40, 1, hex("F000 F000"));
    const bytes mgt = long_section(0xC7, 0, hex("00 0000 F000"));
    const bytes bit = long_section(0xC4, 0, hex("0000"));
};

TEST_F(standard, without_any_sign_it_is_mpeg)
{
    EXPECT_EQ(name(), "MPEG");
    stream.section(0, 0,
                   pat_section(1, {
                                      {0, 0x10 },
                                      {1, 0x100}
    }));
    EXPECT_EQ(name(), "MPEG");
}

TEST_F(standard, an_mgt_on_its_pid_is_of_atsc)
{
    EXPECT_EQ(of(0x1FFB, mgt), "ATSC");
    EXPECT_EQ(of(0x1FFB, spoilt(mgt)), "MPEG");
    EXPECT_EQ(of(0x11, mgt), "MPEG");
    EXPECT_EQ(of(0x1FFB, short_section(0xC7, repeated(0, 20))), "MPEG");
}

TEST_F(standard, isdb_has_broadcaster_information_or_its_descriptor_in_a_nit)
{
    EXPECT_EQ(of(0x24, bit), "ISDB");
    EXPECT_EQ(of(0x24, spoilt(bit)), "MPEG");
    EXPECT_EQ(of(0x11, bit), "MPEG");
    EXPECT_EQ(of(0x10, long_section(0x40, 1, hex("F004 FE02 0301 F000"))), "ISDB");
    EXPECT_EQ(of(0x10, long_section(0x41, 1, hex("F000 F00A 0001 0002 F004 FE02 0301"))), "ISDB");
    EXPECT_EQ(of(0x11, long_section(0x40, 1, hex("F004 FE02 0301 F000"))), "MPEG");
}

TEST_F(standard, a_partial_stream_has_selection_information)
{
    EXPECT_EQ(of(0x1F, long_section(0x7F, 0xFFFF, hex("F000"))), "partial");
    EXPECT_EQ(of(0x11, long_section(0x7F, 0xFFFF, hex("F000"))), "MPEG");
    EXPECT_EQ(of(0, pat_section(1,
                                {
                                    {0, 0x1F },
                                    {1, 0x100}
    })),
              "partial");
}

TEST_F(standard, a_program_or_a_stream_registered_as_hdmv_is_partial)
{
    const bytes hdmv = descriptor(0x05, text_bytes("HDMV"));
    for (const bool in_program : {true, false}) {
        table_stream blu_ray;
        blu_ray.section(0, 0,
                        pat_section(1, {
                                           {1, 0x100}
        }));
        blu_ray.section(0, 0x100,
                        pmt_section(1, 0x101, in_program ? hdmv : bytes(),
                                    {
                                        {0x1B, 0x101, in_program ? bytes() : hdmv}
        }));
        EXPECT_STREQ(blu_ray.tables->standard(), "partial");
    }
}

TEST_F(standard, dvb_has_its_tables_on_their_pids)
{
    std::vector<std::pair<unsigned, unsigned>> found;
    for (unsigned pid = 0x10; pid <= 0x14; ++pid)
        for (unsigned table_id = 0; table_id < 0xFC; ++table_id)
            if (of(pid, long_section(table_id, 1, hex("0000 0000 0000"))) == "DVB")
                found.emplace_back(pid, table_id);
    std::vector<std::pair<unsigned, unsigned>> expected = {
        {0x10, 0x40},
        {0x10, 0x41},
        {0x11, 0x42},
        {0x11, 0x46},
        {0x11, 0x4A}
    };
    for (unsigned table_id = 0x4E; table_id <= 0x6F; ++table_id) expected.emplace_back(0x12, table_id);
    expected.emplace_back(0x14, 0x70);
    expected.emplace_back(0x14, 0x73);
    EXPECT_EQ(found, expected);
    EXPECT_EQ(of(0x14, short_section(0x70, hex("C079124500"))), "DVB");
    EXPECT_EQ(of(0x14, short_section(0x73, hex("C079124500 F000 00000000"))), "MPEG");
    EXPECT_EQ(of(0x11, short_section(0x42, hex("0000 0000 0000"))), "MPEG");
    EXPECT_EQ(of(0x10, spoilt(nit)), "MPEG");
}

TEST_F(standard, a_pid_that_a_pmt_names_otherwise_tells_nothing)
{
    stream.section(0, 0,
                   pat_section(1, {
                                      {1, 0x10}
    }));
    stream.section(0, 0x10, nit);
    EXPECT_EQ(name(), "MPEG");
}

TEST_F(standard, the_first_that_matches_counts)
{
    stream.section(0, 0x10, nit);
    EXPECT_EQ(name(), "DVB");
    stream.section(0, 0x1F, long_section(0x7F, 0xFFFF, hex("F000")));
    EXPECT_EQ(name(), "partial");
    stream.section(0, 0x24, bit);
    EXPECT_EQ(name(), "ISDB");
    stream.section(0, 0x1FFB, mgt);
    EXPECT_EQ(name(), "ATSC");
}

TEST_F(standard, sections_that_are_not_current_tell_nothing)
{
    section_fields next;
    next.current_next_indicator = 0;
    EXPECT_EQ(of(0x10, long_section(0x40, 1, hex("F000 F000"), next)), "MPEG");
    EXPECT_EQ(of(0x1FFB, long_section(0xC7, 0, hex("00 0000 F000"), next)), "MPEG");
}
