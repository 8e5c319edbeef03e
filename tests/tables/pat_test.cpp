#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/health/clocks.h"

struct pat : report_test {
    static constexpr unsigned pat_pid = 0x0000;

    std::string report_of_pat(const std::vector<std::pair<unsigned, unsigned>> &programs,
                              section_fields fields = {})
    {
        return report_of_section(pat_pid, pat_section(0x1234, programs, fields));
    }

    static uint16_t type_of(unsigned pid) { return pid_tracking[pid].type; }
};

namespace {

const std::string head = "* Program Association Table\n"
                         "    Transport stream ID:              0x1234\n"
                         "    Version:                          0\n"
                         "    Section:                          0 / 0\n";

unsigned long storage_of(const mpeg_ts_pid_tracking &t)
{
    return static_cast<unsigned long>(t.tbl_asm.fence - t.tbl_asm.buffer);
}

} // namespace

TEST_F(pat, a_new_program_is_announced_and_its_pmt_tracked)
{
    settings.assume_country = 0x3200;
    EXPECT_EQ(report_of_pat({
                  {1, 0x0100}
    }),
              head + "      Program 0x0001: PMT PID is 0x0100\n"
                     "        First aware of, tracking program 0x0001\n");
    const mpeg_ts_pid_tracking &t = pid_tracking[0x0100];
    EXPECT_EQ(t.type, TRACK_PMT);
    EXPECT_EQ(t.program_number, 1);
    EXPECT_EQ(t.private_data_specifier, 0x3200u);
    EXPECT_EQ(t.last_version, 255);
    EXPECT_EQ(storage_of(t), 16384u + 128u);
    const program_clock *const clock = program_clock_get(1);
    ASSERT_NE(clock, nullptr);
    EXPECT_EQ(clock->program_number, 1);
    EXPECT_EQ(clock->pmt_pid, 0x0100);
    EXPECT_EQ(clock->pcr_pid, 0);
}

TEST_F(pat, version_and_section_are_printed_and_the_version_stored)
{
    EXPECT_EQ(report_of_pat({}, {31, 1, 254, 255}), "* Program Association Table\n"
                                                    "    Transport stream ID:              0x1234\n"
                                                    "    Version:                          31\n"
                                                    "    Section:                          254 / 255\n");
    EXPECT_EQ(pid_tracking[pat_pid].last_version, 31);
}

TEST_F(pat, a_section_that_is_not_current_prints_its_entries_and_changes_nothing)
{
    report_of_pat(
        {
            {1, 0x0100}
    },
        {4});
    EXPECT_EQ(report_of_pat(
                  {
                      {0, 0x0020},
                      {0, 0x0030},
                      {1, 0x0101},
                      {2, 0x0200}
    },
                  {5, 0}),
              "* Program Association Table [next]\n"
              "    Transport stream ID:              0x1234\n"
              "    Version:                          5\n"
              "    Section:                          0 / 0\n"
              "      Network Info Table PID is 0x0020\n"
              "      Network Info Table PID is 0x0030\n"
              "!!! PAT has more than one entry for the NIT\n"
              "      Program 0x0001: PMT PID is 0x0101\n"
              "      Program 0x0002: PMT PID is 0x0200\n");
    EXPECT_EQ(pid_tracking[pat_pid].last_version, 4);
    EXPECT_EQ(type_of(0x0100), TRACK_PMT);
    EXPECT_EQ(type_of(0x0101), TRACK_NONE);
    EXPECT_EQ(type_of(0x0200), TRACK_NONE);
    EXPECT_EQ(program_clock_get(1)->pmt_pid, 0x0100);
    EXPECT_EQ(program_clock_get(2), nullptr);
    EXPECT_EQ(current_nit_pid, 0x0010);
    EXPECT_EQ(type_of(0x0010), TRACK_NIT);
}

TEST_F(pat, a_reserved_bit_that_is_0_is_reported_and_the_entry_used)
{
    const auto report_of_entry = [this](const char *entry) {
        return report_of_section(pat_pid, long_section(0x00, 0x1234, hex(entry)));
    };
    EXPECT_EQ(report_of_entry("00010100"), head +
                                               "!!! PAT entry reserved bits contain a 0 bit [in 0x00010100]\n"
                                               "      Program 0x0001: PMT PID is 0x0100\n"
                                               "        First aware of, tracking program 0x0001\n");
    EXPECT_EQ(type_of(0x0100), TRACK_PMT);
    for (const char *entry : {"00016100", "0001a100", "0001c100"})
        EXPECT_EQ(report_of_entry(entry), head + "!!! PAT entry reserved bits contain a 0 bit [in 0x" +
                                              entry +
                                              "]\n"
                                              "      Program 0x0001: PMT PID is 0x0100\n");
    EXPECT_EQ(report_of_entry("0000C010"), head +
                                               "!!! PAT entry reserved bits contain a 0 bit [in 0x0000c010]\n"
                                               "      Network Info Table PID is 0x0010\n");
}

TEST_F(pat, an_empty_body_has_no_entries)
{
    EXPECT_EQ(report_of_pat({}), head);
}

TEST_F(pat, a_trailing_partial_entry_is_ignored)
{
    for (const char *rest : {"00", "0001", "000200"})
        EXPECT_EQ(report_of_section(pat_pid, long_section(0x00, 0x1234, join({hex("0000E010"), hex(rest)}))),
                  head + "      Network Info Table PID is 0x0010\n");
}

TEST_F(pat, program_number_and_pid_take_all_their_bits)
{
    EXPECT_EQ(report_of_pat({
                  {0xFFFF, 0x1FFE}
    }),
              head + "      Program 0xffff: PMT PID is 0x1ffe\n"
                     "        First aware of, tracking program 0xffff\n");
    EXPECT_EQ(type_of(0x1FFE), TRACK_PMT);
    EXPECT_EQ(pid_tracking[0x1FFE].program_number, 0xFFFF);
}

TEST_F(pat, a_program_that_is_known_is_not_announced_again)
{
    report_of_pat({
        {1, 0x0100}
    });
    EXPECT_EQ(report_of_pat({
                  {1, 0x0100}
    }),
              head + "      Program 0x0001: PMT PID is 0x0100\n");
    EXPECT_EQ(type_of(0x0100), TRACK_PMT);
}

TEST_F(pat, a_program_whose_pmt_moves_is_followed)
{
    report_of_pat({
        {1, 0x0100}
    });
    EXPECT_EQ(report_of_pat({
                  {1, 0x0101}
    }),
              head + "      Program 0x0001: PMT PID is 0x0101\n"
                     "     Program 0x0001 changed PMT PID from 0x0100 to 0x0101\n");
    EXPECT_EQ(type_of(0x0100), TRACK_NONE);
    EXPECT_EQ(type_of(0x0101), TRACK_PMT);
    EXPECT_EQ(program_clock_get(1)->pmt_pid, 0x0101);
    EXPECT_EQ(report_of_pat({
                  {1, 0x0101}
    }),
              head + "      Program 0x0001: PMT PID is 0x0101\n");
}

TEST_F(pat, a_program_listed_twice_in_one_section_is_followed_on_both_pids)
{
    EXPECT_EQ(report_of_pat({
                  {1, 0x0100},
                  {1, 0x0101}
    }),
              head + "      Program 0x0001: PMT PID is 0x0100\n"
                     "        First aware of, tracking program 0x0001\n"
                     "      Program 0x0001: PMT PID is 0x0101\n"
                     "     Program 0x0001 changed PMT PID from 0x0100 to 0x0101\n");
    EXPECT_EQ(type_of(0x0100), TRACK_PMT);
    EXPECT_EQ(type_of(0x0101), TRACK_PMT);
    EXPECT_EQ(program_clock_get(1)->pmt_pid, 0x0101);
}

TEST_F(pat, two_programs_may_share_a_pmt_pid_and_the_later_one_has_it)
{
    EXPECT_EQ(report_of_pat({
                  {1, 0x0100},
                  {2, 0x0100}
    }),
              head + "      Program 0x0001: PMT PID is 0x0100\n"
                     "        First aware of, tracking program 0x0001\n"
                     "      Program 0x0002: PMT PID is 0x0100\n"
                     "        First aware of, tracking program 0x0002\n");
    EXPECT_EQ(pid_tracking[0x0100].program_number, 2);
}

TEST_F(pat, a_pmt_pid_that_carries_something_else_cannot_be_tracked)
{
    track(0x0100, 0x02, 7);
    for (const unsigned pid : {0x0000u, 0x0010u, 0x0011u, 0x0012u, 0x0100u, 0x1FFBu}) {
        const uint16_t type = type_of(pid);
        report_of_pat({
            {1, pid}
        });
        char line[64];
        snprintf(line, sizeof line, "      Program 0x0001: PMT PID is 0x%04x\n", pid);
        EXPECT_EQ(report_of_pat({
                      {1, pid}
        }),
                  head + line + "!!! Unable to begin tracking the PMT\n");
        EXPECT_EQ(type_of(pid), type);
        EXPECT_EQ(program_clock_get(1)->pmt_pid, pid);
    }
    EXPECT_EQ(pid_tracking[0x0100].program_number, 7);
}

TEST_F(pat, the_walk_goes_on_behind_a_pmt_that_cannot_be_tracked)
{
    track(0x0100, 0x02);
    EXPECT_EQ(report_of_pat({
                  {1, 0x0100},
                  {2, 0x0200}
    }),
              head + "      Program 0x0001: PMT PID is 0x0100\n"
                     "        First aware of, tracking program 0x0001\n"
                     "!!! Unable to begin tracking the PMT\n"
                     "      Program 0x0002: PMT PID is 0x0200\n"
                     "        First aware of, tracking program 0x0002\n");
    EXPECT_EQ(type_of(0x0200), TRACK_PMT);
}

TEST_F(pat, a_current_section_stops_the_pmts_of_pids_0x0010_to_0x1ffe)
{
    mpeg_ts_pid_tracking_stop(0x0010);
    for (const unsigned pid : {0x000Fu, 0x0010u, 0x0100u, 0x1FFEu, 0x1FFFu}) track(pid, TRACK_PMT, 3);
    track(0x0101, 0x02, 3);
    track(0x0102, TRACK_SCTE35, 3);
    report_of_pat({});
    EXPECT_EQ(type_of(0x000F), TRACK_PMT);
    EXPECT_EQ(type_of(0x0010), TRACK_NONE);
    EXPECT_EQ(type_of(0x0100), TRACK_NONE);
    EXPECT_EQ(pid_tracking[0x0100].program_number, 0);
    EXPECT_EQ(pid_tracking[0x0100].tbl_asm.buffer, nullptr);
    EXPECT_EQ(type_of(0x0101), 0x02);
    EXPECT_EQ(type_of(0x0102), TRACK_SCTE35);
    EXPECT_EQ(type_of(0x1FFE), TRACK_NONE);
    EXPECT_EQ(type_of(0x1FFF), TRACK_PMT);
}

TEST_F(pat, of_several_sections_the_last_has_its_pmts_tracked)
{
    report_of_pat(
        {
            {1, 0x0100}
    },
        {0, 1, 0, 1});
    EXPECT_EQ(report_of_pat(
                  {
                      {2, 0x0200}
    },
                  {0, 1, 1, 1}),
              "* Program Association Table\n"
              "    Transport stream ID:              0x1234\n"
              "    Version:                          0\n"
              "    Section:                          1 / 1\n"
              "      Program 0x0002: PMT PID is 0x0200\n"
              "        First aware of, tracking program 0x0002\n");
    EXPECT_EQ(type_of(0x0100), TRACK_NONE);
    EXPECT_EQ(type_of(0x0200), TRACK_PMT);
    EXPECT_NE(program_clock_get(1), nullptr);
    EXPECT_EQ(report_of_pat({
                  {1, 0x0100}
    }),
              head + "      Program 0x0001: PMT PID is 0x0100\n");
    EXPECT_EQ(type_of(0x0100), TRACK_PMT);
    EXPECT_EQ(type_of(0x0200), TRACK_NONE);
}

TEST_F(pat, a_program_keeps_its_clock_when_it_is_listed_no_longer)
{
    report_of_pat({
        {1, 0x0100}
    });
    program_clock_get(1)->pcr_pid = 0x0123;
    report_of_pat({});
    ASSERT_NE(program_clock_get(1), nullptr);
    EXPECT_EQ(program_clock_get(1)->pcr_pid, 0x0123);
    EXPECT_EQ(program_clock_get(1)->pmt_pid, 0x0100);
}

TEST_F(pat, a_repeated_section_forgets_the_specifier_and_version_of_a_pmt_pid)
{
    report_of_pat({
        {1, 0x0100}
    });
    pid_tracking[0x0100].private_data_specifier = 0x28;
    pid_tracking[0x0100].last_version = 3;
    report_of_pat({
        {1, 0x0100}
    });
    EXPECT_EQ(pid_tracking[0x0100].private_data_specifier, 0u);
    EXPECT_EQ(pid_tracking[0x0100].last_version, 255);
}

TEST_F(pat, a_section_inside_a_pmt_loses_what_was_collected_of_it)
{
    const bytes stuffing_descriptor = descriptor(0xFF, repeated(0, 200));
    const bytes pmt = pmt_section(1, 0x1FFF, stuffing_descriptor, {});
    const bytes pmt_packets = stream_builder().section(0x0100, pmt).data();
    ASSERT_EQ(pmt_packets.size(), 2u * 188u);
    const bytes first(pmt_packets.begin(), pmt_packets.begin() + 188);
    const bytes second(pmt_packets.begin() + 188, pmt_packets.end());
    const bytes program_association = stream_builder()
                                          .section(0, pat_section(0x1234,
                                                                  {
                                                                      {1, 0x0100}
    }))
                                          .data();

    report_of_packets(program_association);
    EXPECT_EQ(report_of_packets(join({first, program_association, second})),
              head + "      Program 0x0001: PMT PID is 0x0100\n");
    EXPECT_EQ(report_of_packets(pmt_packets),
              "* Program Map Table\n"
              "    Program ID:                       0x0001\n"
              "    Version:                          0\n"
              "    Section:                          0 / 0\n"
              "    PCR PID:                          0x1fff\n"
              "    Program info length:              202 bytes\n"
              "        Unknown descriptor tag=0xff, len=200\n"
              "    PCR not related to a stream, tracking PID 0x1fff as pure PCR\n");
}

TEST_F(pat, a_section_that_is_not_current_leaves_a_pmt_in_collection_alone)
{
    const bytes pmt = pmt_section(1, 0x1FFF, descriptor(0xFF, repeated(0, 200)), {});
    const bytes pmt_packets = stream_builder().section(0x0100, pmt).data();
    report_of_pat({
        {1, 0x0100}
    });
    report_of_packets(bytes(pmt_packets.begin(), pmt_packets.begin() + 188));
    report_of_pat(
        {
            {1, 0x0100}
    },
        {1, 0});
    EXPECT_EQ(report_of_packets(bytes(pmt_packets.begin() + 188, pmt_packets.end())),
              "* Program Map Table\n"
              "    Program ID:                       0x0001\n"
              "    Version:                          0\n"
              "    Section:                          0 / 0\n"
              "    PCR PID:                          0x1fff\n"
              "    Program info length:              202 bytes\n"
              "        Unknown descriptor tag=0xff, len=200\n"
              "    PCR not related to a stream, tracking PID 0x1fff as pure PCR\n");
}

TEST_F(pat, the_dump_modes_do_not_matter)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_pat({
                  {0, 0x0010}
    }),
              head + "      Network Info Table PID is 0x0010\n");
    settings.dump_descriptors_mode = dump_descriptors_raw;
    settings.dump_ts_mode = dump_ts_contents;
    EXPECT_EQ(report_of_pat({
                  {0, 0x0010}
    }),
              head + "      Network Info Table PID is 0x0010\n");
}
