#include "tests/support/report_test.h"

struct pmt_kinds : report_test {
    pmt_kinds() { track(0x0100, TRACK_PMT, 1); }

    /// What a stream on PID 0x0101 is tracked as.
    uint16_t kind_of(unsigned stream_type, const bytes &ES_info = {})
    {
        mpeg_ts_pid_tracking_stop(0x0101);
        report_of_section(0x0100, pmt_section(1, 0x1FFF,
                                              {
        },
                                              {{stream_type, 0x0101, ES_info}}));
        return pid_tracking[0x0101].type;
    }

    /// The BDMV and the ATSC mode after a PMT with this program_info.
    std::pair<int, int> modes_after(const bytes &program_info, unsigned current_next_indicator = 1)
    {
        report_of_section(0x0100, pmt_section(1, 0x1FFF, program_info, {}, {0, current_next_indicator}));
        return {settings.bdmv_mode, settings.atsc_mode};
    }

    void expect_no_detection(const bytes &program_info)
    {
        settings.bdmv_mode = -1;
        settings.atsc_mode = -1;
        EXPECT_EQ(modes_after(program_info), std::pair(-1, -1));
    }
};

namespace {

const bytes registration_as_HDMV = hex("05 04 48444D56");

} // namespace

TEST_F(pmt_kinds, a_stream_is_tracked_as_its_stream_type)
{
    for (unsigned stream_type = 0; stream_type <= 0xFF; ++stream_type)
        EXPECT_EQ(kind_of(stream_type), stream_type == 0x86 ? 0xFFF7 : stream_type);
}

TEST_F(pmt_kinds, splice_information_is_tracked_whatever_the_atsc_mode)
{
    for (const int mode : {-1, 0, 1}) {
        settings.atsc_mode = mode;
        EXPECT_EQ(kind_of(0x86), 0xFFF7);
    }
}

TEST_F(pmt_kinds, private_pes_packets_are_told_apart_by_their_descriptors)
{
    EXPECT_EQ(kind_of(0x06, hex("56 00")), 0xFEFE);
    EXPECT_EQ(kind_of(0x06, hex("56 05 656E67 0900")), 0xFEFE);
    EXPECT_EQ(kind_of(0x06, hex("6A 01 00")), 0xFEFD);
    EXPECT_EQ(kind_of(0x06, hex("52 01 00 59 00")), 0x0006);
}

TEST_F(pmt_kinds, of_a_teletext_and_an_ac3_descriptor_the_first_decides)
{
    EXPECT_EQ(kind_of(0x06, hex("56 00 6A 01 00")), 0xFEFE);
    EXPECT_EQ(kind_of(0x06, hex("6A 01 00 56 00")), 0xFEFD);
    EXPECT_EQ(kind_of(0x06, hex("52 01 56 6A 01 00 56 00")), 0xFEFD);
    EXPECT_EQ(kind_of(0x06, hex("52 01 6A 56 00 6A 01 00")), 0xFEFE);
}

TEST_F(pmt_kinds, a_descriptor_that_does_not_lie_wholly_inside_ends_the_search)
{
    EXPECT_EQ(kind_of(0x06, hex("56")), 0x0006);
    EXPECT_EQ(kind_of(0x06, hex("56 01")), 0x0006);
    EXPECT_EQ(kind_of(0x06, hex("6A 05 00000000")), 0x0006);
    EXPECT_EQ(kind_of(0x06, hex("52 03 56 00")), 0x0006);
    EXPECT_EQ(kind_of(0x06, hex("52 00 6A 01 00 FF 10")), 0xFEFD);
}

TEST_F(pmt_kinds, the_descriptors_matter_for_private_pes_packets_only)
{
    EXPECT_EQ(kind_of(0x02, hex("56 00")), 0x0002);
    EXPECT_EQ(kind_of(0x05, hex("6A 01 00")), 0x0005);
    EXPECT_EQ(kind_of(0x86, hex("56 00")), 0xFFF7);
}

TEST_F(pmt_kinds, teletext_prints_its_kind)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_section(0x0100, pmt_section(1, 0x0101,
                                                    {
    },
                                                    {{0x06, 0x0101, hex("56 00")},
                                                     {0x06, 0x0102, hex("6A 01 00")},
                                                     {0x06, 0x0103, {}}})),
              "* Program Map Table\n"
              "    Program ID:                       0x0001\n"
              "    Version:                          0\n"
              "    Section:                          0 / 0\n"
              "    PCR PID:                          0x0101\n"
              "    Program info length:              0 bytes\n"
              "    Stream type=0x06(ISO/IEC 13818-1 PES packets containing private data) PID=0x0101 "
              "es_info_length=2\n"
              "    Now tracking PID 0x0101 type=0xfefe\n"
              "    Stream type=0x06(ISO/IEC 13818-1 PES packets containing private data) PID=0x0102 "
              "es_info_length=3\n"
              "    Now tracking PID 0x0102 type=0xfefd\n"
              "    Stream type=0x06(ISO/IEC 13818-1 PES packets containing private data) PID=0x0103 "
              "es_info_length=0\n"
              "    Now tracking PID 0x0103 type=0x0006\n"
              "    PCR is a stream already being tracked\n");
}

TEST_F(pmt_kinds, a_program_registered_as_HDMV_is_blu_ray_and_has_the_atsc_names)
{
    EXPECT_EQ(modes_after(registration_as_HDMV), std::pair(1, 1));
}

TEST_F(pmt_kinds, modes_that_are_known_stay_as_they_are)
{
    settings.bdmv_mode = 0;
    EXPECT_EQ(modes_after(registration_as_HDMV), std::pair(0, 1));
    settings.bdmv_mode = -1;
    settings.atsc_mode = 0;
    EXPECT_EQ(modes_after(registration_as_HDMV), std::pair(1, 0));
}

TEST_F(pmt_kinds, the_registration_may_be_longer_and_stand_behind_others)
{
    EXPECT_EQ(modes_after(hex("05 04 43554549 88 00 05 06 48444D56 FF1B")), std::pair(1, 1));
}

TEST_F(pmt_kinds, a_section_that_is_not_current_tells_too)
{
    EXPECT_EQ(modes_after(registration_as_HDMV, 0), std::pair(1, 1));
}

TEST_F(pmt_kinds, other_descriptors_do_not_tell)
{
    expect_no_detection({});
    expect_no_detection(hex("05 03 48444D"));
    expect_no_detection(hex("05 04 48444D57"));
    expect_no_detection(hex("06 04 48444D56"));
    expect_no_detection(hex("05 05 00 48444D56"));
}

TEST_F(pmt_kinds, a_descriptor_that_runs_past_the_program_info_ends_the_search)
{
    expect_no_detection(hex("05 05 48444D56"));
    expect_no_detection(hex("88 07 05 04 48444D56"));
    expect_no_detection(hex("05"));
}

TEST_F(pmt_kinds, a_registration_of_a_stream_does_not_tell)
{
    kind_of(0x1B, registration_as_HDMV);
    EXPECT_EQ(settings.bdmv_mode, -1);
    EXPECT_EQ(settings.atsc_mode, -1);
}

TEST_F(pmt_kinds, the_atsc_descriptors_are_known_from_the_registration_on)
{
    const std::string head = "* Program Map Table\n"
                             "    Program ID:                       0x0001\n"
                             "    Version:                          0\n"
                             "    Section:                          0 / 0\n"
                             "    PCR PID:                          0x1fff\n";
    const std::string pcr_line = "    PCR not related to a stream, tracking PID 0x1fff as pure PCR\n";
    EXPECT_EQ(report_of_section(0x0100, pmt_section(1, 0x1FFF, hex("AA 00"), {})),
              head +
                  "    Program info length:              2 bytes\n"
                  "        Unknown descriptor tag=0xaa, len=0\n" +
                  pcr_line);
    // The search comes first: the descriptor ahead of the registration is known already.
    EXPECT_EQ(
        report_of_section(0x0100, pmt_section(1, 0x1FFF, join({hex("AA 00"), registration_as_HDMV}), {})),
        head + "    Program info length:              8 bytes\n"
               "        rc_descriptor() [ATSC A/65:2009 6.9.7]\n"
               "        registration_descriptor() [ISO/IEC 13818-1 2.6.8]\n"
               "            format_identifier=0x48444d56 'HDMV'\n"
               "    PCR is a stream already being tracked\n");
}
