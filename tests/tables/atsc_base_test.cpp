#include "tests/support/report_test.h"

#include <random>

struct atsc_base : report_test {
    atsc_base() { settings.atsc_mode = 1; }
};

TEST_F(atsc_base, each_table_id_has_its_handler)
{
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xC7, 0x0000, {})),
              "* ATSC 0x1FFB\n"
              "    master_guide_table_section() [ATSC A/65:2009 6.2]\n"
              "        table_id_extension:               0x0000 (in place of Transport Stream ID field)\n"
              "        Version:                          0\n"
              "        Section:                          0 / 0\n");
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xC8, 0x0001, {})),
              "* ATSC 0x1FFB\n"
              "    terrestrial_virtual_channel_table_section() [ATSC A/65:2009 6.3.1]\n"
              "        Transport stream ID:              0x0001\n"
              "        Version:                          0\n"
              "        Section:                          0 / 0\n");
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xCA, 0xFF02, {})),
              "* ATSC 0x1FFB\n"
              "    rating_region_table_section() [ATSC A/65:2009 6.4]\n"
              "        Table ID extension:               0xff 0x02\n"
              "        Version:                          0\n"
              "        Section:                          0 / 0\n");
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xCD, 0x0003, {})),
              "* ATSC 0x1FFB\n"
              "    system_time_table_section() [ATSC A/65:2009 6.1]\n"
              "        Table ID extension:               0x0003\n"
              "        Version:                          0\n"
              "        Section:                          0 / 0\n");
}

TEST_F(atsc_base, any_other_table_is_unknown)
{
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xC9, 0x0000, repeated(0x00, 40))),
              "* ATSC 0x1FFB\n"
              "    ATSC 0x1FFB unknown table c9\n");
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xCB, 0x0000, {})),
              "* ATSC 0x1FFB\n"
              "    ATSC 0x1FFB unknown table cb\n");
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xCC, 0x0000, {})),
              "* ATSC 0x1FFB\n"
              "    ATSC 0x1FFB unknown table cc\n");
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xFE, 0x0000, {})),
              "* ATSC 0x1FFB\n"
              "    ATSC 0x1FFB unknown table fe\n");
}

TEST_F(atsc_base, dump_mode_none_takes_away_only_the_headings)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xC7, 0x0000, {})),
              "* ATSC 0x1FFB\n"
              "        table_id_extension:               0x0000 (in place of Transport Stream ID field)\n"
              "        Version:                          0\n"
              "        Section:                          0 / 0\n");
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xC8, 0x0001, {})),
              "* ATSC 0x1FFB\n"
              "        Transport stream ID:              0x0001\n"
              "        Version:                          0\n"
              "        Section:                          0 / 0\n");
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xCA, 0x0102, {})),
              "* ATSC 0x1FFB\n"
              "        Table ID extension:               0x01 0x02\n"
              "        Version:                          0\n"
              "        Section:                          0 / 0\n");
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xCD, 0x0003, {})),
              "* ATSC 0x1FFB\n"
              "        Table ID extension:               0x0003\n"
              "        Version:                          0\n"
              "        Section:                          0 / 0\n");
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xC9, 0x0000, {})),
              "* ATSC 0x1FFB\n"
              "    ATSC 0x1FFB unknown table c9\n");
}

TEST_F(atsc_base, a_section_that_is_not_current_yet_is_announced_like_any_other)
{
    section_fields fields;
    fields.current_next_indicator = 0;
    EXPECT_EQ(report_of_section(0x1FFB, long_section(0xC9, 0x0000, {}, fields)),
              "* ATSC 0x1FFB\n"
              "    ATSC 0x1FFB unknown table c9\n");
}

/// Bodies of ones, zeros and random bytes at many lengths; the MGT's PIDs stay free of conflicts.
TEST_F(atsc_base, every_table_takes_every_body)
{
    std::mt19937 random(1997);
    for (const unsigned table_id : {0xC8u, 0xC9u, 0xCAu, 0xCBu, 0xCDu, 0xFFu})
        for (unsigned length = 0; length <= 600; ++length) {
            bytes body(length);
            for (uint8_t &byte : body) byte = static_cast<uint8_t>(random());
            for (const bytes &filled : {repeated(0x00, length), repeated(0xFF, length), body})
                EXPECT_EQ(report_of_section(0x1FFB, long_section(table_id, 0xFFFF, filled)).substr(0, 14),
                          table_id == 0xFF ? "" : "* ATSC 0x1FFB\n");
        }
}
