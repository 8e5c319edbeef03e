#include "tests/support/report_test.h"

struct pat_nit : report_test {
    std::string report_of_pat(const std::vector<std::pair<unsigned, unsigned>> &programs,
                              section_fields fields = {})
    {
        return report_of_section(0x0000, pat_section(0x1234, programs, fields));
    }

    static uint16_t type_of(unsigned pid) { return pid_tracking[pid].type; }
};

namespace {

const std::string head = "* Program Association Table\n"
                         "    Transport stream ID:              0x1234\n"
                         "    Version:                          0\n"
                         "    Section:                          0 / 0\n";

} // namespace

TEST_F(pat_nit, an_entry_with_the_pid_in_force_changes_no_tracking)
{
    const uint8_t *const buffer = pid_tracking[0x0010].tbl_asm.buffer;
    EXPECT_EQ(report_of_section(0x0000, long_section(0x00, 0x1234, hex("0000E010"))),
              head + "      Network Info Table PID is 0x0010\n");
    EXPECT_EQ(type_of(0x0010), TRACK_NIT);
    EXPECT_EQ(pid_tracking[0x0010].tbl_asm.buffer, buffer);
}

TEST_F(pat_nit, an_entry_with_another_pid_moves_the_tracking)
{
    settings.assume_country = 0x3200;
    EXPECT_EQ(report_of_pat({
                  {0, 0x0020}
    }),
              head + "      Network Info Table PID is 0x0020\n"
                     "      Changed NIT tracking to PID 0x0020\n");
    EXPECT_EQ(current_nit_pid, 0x0020);
    EXPECT_EQ(type_of(0x0010), TRACK_NONE);
    EXPECT_EQ(pid_tracking[0x0010].tbl_asm.buffer, nullptr);
    const mpeg_ts_pid_tracking &t = pid_tracking[0x0020];
    EXPECT_EQ(t.type, TRACK_NIT);
    EXPECT_EQ(t.program_number, 0);
    EXPECT_EQ(t.private_data_specifier, 0x3200u);
    EXPECT_EQ(t.last_version, 255);
    EXPECT_EQ(t.tbl_asm.fence - t.tbl_asm.buffer, 32768 + 128);
    EXPECT_EQ(report_of_section(0x0020, long_section(0x40, 1, hex("F000F000"))),
              "* Network Information Table\n");
    EXPECT_EQ(report_of_section(0x0010, long_section(0x40, 1, hex("F000F000"))), "");
}

TEST_F(pat_nit, the_same_entry_again_moves_nothing)
{
    report_of_pat({
        {0, 0x0020}
    });
    EXPECT_EQ(report_of_pat({
                  {0, 0x0020}
    }),
              head + "      Network Info Table PID is 0x0020\n");
    EXPECT_EQ(type_of(0x0020), TRACK_NIT);
}

TEST_F(pat_nit, a_section_without_an_entry_moves_the_tracking_back)
{
    report_of_pat({
        {0, 0x0020}
    });
    EXPECT_EQ(report_of_pat({}), head + "      Changed NIT tracking to PID 0x0010\n");
    EXPECT_EQ(current_nit_pid, 0x0010);
    EXPECT_EQ(type_of(0x0010), TRACK_NIT);
    EXPECT_EQ(type_of(0x0020), TRACK_NONE);
}

TEST_F(pat_nit, of_several_sections_each_decides_for_itself)
{
    EXPECT_EQ(report_of_pat(
                  {
                      {0, 0x0020}
    },
                  {0, 1, 0, 1}),
              "* Program Association Table\n"
              "    Transport stream ID:              0x1234\n"
              "    Version:                          0\n"
              "    Section:                          0 / 1\n"
              "      Network Info Table PID is 0x0020\n"
              "      Changed NIT tracking to PID 0x0020\n");
    EXPECT_EQ(report_of_pat(
                  {
                      {1, 0x0100}
    },
                  {0, 1, 1, 1}),
              "* Program Association Table\n"
              "    Transport stream ID:              0x1234\n"
              "    Version:                          0\n"
              "    Section:                          1 / 1\n"
              "      Program 0x0001: PMT PID is 0x0100\n"
              "        First aware of, tracking program 0x0001\n"
              "      Changed NIT tracking to PID 0x0010\n");
}

TEST_F(pat_nit, a_second_entry_is_reported_and_followed)
{
    EXPECT_EQ(report_of_pat({
                  {0, 0x0020},
                  {1, 0x0100},
                  {0, 0x0030}
    }),
              head + "      Network Info Table PID is 0x0020\n"
                     "      Program 0x0001: PMT PID is 0x0100\n"
                     "        First aware of, tracking program 0x0001\n"
                     "      Network Info Table PID is 0x0030\n"
                     "!!! PAT has more than one entry for the NIT\n"
                     "      Changed NIT tracking to PID 0x0030\n");
    EXPECT_EQ(type_of(0x0020), TRACK_NONE);
    EXPECT_EQ(type_of(0x0030), TRACK_NIT);
}

TEST_F(pat_nit, each_entry_after_the_first_is_reported)
{
    EXPECT_EQ(report_of_pat({
                  {0, 0x0020},
                  {0, 0x0020},
                  {0, 0x0010}
    }),
              head + "      Network Info Table PID is 0x0020\n"
                     "      Network Info Table PID is 0x0020\n"
                     "!!! PAT has more than one entry for the NIT\n"
                     "      Network Info Table PID is 0x0010\n"
                     "!!! PAT has more than one entry for the NIT\n");
    EXPECT_EQ(type_of(0x0010), TRACK_NIT);
}

TEST_F(pat_nit, a_pid_that_carries_something_else_cannot_be_followed_but_is_remembered)
{
    for (const unsigned pid : {0x0000u, 0x0011u, 0x0012u, 0x1FFBu}) {
        const uint16_t type = type_of(pid);
        char lines[128];
        snprintf(lines, sizeof lines,
                 "      Network Info Table PID is 0x%04x\n"
                 "      Changed NIT tracking to PID 0x%04x\n",
                 pid, pid);
        EXPECT_EQ(report_of_pat({
                      {0, pid}
        }),
                  head + lines + "!!! Unable to begin tracking the NIT\n");
        EXPECT_EQ(current_nit_pid, pid);
        EXPECT_EQ(type_of(pid), type);
        EXPECT_EQ(type_of(0x0010), TRACK_NONE);
    }
}

TEST_F(pat_nit, leaving_a_pid_that_carries_something_else_does_not_stop_it)
{
    report_of_pat({
        {0, 0x0011}
    });
    EXPECT_EQ(report_of_pat({
                  {0, 0x0020}
    }),
              head + "      Network Info Table PID is 0x0020\n"
                     "      Changed NIT tracking to PID 0x0020\n");
    EXPECT_EQ(type_of(0x0011), TRACK_SDT);
    EXPECT_EQ(type_of(0x0020), TRACK_NIT);
}

TEST_F(pat_nit, a_pid_that_could_not_be_followed_is_not_tried_again)
{
    track(0x0020, 0x1B);
    EXPECT_EQ(report_of_pat({
                  {0, 0x0020}
    }),
              head + "      Network Info Table PID is 0x0020\n"
                     "      Changed NIT tracking to PID 0x0020\n"
                     "!!! Unable to begin tracking the NIT\n");
    mpeg_ts_pid_tracking_stop(0x0020);
    EXPECT_EQ(report_of_pat({
                  {0, 0x0020}
    }),
              head + "      Network Info Table PID is 0x0020\n");
    EXPECT_EQ(type_of(0x0020), TRACK_NONE);
}

TEST_F(pat_nit, a_pmt_of_the_same_section_keeps_its_pid)
{
    EXPECT_EQ(report_of_pat({
                  {0, 0x0100},
                  {1, 0x0100}
    }),
              head + "      Network Info Table PID is 0x0100\n"
                     "      Program 0x0001: PMT PID is 0x0100\n"
                     "        First aware of, tracking program 0x0001\n"
                     "      Changed NIT tracking to PID 0x0100\n"
                     "!!! Unable to begin tracking the NIT\n");
    EXPECT_EQ(type_of(0x0100), TRACK_PMT);
}

TEST_F(pat_nit, a_pid_that_is_the_nits_already_is_taken_over)
{
    track(0x0020, TRACK_NIT, 5);
    EXPECT_EQ(report_of_pat({
                  {0, 0x0020}
    }),
              head + "      Network Info Table PID is 0x0020\n"
                     "      Changed NIT tracking to PID 0x0020\n");
    EXPECT_EQ(type_of(0x0020), TRACK_NIT);
    EXPECT_EQ(pid_tracking[0x0020].program_number, 0);
}

TEST_F(pat_nit, the_pmts_of_the_section_before_make_room_for_the_nit)
{
    report_of_pat({
        {1, 0x0100}
    });
    EXPECT_EQ(report_of_pat({
                  {0, 0x0100}
    }),
              head + "      Network Info Table PID is 0x0100\n"
                     "      Changed NIT tracking to PID 0x0100\n");
    EXPECT_EQ(type_of(0x0100), TRACK_NIT);
}

TEST_F(pat_nit, a_move_loses_what_was_collected_of_a_nit)
{
    const bytes nit =
        long_section(0x40, 1, join({hex("F0CA"), descriptor(0xFF, repeated(0, 200)), hex("F000")}));
    const bytes packets = stream_builder().section(0x0010, nit).data();
    report_of_packets(bytes(packets.begin(), packets.begin() + 188));
    report_of_pat({
        {0, 0x0020}
    });
    report_of_pat({});
    EXPECT_EQ(report_of_packets(bytes(packets.begin() + 188, packets.end())), "");
    EXPECT_EQ(report_of_packets(packets), "* Network Information Table\n"
                                          "        Unknown descriptor tag=0xff, len=200\n");
}
