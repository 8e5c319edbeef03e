#include "tests/support/death.h"
#include "tests/support/report_test.h"

#include <csignal>
#include <random>

struct atsc_mgt_tracking : report_test {
    atsc_mgt_tracking() { settings.atsc_mode = 1; }
};

namespace {

bytes entry(unsigned table_type, unsigned pid)
{
    return join({big_endian(table_type, 2), big_endian(0xE000u | pid, 2), hex("E0 00 00 00 00 F0 00")});
}

bytes mgt(const std::vector<bytes> &entries, section_fields fields = {})
{
    bytes body = join({hex("00"), big_endian(entries.size(), 2)});
    for (const bytes &one : entries) body = join({body, one});
    return long_section(0xC7, 0x0000, join({body, hex("F0 00")}), fields);
}

} // namespace

TEST_F(atsc_mgt_tracking, event_and_text_PIDs_are_followed)
{
    report_of_section(0x1FFB, mgt({entry(0x0100, 0x1D00), entry(0x017F, 0x1D01), entry(0x0200, 0x1D02),
                                   entry(0x027F, 0x1D03), entry(0x0004, 0x1D04)}));
    EXPECT_EQ(pid_tracking[0x1D00].type, TRACK_ATSC_EIT);
    EXPECT_EQ(pid_tracking[0x1D01].type, TRACK_ATSC_EIT);
    EXPECT_EQ(pid_tracking[0x1D02].type, TRACK_ATSC_ETT);
    EXPECT_EQ(pid_tracking[0x1D03].type, TRACK_ATSC_ETT);
    EXPECT_EQ(pid_tracking[0x1D04].type, TRACK_ATSC_ETT);
}

TEST_F(atsc_mgt_tracking, a_followed_PID_has_a_fresh_record_with_storage)
{
    settings.assume_country = 0x3200;
    report_of_section(0x1FFB, mgt({entry(0x0100, 0x1FFF)}));

    const mpeg_ts_pid_tracking &t = pid_tracking[0x1FFF];
    EXPECT_EQ(t.type, TRACK_ATSC_EIT);
    EXPECT_EQ(t.program_number, 0);
    EXPECT_EQ(t.private_data_specifier, 0x3200u);
    EXPECT_EQ(t.last_version, 255);
    EXPECT_EQ(t.tbl_asm.fence - t.tbl_asm.buffer, 32768 + 128);
    EXPECT_EQ(t.tbl_asm.write, t.tbl_asm.buffer);
}

TEST_F(atsc_mgt_tracking, no_other_table_type_starts_tracking)
{
    for (const unsigned type :
         {0x0000u, 0x0003u, 0x0005u, 0x00FFu, 0x0180u, 0x01FFu, 0x0280u, 0x0301u, 0x1400u}) {
        report_of_section(0x1FFB, mgt({entry(type, 0x0030)}));
        EXPECT_EQ(pid_tracking[0x0030].type, TRACK_NONE) << type;
    }
}

TEST_F(atsc_mgt_tracking, PID_0_starts_no_tracking)
{
    report_of_section(0x1FFB, mgt({entry(0x0100, 0x0000), entry(0x0004, 0x0000)}));
    EXPECT_EQ(pid_tracking[0x0000].type, TRACK_PAT);
}

TEST_F(atsc_mgt_tracking, every_MGT_starts_its_PIDs_afresh)
{
    report_of_section(0x1FFB, mgt({entry(0x0100, 0x1D00)}));
    mpeg_ts_pid_tracking &t = pid_tracking[0x1D00];
    t.private_data_specifier = 7;
    t.last_version = 3;
    t.tbl_asm.write += 10;

    report_of_section(0x1FFB, mgt({entry(0x0101, 0x1D00)}));
    EXPECT_EQ(t.type, TRACK_ATSC_EIT);
    EXPECT_EQ(t.private_data_specifier, 0u);
    EXPECT_EQ(t.last_version, 255);
    EXPECT_EQ(t.tbl_asm.write, t.tbl_asm.buffer);
}

TEST_F(atsc_mgt_tracking, an_MGT_cuts_the_section_in_hand)
{
    const bytes text = long_section(0xCC, 0x0000, join({hex("00 12 34 56 79 00"), repeated(0x00, 300)}));
    stream_builder cut;
    cut.section(0x1FFB, mgt({entry(0x0004, 0x1D00)}));
    cut.payload(0x1D00, join({hex("00"), bytes(text.begin(), text.begin() + 183)}), true);
    cut.section(0x1FFB, mgt({entry(0x0004, 0x1D00)}));
    cut.payload(0x1D00, bytes(text.begin() + 183, text.end()));
    EXPECT_EQ(report_of_packets(cut.data()).find("extended_text_table_section"), std::string::npos);
}

TEST_F(atsc_mgt_tracking, sections_of_the_announced_PIDs_reach_their_handlers)
{
    report_of_section(0x1FFB, mgt({entry(0x0100, 0x1D00), entry(0x0200, 0x1E00)}));
    EXPECT_EQ(report_of_section(0x1D00, long_section(0xCB, 0x0001, {})),
              "* event_information_table_section() [ATSC A/65:2009 6.5]\n");
    EXPECT_EQ(report_of_section(0x1E00, long_section(0xCC, 0x0001, {})),
              "* extended_text_table_section() [ATSC A/65:2009 6.6] PID 0x1e00\n");
    EXPECT_EQ(report_of_section(0x1D00, long_section(0xCC, 0x0001, {})), "");
    EXPECT_EQ(report_of_section(0x1E00, long_section(0xCB, 0x0001, {})), "");
}

TEST_F(atsc_mgt_tracking, an_entry_whose_descriptors_overrun_is_followed_all_the_same)
{
    report_of_section(0x1FFB, long_section(0xC7, 0x0000, hex("00 00 01  0100 FD00 E0 00000000 FFFF")));
    EXPECT_EQ(pid_tracking[0x1D00].type, TRACK_ATSC_EIT);
}

TEST_F(atsc_mgt_tracking, an_MGT_that_is_not_current_yet_starts_tracking_too)
{
    section_fields fields;
    fields.current_next_indicator = 0;
    report_of_section(0x1FFB, mgt({entry(0x0100, 0x1D00)}, fields));
    EXPECT_EQ(pid_tracking[0x1D00].type, TRACK_ATSC_EIT);
}

TEST_F(atsc_mgt_tracking, random_bodies_without_followed_PIDs_are_read_to_their_end)
{
    std::mt19937 random(65);
    for (unsigned length = 0; length <= 1000; ++length) {
        bytes body(length);
        for (uint8_t &byte : body) byte = static_cast<uint8_t>(random());
        // The table types become 0xFFxx, which nothing follows.
        for (size_t at = 3; at < body.size(); ++at) body[at] |= 0xF0;
        EXPECT_EQ(report_of_section(0x1FFB, long_section(0xC7, 0x0000, body)).substr(0, 14),
                  "* ATSC 0x1FFB\n");
    }
}

using atsc_mgt_death = atsc_mgt_tracking;

/// The report so far comes first, then the message of the C library's assert, then SIGABRT.
TEST_F(atsc_mgt_death, a_PID_tracked_as_something_else_stops_the_program)
{
    const std::string report_so_far =
        exactly("* ATSC 0x1FFB\n"
                "    master_guide_table_section() [ATSC A/65:2009 6.2]\n"
                "        table_id_extension:               0x0000 (in place of Transport Stream ID field)\n"
                "        Version:                          0\n"
                "        Section:                          0 / 0\n"
                "        Protocol version:                 0\n"
                "        Tables defined:                   1\n"
                "        Table #1: table_type=0x0100 (EIT-0) PID=0011 version=0\n"
                "            number_bytes=0\n"
                "            table_type_descriptors_length=0\n");
    const std::string message =
        exactly("tables_tests: ") + "[^\n :]*" + exactly("mpeg_ts_analysis/tables/atsc_mgt.cpp:") + "[0-9]+" +
        exactly(": void desc_atsc_A65_2009_6_2_master_guide_table_section(mpeg_ts_pid_tracking") + "[^\n]*" +
        exactly("): Assertion `t != NULL' failed.\n");

    EXPECT_EXIT(
        {
            report_to_standard_error();
            report_of_section(0x1FFB, mgt({entry(0x0100, 0x0011)}));
        },
        testing::KilledBySignal(SIGABRT), "^" + report_so_far + message);
}

TEST_F(atsc_mgt_death, one_PID_for_events_and_texts_stops_the_program)
{
    EXPECT_EXIT(report_of_section(0x1FFB, mgt({entry(0x0100, 0x1D00), entry(0x0200, 0x1D00)})),
                testing::KilledBySignal(SIGABRT),
                exactly("desc_atsc_A65_2009_6_2_master_guide_table_section(") + "[^\n]*" +
                    exactly("Assertion `t != NULL' failed."));
}

TEST_F(atsc_mgt_death, the_base_PID_announced_for_events_stops_the_program)
{
    EXPECT_EXIT(report_of_section(0x1FFB, mgt({entry(0x0100, 0x1FFB)})), testing::KilledBySignal(SIGABRT),
                exactly("Assertion `t != NULL' failed."));
}
