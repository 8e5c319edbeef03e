#include "tests/support/report_test.h"

#include <string>

struct pcr_of_streams : report_test {
    pcr_of_streams()
    {
        settings.packet_size_mode = 0;
        settings.ts_bitrate = 1504; // a packet a second
        settings.max_pcr_interval = 10.0;
    }

    /// The lines of a run that are about programs' PCRs.
    std::string PCR_lines_of(const stream_builder &stream)
    {
        const std::string text = report_of_run(stream.data());
        std::string lines;
        for (size_t start = 0, end = 0; (end = text.find('\n', start)) != std::string::npos;
             start = end + 1) {
            const std::string line = text.substr(start, end + 1 - start);
            if (line.find("Program 0x") != std::string::npos && line.find(" TS ") != std::string::npos)
                lines += line;
        }
        return lines;
    }

    /// Packets 0 to 2: a PAT of programs 1 and 2 and their PMTs.
    static stream_builder two_programs(unsigned first_PCR_PID)
    {
        stream_builder stream;
        stream.section(0, pat_section(1, {
                                             {1, 0x100},
                                             {2, 0x200}
        }));
        stream.section(0x100, pmt_section(1, first_PCR_PID,
                                          {
        },
                                          {{0x02, 0x101, {}}, {0x04, 0x102, {}}}));
        stream.section(0x200, pmt_section(2, 0x201,
                                          {
        },
                                          {{0x02, 0x202, {}}}));
        return stream;
    }

    static constexpr unsigned long long second = 27000000;
};

TEST_F(pcr_of_streams, PCRs_are_followed_from_the_PMT_on)
{
    stream_builder stream;
    stream
        .section(0, pat_section(1,
                                {
                                    {1, 0x100}
    }))
        .pcr(0x101, 0);
    stream.section(0x100, pmt_section(1, 0x101, {}, {})).pcr(0x101, 9 * second).pcr(0x101, 30 * second);
    EXPECT_EQ(PCR_lines_of(stream), "* Program 0x0001 PCR initial lock at TS 3.000000 PCR 9.000000\n"
                                    "* Program 0x0001 PCR reset/jump forward at TS 4.000000 PCR 30.000000\n");
}

TEST_F(pcr_of_streams, each_program_is_analysed_by_its_own_clock)
{
    settings.dump_pcr_analysis = true;
    stream_builder stream = two_programs(0x101);
    stream.pcr(0x101, second).pcr(0x201, 50 * second).pcr(0x102, 3 * second).pcr(0x202, 52 * second);
    EXPECT_EQ(PCR_lines_of(stream),
              "* Program 0x0001 PCR initial lock at TS 3.000000 PCR 1.000000\n"
              "* Program 0x0002 PCR initial lock at TS 4.000000 PCR 50.000000\n"
              "* Program 0x0001 TS 5.000000 PCR error=0.000000000ns interval_from_last_PCR=2.000000\n"
              "* Program 0x0002 TS 6.000000 PCR error=0.000000000ns interval_from_last_PCR=2.000000\n");
}

TEST_F(pcr_of_streams, a_focus_hides_the_error_and_jump_lines_of_the_other_program)
{
    settings.dump_pcr_analysis = true;
    settings.program_focus = 2;
    settings.max_pcr_interval = 1.5;
    stream_builder stream = two_programs(0x101);
    stream.pcr(0x101, second).pcr(0x201, 50 * second).pcr(0x101, 33 * second).pcr(0x201, 82 * second);
    EXPECT_EQ(
        PCR_lines_of(stream),
        "* Program 0x0001 PCR initial lock at TS 3.000000 PCR 1.000000\n"
        "* Program 0x0002 PCR initial lock at TS 4.000000 PCR 50.000000\n"
        "!!! Program 0x0001 TS 5.000000 Too much time between PCR timestamps (2000.000ms > 1500.000ms)\n"
        "* Program 0x0002 TS 6.000000 PCR error=30000000000.000000000ns interval_from_last_PCR=2.000000\n"
        "!!! Program 0x0002 TS 6.000000 Too much time between PCR timestamps (2000.000ms > 1500.000ms)\n"
        "* Program 0x0002 PCR reset/jump forward at TS 6.000000 PCR 82.000000\n");
}

TEST_F(pcr_of_streams, a_program_whose_PCR_PID_is_0_is_never_analysed)
{
    settings.dump_pcr_analysis = true;
    stream_builder stream = two_programs(0);
    stream.pcr(0x101, second).pcr(0x102, 2 * second).pcr(0x201, 3 * second);
    EXPECT_EQ(PCR_lines_of(stream), "* Program 0x0002 PCR initial lock at TS 5.000000 PCR 3.000000\n");
}

TEST_F(pcr_of_streams, a_PCR_PID_of_0x1FFF_leaves_the_PCRs_of_the_streams)
{
    stream_builder stream = two_programs(0x1FFF);
    stream.pcr(0x1FFF, second).pcr(0x102, 2 * second);
    EXPECT_EQ(PCR_lines_of(stream), "* Program 0x0001 PCR initial lock at TS 4.000000 PCR 2.000000\n");
}

TEST_F(pcr_of_streams, the_clock_stays_locked_when_PAT_and_PMT_change)
{
    settings.dump_pcr_analysis = true;
    stream_builder stream;
    stream
        .section(0, pat_section(1,
                                {
                                    {1, 0x100}
    }))
        .section(0x100, pmt_section(1, 0x101, {}, {}));
    stream.pcr(0x101, second);
    stream
        .section(0, pat_section(1,
                                {
                                    {1, 0x300}
    }))
        .section(0x300, pmt_section(1, 0x301, {}, {}));
    stream.pcr(0x301, 4 * second).pcr(0x101, 5 * second);
    EXPECT_EQ(PCR_lines_of(stream),
              "* Program 0x0001 PCR initial lock at TS 2.000000 PCR 1.000000\n"
              "* Program 0x0001 TS 5.000000 PCR error=0.000000000ns interval_from_last_PCR=3.000000\n"
              "* Program 0x0001 TS 6.000000 PCR error=0.000000000ns interval_from_last_PCR=1.000000\n");
}

TEST_F(pcr_of_streams, nothing_of_it_is_counted)
{
    settings.max_pcr_interval = 0.1;
    stream_builder stream = two_programs(0x101);
    stream.pcr(0x101, 0).pcr(0x101, 50 * second).pcr(0x101, 0);
    const std::string text = report_of_run(stream.data());
    EXPECT_EQ(text.substr(text.find("* Program 0x0001 PCR initial lock")),
              "* Program 0x0001 PCR initial lock at TS 3.000000 PCR 0.000000\n"
              "!!! Program 0x0001 TS 4.000000 Too much time between PCR timestamps (1000.000ms > 100.000ms)\n"
              "* Program 0x0001 PCR reset/jump forward at TS 4.000000 PCR 50.000000\n"
              "!!! Program 0x0001 TS 5.000000 Too much time between PCR timestamps (1000.000ms > 100.000ms)\n"
              "* Program 0x0001 PCR reset/jump back at TS 5.000000 PCR 0.000000\n"
              "* Scan complete\n"
              "* Priority #1 errors: 0\n"
              "* Priority #2 errors: 0\n"
              "* Priority #3 errors: 0\n");
}
