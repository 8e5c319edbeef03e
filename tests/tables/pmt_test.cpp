#include "tests/support/report_test.h"

struct pmt : report_test {
    pmt() { track(pmt_pid, TRACK_PMT, 1); }

    static constexpr unsigned pmt_pid = 0x0100;

    std::string report_of_pmt(const bytes &section) { return report_of_section(pmt_pid, section); }
};

namespace {

/// The lines ahead of the streams, for program 1 and the PCR PID 0x0101.
std::string head(unsigned program_info_length = 0)
{
    return "* Program Map Table\n"
           "    Program ID:                       0x0001\n"
           "    Version:                          0\n"
           "    Section:                          0 / 0\n"
           "    PCR PID:                          0x0101\n"
           "    Program info length:              " +
           std::to_string(program_info_length) + " bytes\n";
}

const std::string pcr_line = "    PCR is a stream already being tracked\n";
const std::string video_lines =
    "    Stream type=0x02(ISO/IEC 13818-2 Video (MPEG-2)) PID=0x0101 es_info_length=0\n"
    "    Now tracking PID 0x0101 type=0x0002\n";

} // namespace

TEST_F(pmt, prints_the_program_its_streams_and_what_is_tracked)
{
    EXPECT_EQ(report_of_pmt(pmt_section(1, 0x0101,
                                        {
    },
                                        {{0x02, 0x0101, {}}, {0x03, 0x0102, {}}})),
              head() + video_lines +
                  "\n"
                  "    Stream type=0x03(ISO/IEC 11172-3 Audio (MPEG)) PID=0x0102 es_info_length=0\n"
                  "    Now tracking PID 0x0102 type=0x0003\n"
                  "\n" +
                  pcr_line);
}

TEST_F(pmt, prints_all_bits_of_the_header)
{
    EXPECT_EQ(report_of_pmt(pmt_section(0xFFFE, 0x1FFE, {}, {}, {31, 1, 7, 8})),
              "* Program Map Table\n"
              "    Program ID:                       0xfffe\n"
              "    Version:                          31\n"
              "    Section:                          7 / 8\n"
              "    PCR PID:                          0x1ffe\n"
              "    Program info length:              0 bytes\n"
              "    PCR not related to a stream, tracking PID 0x1ffe as pure PCR\n");
}

TEST_F(pmt, the_reserved_bits_do_not_matter)
{
    EXPECT_EQ(report_of_pmt(long_section(0x02, 1, hex("0101 0000 02 0101 0000"))),
              head() + video_lines + "\n" + pcr_line);
}

TEST_F(pmt, descriptors_are_printed_where_they_belong)
{
    EXPECT_EQ(
        report_of_pmt(pmt_section(1, 0x0101, hex("FF 01 AA"),
                                  {
                                      {0x02, 0x0101, hex("FE 02 0102")},
                                      {0x03, 0x0102, hex("FD 00")     }
    })),
        head(3) +
            "        Unknown descriptor tag=0xff, len=1\n"
            "    Stream type=0x02(ISO/IEC 13818-2 Video (MPEG-2)) PID=0x0101 es_info_length=4\n"
            "        Unknown descriptor tag=0xfe, len=2\n"
            "    Now tracking PID 0x0101 type=0x0002\n"
            "\n"
            "    Stream type=0x03(ISO/IEC 11172-3 Audio (MPEG)) PID=0x0102 es_info_length=2\n"
            "        Unknown descriptor tag=0xfd, len=0\n"
            "    Now tracking PID 0x0102 type=0x0003\n"
            "\n" +
            pcr_line);
}

TEST_F(pmt, the_raw_mode_follows_each_descriptor_with_its_bytes)
{
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of_pmt(pmt_section(1, 0x0101, hex("FF 01 AA"),
                                        {
                                            {0x02, 0x0101, hex("FE 02 0102")}
    })),
              head(3) +
                  "        Unknown descriptor tag=0xff, len=1\n"
                  "        TAG 0xff LEN 01:\n"
                  "            0xaa \n"
                  "    Stream type=0x02(ISO/IEC 13818-2 Video (MPEG-2)) PID=0x0101 es_info_length=4\n"
                  "        Unknown descriptor tag=0xfe, len=2\n"
                  "        TAG 0xfe LEN 02:\n"
                  "            0x01 0x02 \n"
                  "    Now tracking PID 0x0101 type=0x0002\n"
                  "\n" +
                  pcr_line);
}

TEST_F(pmt, without_descriptor_contents_no_empty_line_follows_a_stream)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of_pmt(pmt_section(1, 0x0101, hex("FF 01 AA"),
                                        {
                                            {0x02, 0x0101, {}}
    })),
              head(3) + video_lines + pcr_line);
}

TEST_F(pmt, the_packet_dump_has_the_empty_line_even_without_descriptor_contents)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    for (const uint8_t mode : {dump_ts_header, dump_ts_contents}) {
        settings.dump_ts_mode = mode;
        EXPECT_EQ(report_of_pmt(pmt_section(1, 0x0101,
                                            {
        },
                                            {{0x02, 0x0101, {}}})),
                  head() + video_lines + "\n" + pcr_line);
    }
}

TEST_F(pmt, the_empty_line_follows_a_stream_that_cannot_be_tracked_too)
{
    EXPECT_EQ(report_of_pmt(pmt_section(1, 0x0101,
                                        {
    },
                                        {{0x02, 0x0011, {}}, {0x02, 0x0101, {}}})),
              head() +
                  "    Stream type=0x02(ISO/IEC 13818-2 Video (MPEG-2)) PID=0x0011 es_info_length=0\n"
                  "!!! Unable to begin tracking the stream PID 0x0011 type=0x0002\n"
                  "\n" +
                  video_lines + "\n" + pcr_line);
}

TEST_F(pmt, a_section_that_is_not_current_is_printed_and_starts_nothing)
{
    const bytes section = pmt_section(1, 0x0101, hex("FF 00"),
                                      {
                                          {0x02, 0x0101, hex("FE 00")},
                                          {0x86, 0x0102, {}          }
    },
                                      {5, 0});
    const std::string next_head = "* Program Map Table [next]\n"
                                  "    Program ID:                       0x0001\n"
                                  "    Version:                          5\n"
                                  "    Section:                          0 / 0\n"
                                  "    PCR PID:                          0x0101\n"
                                  "    Program info length:              2 bytes\n";
    EXPECT_EQ(report_of_pmt(section),
              next_head + "        Unknown descriptor tag=0xff, len=0\n"
                          "    Stream type=0x02(ISO/IEC 13818-2 Video (MPEG-2)) PID=0x0101 es_info_length=2\n"
                          "        Unknown descriptor tag=0xfe, len=0\n"
                          "\n"
                          "    Stream type=0x86(SCTE-35) PID=0x0102 es_info_length=0\n"
                          "\n");
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0101), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0102), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(pmt_pid)->last_version, 255);

    settings.dump_descriptors_mode = dump_descriptors_none;
    const std::string stream_lines =
        "    Stream type=0x02(ISO/IEC 13818-2 Video (MPEG-2)) PID=0x0101 es_info_length=2\n";
    EXPECT_EQ(report_of_pmt(section),
              next_head + stream_lines + "    Stream type=0x86(SCTE-35) PID=0x0102 es_info_length=0\n");
    settings.dump_ts_mode = dump_ts_header;
    EXPECT_EQ(report_of_pmt(section), next_head + stream_lines +
                                          "\n"
                                          "    Stream type=0x86(SCTE-35) PID=0x0102 es_info_length=0\n"
                                          "\n");
}

TEST_F(pmt, a_body_that_cannot_be_parsed_is_reported_and_its_version_stored)
{
    const std::string failure = "    Program ID:                       0x0001\n"
                                "    Version:                          6\n"
                                "    Section:                          0 / 0\n"
                                "!!! Failed to parse PMT header\n";
    for (const char *body : {"", "E1", "E101", "E101 F0", "E101 F001", "E101 FFFF 00", "E101 F003 FF00"}) {
        EXPECT_EQ(report_of_pmt(long_section(0x02, 1, hex(body), {6, 0})),
                  "* Program Map Table [next]\n" + failure)
            << body;
        EXPECT_EQ(mpeg_ts_pid_tracking_get(pmt_pid)->last_version, 255) << body;
    }
    for (const char *body : {"", "E1", "E101", "E101 F0", "E101 F001", "E101 FFFF 00", "E101 F003 FF00"}) {
        mpeg_ts_pid_tracking_get(pmt_pid)->last_version = 255;
        EXPECT_EQ(report_of_pmt(long_section(0x02, 1, hex(body), {6})), "* Program Map Table\n" + failure)
            << body;
        EXPECT_EQ(mpeg_ts_pid_tracking_get(pmt_pid)->last_version, 6) << body;
        EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0101), nullptr) << body;
    }
}

TEST_F(pmt, a_stream_that_does_not_fit_ends_the_list)
{
    for (const char *rest : {"", "03", "03 E102 F0", "03 E102 F001", "03 E102 FFFF FF00"})
        EXPECT_EQ(report_of_pmt(long_section(0x02, 1, join({hex("E101 F000 02 E101 F000"), hex(rest)}))),
                  head() + video_lines + "\n" + pcr_line)
            << rest;
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0102), nullptr);
}

TEST_F(pmt, streams_beyond_the_16th_are_left_out)
{
    std::vector<pmt_stream> streams;
    std::string stream_lines;
    for (unsigned i = 0; i < 20; ++i) {
        streams.push_back({0x03, 0x0201 + i, {}});
        if (i >= 16) continue;
        char lines[160];
        snprintf(lines, sizeof lines,
                 "    Stream type=0x03(ISO/IEC 11172-3 Audio (MPEG)) PID=0x%04x es_info_length=0\n"
                 "    Now tracking PID 0x%04x type=0x0003\n\n",
                 0x0201 + i, 0x0201 + i);
        stream_lines += lines;
    }
    EXPECT_EQ(report_of_pmt(pmt_section(1, 0x0101, {}, streams)),
              head() + stream_lines + "    PCR not related to a stream, tracking PID 0x0101 as pure PCR\n");
    EXPECT_NE(mpeg_ts_pid_tracking_get(0x0210), nullptr);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0211), nullptr);
}

TEST_F(pmt, dolby_digital_has_no_name_when_the_atsc_mode_is_off)
{
    const bytes section = pmt_section(1, 0x0101,
                                      {
    },
                                      {{0x81, 0x0101, {}}, {0x86, 0x0102, {}}});
    const std::string named = "    Stream type=0x81(Dolby Digital AC-3) PID=0x0101 es_info_length=0\n"
                              "    Now tracking PID 0x0101 type=0x0081\n"
                              "\n"
                              "    Stream type=0x86(SCTE-35) PID=0x0102 es_info_length=0\n"
                              "    Now tracking PID 0x0102 type=0xfff7\n"
                              "\n";
    const std::string nameless = "    Stream type=0x81(?) PID=0x0101 es_info_length=0\n"
                                 "    Now tracking PID 0x0101 type=0x0081\n"
                                 "\n"
                                 "    Stream type=0x86(?) PID=0x0102 es_info_length=0\n"
                                 "    Now tracking PID 0x0102 type=0xfff7\n"
                                 "\n";
    EXPECT_EQ(report_of_pmt(section), head() + named + pcr_line);
    settings.atsc_mode = 0;
    EXPECT_EQ(report_of_pmt(section), head() + nameless + pcr_line);
    settings.atsc_mode = 1;
    EXPECT_EQ(report_of_pmt(section), head() + named + pcr_line);
}

TEST_F(pmt, a_private_data_specifier_of_the_program_info_holds_for_the_streams)
{
    EXPECT_EQ(report_of_pmt(pmt_section(1, 0x0101, hex("5F 04 00003200"),
                                        {
                                            {0x02, 0x0101, hex("83 00")}
    })),
              head(6) +
                  "        private_data_specifier_descriptor() [DVB A38 6.2.31]\n"
                  "            private_data_specifier=0x00003200\n"
                  "    Stream type=0x02(ISO/IEC 13818-2 Video (MPEG-2)) PID=0x0101 es_info_length=2\n"
                  "        logical_channel_descriptor() [Australia: Free TV OP 41 LCN Descriptor]\n"
                  "    Now tracking PID 0x0101 type=0x0002\n"
                  "\n" +
                  pcr_line);
    EXPECT_EQ(mpeg_ts_pid_tracking_get(0x0101)->private_data_specifier, 0u);
}
