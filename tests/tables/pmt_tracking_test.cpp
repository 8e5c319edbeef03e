#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/health/clocks.h"

struct pmt_tracking : report_test {
    pmt_tracking()
    {
        settings.dump_descriptors_mode = dump_descriptors_none;
        track(0x0100, TRACK_PMT, 1);
        program_clock_create(1, 0x0100);
    }

    std::string report_of_pmt(unsigned PCR_PID, const std::vector<pmt_stream> &streams,
                              section_fields fields = {}, unsigned pmt_pid = 0x0100)
    {
        return report_of_section(pmt_pid, pmt_section(1, PCR_PID, {}, streams, fields));
    }

    static uint16_t type_of(unsigned pid) { return pid_tracking[pid].type; }
};

namespace {

std::string head(const char *PCR_PID)
{
    return std::string("* Program Map Table\n"
                       "    Program ID:                       0x0001\n"
                       "    Version:                          0\n"
                       "    Section:                          0 / 0\n"
                       "    PCR PID:                          0x") +
           PCR_PID + "\n    Program info length:              0 bytes\n";
}

const std::string video_line =
    "    Stream type=0x02(ISO/IEC 13818-2 Video (MPEG-2)) PID=0x0101 es_info_length=0\n";
const std::string audio_line =
    "    Stream type=0x03(ISO/IEC 11172-3 Audio (MPEG)) PID=0x0101 es_info_length=0\n";
const std::string already_tracked = "    PCR is a stream already being tracked\n";

} // namespace

TEST_F(pmt_tracking, a_stream_belongs_to_the_program_of_the_pat)
{
    settings.assume_country = 0x3200;
    report_of_section(0x0100, pmt_section(0x7777, 0x0101,
                                          {
    },
                                          {{0x02, 0x0101, {}}}));
    const mpeg_ts_pid_tracking &t = pid_tracking[0x0101];
    EXPECT_EQ(t.program_number, 1);
    EXPECT_EQ(t.private_data_specifier, 0x3200u);
    EXPECT_EQ(t.last_version, 255);
    EXPECT_EQ(t.tbl_asm.buffer, nullptr);
}

TEST_F(pmt_tracking, only_splice_information_has_storage_for_sections)
{
    report_of_pmt(0x1FFF, {
                              {0x05, 0x0101, {}         },
                              {0x86, 0x0102, {}         },
                              {0x06, 0x0103, hex("5600")}
    });
    EXPECT_EQ(pid_tracking[0x0101].tbl_asm.buffer, nullptr);
    EXPECT_EQ(pid_tracking[0x0102].tbl_asm.fence - pid_tracking[0x0102].tbl_asm.buffer, 32768 + 128);
    EXPECT_EQ(pid_tracking[0x0103].tbl_asm.buffer, nullptr);
}

TEST_F(pmt_tracking, a_repeated_section_prints_everything_again_and_restarts_its_streams)
{
    const std::vector<pmt_stream> streams = {
        {0x02, 0x0101, {}},
        {0x86, 0x0102, {}}
    };
    const std::string expected = head("0101") + video_line +
                                 "    Now tracking PID 0x0101 type=0x0002\n"
                                 "    Stream type=0x86(SCTE-35) PID=0x0102 es_info_length=0\n"
                                 "    Now tracking PID 0x0102 type=0xfff7\n" +
                                 already_tracked;
    EXPECT_EQ(report_of_pmt(0x0101, streams), expected);
    pid_tracking[0x0101].last_version = 3;
    pid_tracking[0x0101].private_data_specifier = 0x28;
    EXPECT_EQ(report_of_pmt(0x0101, streams), expected);
    EXPECT_EQ(pid_tracking[0x0101].last_version, 255);
    EXPECT_EQ(pid_tracking[0x0101].private_data_specifier, 0u);
}

TEST_F(pmt_tracking, a_repeated_section_loses_what_was_collected_of_splice_information)
{
    const bytes splice = long_section(0xFD, 1, repeated(0, 300));
    const bytes packets = stream_builder().section(0x0102, splice).data();
    report_of_pmt(0x1FFF, {
                              {0x86, 0x0102, {}}
    });
    report_of_packets(bytes(packets.begin(), packets.begin() + 188));
    report_of_pmt(0x1FFF, {
                              {0x86, 0x0102, {}}
    });
    EXPECT_EQ(report_of_packets(bytes(packets.begin() + 188, packets.end())), "");
    EXPECT_EQ(report_of_packets(packets), "* SCTE-35 message [ANSI/SCTE-35] for program 0x0001\n"
                                          "    Table ID:                   0xfd\n"
                                          "    !!! Unknown table ID\n");
}

TEST_F(pmt_tracking, a_stream_that_changes_its_kind_is_refused)
{
    report_of_pmt(0x0101, {
                              {0x02, 0x0101, {}}
    });
    EXPECT_EQ(report_of_pmt(0x0101,
                            {
                                {0x03, 0x0101, {}}
    }),
              head("0101") + audio_line + "!!! Unable to begin tracking the stream PID 0x0101 type=0x0003\n" +
                  already_tracked);
    EXPECT_EQ(type_of(0x0101), 0x02);
}

TEST_F(pmt_tracking, a_stream_on_a_table_pid_is_refused)
{
    EXPECT_EQ(report_of_pmt(0x0100,
                            {
                                {0x02, 0x0100, {}}
    }),
              head("0100") +
                  "    Stream type=0x02(ISO/IEC 13818-2 Video (MPEG-2)) PID=0x0100 es_info_length=0\n"
                  "!!! Unable to begin tracking the stream PID 0x0100 type=0x0002\n" +
                  already_tracked);
    EXPECT_EQ(type_of(0x0100), TRACK_PMT);
}

TEST_F(pmt_tracking, streams_behind_a_refused_one_are_tracked)
{
    report_of_pmt(0x1FFF, {
                              {0x02, 0x0100, {}},
                              {0x03, 0x0102, {}}
    });
    EXPECT_EQ(type_of(0x0102), 0x03);
}

TEST_F(pmt_tracking, a_pid_of_two_programs_belongs_to_the_later_one_when_its_kind_is_the_same)
{
    track(0x0200, TRACK_PMT, 2);
    report_of_pmt(0x0101, {
                              {0x02, 0x0101, {}}
    });
    EXPECT_EQ(report_of_pmt(0x0101,
                            {
                                {0x02, 0x0101, {}}
    },
                            {}, 0x0200),
              head("0101") + video_line + "    Now tracking PID 0x0101 type=0x0002\n" + already_tracked);
    EXPECT_EQ(pid_tracking[0x0101].program_number, 2);
    EXPECT_EQ(report_of_pmt(0x0101,
                            {
                                {0x03, 0x0101, {}}
    },
                            {}, 0x0100),
              head("0101") + audio_line + "!!! Unable to begin tracking the stream PID 0x0101 type=0x0003\n" +
                  already_tracked);
    EXPECT_EQ(pid_tracking[0x0101].program_number, 2);
}

TEST_F(pmt_tracking, a_pid_listed_twice_in_one_section_is_started_twice)
{
    EXPECT_EQ(report_of_pmt(0x0101,
                            {
                                {0x02, 0x0101, {}},
                                {0x02, 0x0101, {}},
                                {0x03, 0x0101, {}}
    }),
              head("0101") + video_line + "    Now tracking PID 0x0101 type=0x0002\n" + video_line +
                  "    Now tracking PID 0x0101 type=0x0002\n" + audio_line +
                  "!!! Unable to begin tracking the stream PID 0x0101 type=0x0003\n" + already_tracked);
}

TEST_F(pmt_tracking, a_pcr_pid_of_its_own_is_tracked_as_pure_pcr)
{
    settings.assume_country = 0x3200;
    EXPECT_EQ(report_of_pmt(0x0105, {}),
              head("0105") + "    PCR not related to a stream, tracking PID 0x0105 as pure PCR\n");
    const mpeg_ts_pid_tracking &t = pid_tracking[0x0105];
    EXPECT_EQ(t.type, 0xFEFF);
    EXPECT_EQ(t.program_number, 1);
    EXPECT_EQ(t.private_data_specifier, 0x3200u);
    EXPECT_EQ(t.last_version, 255);
    EXPECT_EQ(t.tbl_asm.buffer, nullptr);
}

TEST_F(pmt_tracking, a_pure_pcr_pid_is_already_tracked_in_later_copies)
{
    report_of_pmt(0x0105, {});
    EXPECT_EQ(report_of_pmt(0x0105, {}), head("0105") + already_tracked);
    EXPECT_EQ(type_of(0x0105), TRACK_PURE_PCR);
}

TEST_F(pmt_tracking, no_pcr_pid_is_taken_as_it_stands)
{
    EXPECT_EQ(report_of_pmt(0x1FFF, {}),
              head("1fff") + "    PCR not related to a stream, tracking PID 0x1fff as pure PCR\n");
    EXPECT_EQ(type_of(0x1FFF), TRACK_PURE_PCR);
    EXPECT_EQ(program_clock_get(1)->pcr_pid, 0x1FFF);
}

TEST_F(pmt_tracking, a_stream_on_a_pure_pcr_pid_is_refused)
{
    report_of_pmt(0x0101, {});
    EXPECT_EQ(report_of_pmt(0x0101,
                            {
                                {0x02, 0x0101, {}}
    }),
              head("0101") + video_line + "!!! Unable to begin tracking the stream PID 0x0101 type=0x0002\n" +
                  already_tracked);
}

TEST_F(pmt_tracking, a_table_pid_counts_as_a_stream_already_tracked)
{
    EXPECT_EQ(report_of_pmt(0x0011, {}), head("0011") + already_tracked);
    EXPECT_EQ(type_of(0x0011), TRACK_SDT);
}

TEST_F(pmt_tracking, a_stream_type_of_0_is_announced_and_not_tracked)
{
    EXPECT_EQ(report_of_pmt(0x0101,
                            {
                                {0x00, 0x0101, {}}
    }),
              head("0101") + "    Stream type=0x00(ITU-T ISO/IEC Reserved) PID=0x0101 es_info_length=0\n"
                             "    Now tracking PID 0x0101 type=0x0000\n"
                             "    PCR not related to a stream, tracking PID 0x0101 as pure PCR\n");
}

TEST_F(pmt_tracking, a_stream_type_of_0_on_a_tracked_pid_is_refused)
{
    track(0x0101, 0x02);
    EXPECT_EQ(report_of_pmt(0x0101,
                            {
                                {0x00, 0x0101, {}}
    }),
              head("0101") +
                  "    Stream type=0x00(ITU-T ISO/IEC Reserved) PID=0x0101 es_info_length=0\n"
                  "!!! Unable to begin tracking the stream PID 0x0101 type=0x0000\n" +
                  already_tracked);
}

TEST_F(pmt_tracking, the_clock_of_the_program_learns_the_pcr_pid_and_the_version_is_stored)
{
    report_of_pmt(0x0101,
                  {
                      {0x02, 0x0101, {}}
    },
                  {9});
    EXPECT_EQ(program_clock_get(1)->pcr_pid, 0x0101);
    EXPECT_EQ(pid_tracking[0x0100].last_version, 9);
    report_of_pmt(0x0105,
                  {
                      {0x02, 0x0101, {}}
    },
                  {10});
    EXPECT_EQ(program_clock_get(1)->pcr_pid, 0x0105);
    EXPECT_EQ(pid_tracking[0x0100].last_version, 10);
}

TEST_F(pmt_tracking, a_section_that_is_not_current_leaves_clock_pcr_pid_and_version_alone)
{
    report_of_pmt(0x0101, {}, {9});
    report_of_pmt(0x0105, {}, {10, 0});
    EXPECT_EQ(program_clock_get(1)->pcr_pid, 0x0101);
    EXPECT_EQ(type_of(0x0105), TRACK_NONE);
    EXPECT_EQ(pid_tracking[0x0100].last_version, 9);
}

TEST_F(pmt_tracking, a_program_without_a_clock_is_handled_like_any_other)
{
    track(0x0200, TRACK_PMT, 2);
    EXPECT_EQ(report_of_pmt(0x0105, {}, {}, 0x0200),
              head("0105") + "    PCR not related to a stream, tracking PID 0x0105 as pure PCR\n");
    EXPECT_EQ(program_clock_get(2), nullptr);
    EXPECT_EQ(program_clock_get(1)->pcr_pid, 0);
    EXPECT_EQ(pid_tracking[0x0200].last_version, 0);
}
