#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/driver/bitrate.h"

#include <memory>
#include <string>

struct bitrate : report_test {
    /// The report's lines and, behind them, what standard error got, of a run that estimates the bitrate of a
    /// stream of 188-byte packets.
    std::string run_estimating(const stream_builder &stream)
    {
        process_state_reset();
        settings.packet_size_mode = 0;
        settings.ts_bitrate_auto = true;
        const std::string text = report_of_run(stream.data());
        EXPECT_EQ(run_status, 0);
        return text + run_errors;
    }

    static std::string estimated(const std::string &rate, const std::string &rounded)
    {
        return start_up() + "* TS bitrate: " + rounded + " bits/sec\n" + summary() + "Est bitrate: " + rate +
               " bit/sec\n";
    }

    static std::string failed() { return start_up() + "!!! Autodetection failed\n" + summary(); }

    static std::string start_up()
    {
        return "* Starting analysis of: stream.ts\n"
               "* Packet size: 188 bytes/packet\n"
               "* Attempting to auto-detect TS bitrate\n";
    }

    static std::string summary()
    {
        return "* Scan complete\n"
               "* Priority #1 errors: 0\n"
               "* Priority #2 errors: 0\n"
               "* Priority #3 errors: 0\n";
    }

    static constexpr unsigned long long second = 27000000;
};

TEST_F(bitrate, comes_from_the_bytes_between_two_pcrs)
{
    stream_builder stream;
    stream.pcr(0x100, 5 * second).padding(9).pcr(0x100, 6 * second).padding(7);
    EXPECT_EQ(run_estimating(stream), estimated("15040.000000", "15040"));
    EXPECT_EQ(settings.ts_bitrate, 15040u);
}

TEST_F(bitrate, is_measured_from_first_byte_to_first_byte)
{
    stream_builder stream;
    stream.padding(3).pcr(0x100, 0).padding(9).pcr(0x100, 2 * second);
    EXPECT_EQ(run_estimating(stream), estimated("7520.000000", "7520"));
}

TEST_F(bitrate, is_rounded_to_the_nearest_integer)
{
    stream_builder down;
    down.pcr(0x100, 0).pcr(0x100, 3 * second);
    EXPECT_EQ(run_estimating(down), estimated("501.333333", "501"));

    stream_builder up;
    up.pcr(0x100, 0).pcr(0x100, 6 * second + second / 4);
    EXPECT_EQ(run_estimating(up), estimated("240.640000", "241"));

    stream_builder half;
    half.pcr(0x100, 0).pcr(0x100, 64 * second);
    EXPECT_EQ(run_estimating(half), estimated("23.500000", "24"));

    stream_builder below_one;
    below_one.pcr(0x100, 0).pcr(0x100, 4000 * second);
    EXPECT_EQ(run_estimating(below_one),
              start_up() + "!!! Autodetection failed\n" + summary() + "Est bitrate: 0.376000 bit/sec\n");
}

TEST_F(bitrate, takes_the_last_pcr_of_a_short_stream)
{
    stream_builder stream;
    stream.pcr(0x100, second).padding(5).pcr(0x100, 2 * second).padding(2).pcr(0x100, 3 * second).padding(4);
    EXPECT_EQ(run_estimating(stream), estimated("6768.000000", "6768")); // 9 packets in 2 s
}

TEST_F(bitrate, stops_at_the_first_pcr_30_seconds_away)
{
    stream_builder stream;
    stream.pcr(0x100, second).pcr(0x100, 20 * second).padding(2).pcr(0x100, 31 * second);
    stream.padding(50).pcr(0x100, 32 * second);
    EXPECT_EQ(run_estimating(stream), estimated("200.533333", "201")); // 4 packets in 30 s
}

TEST_F(bitrate, goes_on_one_tick_below_30_seconds)
{
    stream_builder stream;
    stream.pcr(0x100, second).pcr(0x100, 31 * second - 1).padding(18).pcr(0x100, 41 * second);
    EXPECT_EQ(run_estimating(stream), estimated("752.000000", "752")); // 20 packets in 40 s
}

TEST_F(bitrate, follows_one_pid_only)
{
    stream_builder stream;
    stream.pcr(0x100, second).pcr(0x200, 900 * second).padding(2).pcr(0x100, 2 * second).pcr(0x200, 0);
    EXPECT_EQ(run_estimating(stream), estimated("6016.000000", "6016")); // 4 packets in 1 s
}

TEST_F(bitrate, ignores_scrambled_packets)
{
    stream_builder stream;
    stream.pcr(0x300, 7 * second).scramble(2).pcr(0x100, second).padding(1);
    stream.pcr(0x100, 2 * second).pcr(0x100, 9 * second).scramble(1).pcr(0x300, 900 * second).scramble(3);
    EXPECT_EQ(run_estimating(stream), estimated("3008.000000", "3008")); // 2 packets in 1 s
}

TEST_F(bitrate, ignores_packets_that_do_not_decode_and_those_without_a_pcr)
{
    stream_builder stream;
    stream.pcr(0x300, 7 * second).flip_bit(0, 0);
    stream.adaptation(0x300, hex("40")).payload(0x300, repeated(0x10, 184)).pcr(0x100, second);
    stream.adaptation(0x100, hex("40")).pcr(0x100, 900 * second).flip_bit(0, 7).pcr(0x100, 2 * second);
    EXPECT_EQ(run_estimating(stream), estimated("4512.000000", "4512")); // 3 packets in 1 s
}

TEST_F(bitrate, fails_without_a_pcr)
{
    EXPECT_EQ(run_estimating(stream_builder()), failed());
    EXPECT_EQ(run_estimating(stream_builder().padding(20)), failed());
    EXPECT_EQ(settings.ts_bitrate, 0u);
}

TEST_F(bitrate, fails_when_the_first_pcr_is_on_pid_0)
{
    stream_builder stream;
    stream.pcr(0, second).pcr(0x100, second).padding(8).pcr(0x100, 2 * second).pcr(0, 2 * second);
    EXPECT_EQ(run_estimating(stream), failed());
}

TEST_F(bitrate, tries_the_next_pid_after_one_with_a_single_pcr)
{
    stream_builder stream;
    stream.pcr(0x100, 3 * second).pcr(0x200, 5 * second).padding(9).pcr(0x200, 6 * second);
    EXPECT_EQ(run_estimating(stream), estimated("15040.000000", "15040"));
}

TEST_F(bitrate, fails_when_every_pid_has_a_single_pcr)
{
    stream_builder stream;
    stream.pcr(0x100, 3 * second).pcr(0x200, 5 * second).pcr(0x300, 6 * second);
    EXPECT_EQ(run_estimating(stream), failed());
}

TEST_F(bitrate, fails_when_the_next_pid_to_try_is_0)
{
    stream_builder stream;
    stream.pcr(0x100, 3 * second).pcr(0, 4 * second).pcr(0x200, 5 * second).pcr(0x200, 6 * second);
    EXPECT_EQ(run_estimating(stream), failed());
}

TEST_F(bitrate, excludes_up_to_64_pids)
{
    stream_builder stream;
    for (unsigned pid = 0x100; pid < 0x100 + 64; ++pid) stream.pcr(pid, second);
    stream.pcr(0x200, 5 * second).padding(9).pcr(0x200, 6 * second);
    EXPECT_EQ(run_estimating(stream), estimated("15040.000000", "15040"));
}

TEST_F(bitrate, fails_after_65_pids_with_a_single_pcr)
{
    stream_builder stream;
    for (unsigned pid = 0x100; pid < 0x100 + 65; ++pid) stream.pcr(pid, second);
    stream.pcr(0x200, 5 * second).padding(9).pcr(0x200, 6 * second);
    EXPECT_EQ(run_estimating(stream), failed());
}

TEST_F(bitrate, fails_when_the_pcr_goes_back_and_tries_no_other_pid)
{
    stream_builder stream;
    stream.pcr(0x100, 10 * second).pcr(0x100, 11 * second).pcr(0x100, 9 * second).pcr(0x100, 12 * second);
    stream.pcr(0x200, second).padding(9).pcr(0x200, 2 * second);
    EXPECT_EQ(run_estimating(stream), failed());
}

TEST_F(bitrate, tries_the_next_pid_when_the_pcr_goes_back_to_zero)
{
    stream_builder stream;
    stream.pcr(0x100, 10 * second).pcr(0x100, 0).pcr(0x100, 20 * second);
    stream.pcr(0x200, second).padding(9).pcr(0x200, 2 * second);
    EXPECT_EQ(run_estimating(stream), estimated("15040.000000", "15040"));
}

TEST_F(bitrate, fails_when_the_pcr_stands_still)
{
    stream_builder stream;
    stream.pcr(0x100, 10 * second).padding(3).pcr(0x100, 10 * second);
    stream.pcr(0x200, second).padding(9).pcr(0x200, 2 * second);
    EXPECT_EQ(run_estimating(stream), failed());
}

TEST_F(bitrate, does_not_look_at_a_packet_that_is_cut)
{
    stream_builder stream;
    stream.pcr(0x100, second).padding(9).pcr(0x100, 2 * second);
    bytes cut = stream.data();
    cut.pop_back();

    settings.packet_size_mode = 0;
    settings.ts_bitrate_auto = true;
    EXPECT_EQ(report_of_run(cut), failed());
    EXPECT_EQ(run_errors, "");
}

TEST_F(bitrate, counts_the_prefixes_of_192_byte_packets)
{
    stream_builder stream;
    stream.pcr(0x100, second).padding(9).pcr(0x100, 2 * second);

    settings.packet_size_mode = 1;
    settings.ts_bitrate_auto = true;
    EXPECT_EQ(report_of_run(stream.avchd()), "* Starting analysis of: stream.ts\n"
                                             "* Packet size: 192 bytes/packet\n"
                                             "* Attempting to auto-detect TS bitrate\n"
                                             "* TS bitrate: 15360 bits/sec\n" +
                                                 summary());
    EXPECT_EQ(run_errors, "Est bitrate: 15360.000000 bit/sec\n");
}

TEST_F(bitrate, a_given_one_is_not_estimated)
{
    stream_builder stream;
    stream.pcr(0x100, second).padding(9).pcr(0x100, 2 * second);

    settings.packet_size_mode = 0;
    settings.ts_bitrate_auto = true;
    settings.ts_bitrate = 18446744073709551615ull;
    EXPECT_EQ(report_of_run(stream.data()), "* Starting analysis of: stream.ts\n"
                                            "* Packet size: 188 bytes/packet\n"
                                            "* TS bitrate: 18446744073709551615 bits/sec\n" +
                                                summary());
    EXPECT_EQ(run_errors, "");
}

TEST_F(bitrate, times_the_packets_of_the_scan_from_the_start_of_the_file)
{
    stream_builder stream;
    stream.pcr(0x100, second).padding(2).pcr(0x100, second + second / 250); // 3 packets in 4 ms
    settings.packet_size_mode = 0;
    settings.ts_bitrate_auto = true;
    settings.dump_ts_mode = 1;
    EXPECT_EQ(report_of_run(stream.data()),
              start_up() +
                  "* TS bitrate: 1128000 bits/sec\n"
                  "@0        (t=0.0000000) TS PACKET: PID=0x0100 CONT=15 ERR=0 PRI=0 SCRAM=0 "
                  "AFC=ADAPTATION[184    ] 0xb7\n"
                  "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=1 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n"
                  "    PCR: 27000000 / 27MHz = 1.000000\n"
                  "@564      (t=0.0040000) TS PACKET: PID=0x0100 CONT=15 ERR=0 PRI=0 SCRAM=0 "
                  "AFC=ADAPTATION[184    ] 0xb7\n"
                  "  Adaptation: DISCON=0 RAND=0 ESPRI=0 PCR=1 OPCR=0 SPLICE=0 TSPRIV=0 AFEXT=0\n"
                  "    PCR: 27108000 / 27MHz = 1.004000\n" +
                  summary());
    EXPECT_EQ(run_errors, "Est bitrate: 1128000.000000 bit/sec\n");
}

TEST_F(bitrate, is_unknown_for_any_other_packet_size)
{
    const auto file = std::make_unique<packet_file>();
    ASSERT_TRUE(packet_file_open(file.get(), "/dev/null"));
    testing::internal::CaptureStderr();
    for (const unsigned packet_size : {0u, 1u, 187u, 189u, 191u, 193u, 204u, 0xFFFFFFFFu})
        EXPECT_EQ(estimate_ts_bitrate(file.get(), packet_size), 0u) << packet_size;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    packet_file_close(file.get());
}
