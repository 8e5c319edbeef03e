#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/health/clocks.h"
#include "mpeg_ts_analysis/health/pcr_analysis.h"

#include <string>

struct pcr_checks : report_test {
    /// Program 1 with its PCR on PID 0x101 and another stream on PID 0x102.
    pcr_checks()
    {
        track(0x101, 0x02, 1);
        track(0x102, 0x04, 1);
        clock = program_clock_create(1, 0x100);
        clock->pcr_pid = 0x101;
    }

    static mpeg_ts_packet packet(unsigned pid, unsigned long long pcr)
    {
        mpeg_ts_packet tsp = {};
        tsp.pid = static_cast<uint16_t>(pid);
        tsp.adaptation_field_control = 2;
        tsp.PCR_flag = 1;
        tsp.PCR = pcr;
        return tsp;
    }

    /// What is printed for a PCR, in 27 MHz ticks, at t seconds.
    std::string check(double t, unsigned long long pcr, unsigned pid = 0x101)
    {
        const mpeg_ts_packet tsp = packet(pid, pcr);
        pcr_analysis(&tsp, t);
        return report();
    }

    /// The error line of program 1.
    static std::string error_line(const char *t, const char *error, const char *interval)
    {
        return std::string("* Program 0x0001 TS ") + t + " PCR error=" + error +
               "ns interval_from_last_PCR=" + interval + '\n';
    }

    static constexpr unsigned long long second = 27000000;
    static constexpr unsigned long long modulus = 2576980377600;
    program_clock *clock;
};

TEST_F(pcr_checks, the_first_PCR_locks_the_clock)
{
    EXPECT_EQ(check(0.5, 2 * second), "* Program 0x0001 PCR initial lock at TS 0.500000 PCR 2.000000\n");
    EXPECT_EQ(clock->base_pcr, 2 * second);
    EXPECT_EQ(clock->base_time, 0.5);
    EXPECT_EQ(clock->last_pcr_time, 0.5);
    EXPECT_EQ(check(0.5625, 2 * second + second / 16), "");
    EXPECT_EQ(clock->base_pcr, 2 * second);
    EXPECT_EQ(clock->base_time, 0.5);
    EXPECT_EQ(clock->last_pcr_time, 0.5625);
}

TEST_F(pcr_checks, packets_that_have_no_PCR_of_a_known_clock_are_ignored)
{
    settings.dump_ts_mode = 2;
    track(0x200, 0x02, 0);
    track(0x201, 0x02, 2);
    track(0x202, 0x02, 3);
    program_clock_create(0, 0x100)->pcr_pid = 0x200;
    program_clock_create(3, 0x100);
    EXPECT_EQ(check(0.0, 5, 0x2000), "") << "no such PID";
    EXPECT_EQ(check(0.0, 5, 0x1FFF), "") << "not tracked";
    EXPECT_EQ(check(0.0, 5, 0x200), "") << "of no program";
    EXPECT_EQ(check(0.0, 5, 0x201), "") << "a program without a clock";
    EXPECT_EQ(check(0.0, 5, 0x202), "") << "a clock without a PCR PID";

    mpeg_ts_packet tsp = packet(0x101, 5);
    tsp.PCR_flag = 0;
    pcr_analysis(&tsp, 0.0);
    EXPECT_EQ(report(), "") << "no PCR";
    EXPECT_EQ(clock->base_time, -9999999999999.0);
}

TEST_F(pcr_checks, a_PCR_on_any_PID_of_the_program_drives_the_clock)
{
    settings.dump_pcr_analysis = true;
    EXPECT_EQ(check(0.0, 0, 0x102), "* Program 0x0001 PCR initial lock at TS 0.000000 PCR 0.000000\n");
    EXPECT_EQ(check(0.0625, second / 16, 0x101), error_line("0.062500", "0.000000000", "0.062500"));
    EXPECT_EQ(check(0.125, second / 8, 0x102), error_line("0.125000", "0.000000000", "0.062500"));
}

TEST_F(pcr_checks, PCRs_count_when_the_PCR_PID_is_0x1FFF)
{
    clock->pcr_pid = 0x1FFF;
    EXPECT_EQ(check(0.0, 0, 0x102), "* Program 0x0001 PCR initial lock at TS 0.000000 PCR 0.000000\n");
}

TEST_F(pcr_checks, each_program_has_its_own_clock)
{
    track(0x300, 0x02, 0xFFFF);
    program_clock_create(0xFFFF, 0x100)->pcr_pid = 0x300;
    settings.dump_pcr_analysis = true;
    EXPECT_EQ(check(0.0, 0), "* Program 0x0001 PCR initial lock at TS 0.000000 PCR 0.000000\n");
    EXPECT_EQ(check(0.03125, 50 * second, 0x300),
              "* Program 0xffff PCR initial lock at TS 0.031250 PCR 50.000000\n");
    EXPECT_EQ(check(0.0625, second / 16), error_line("0.062500", "0.000000000", "0.062500"));
    EXPECT_EQ(check(0.09375, 50 * second + second / 16, 0x300),
              "* Program 0xffff TS 0.093750 PCR error=0.000000000ns interval_from_last_PCR=0.062500\n");
}

TEST_F(pcr_checks, the_contents_dump_shows_every_PCR_and_its_error)
{
    settings.dump_ts_mode = 2;
    EXPECT_EQ(check(0.5, second), "* PID 0x0101 (program 0x0001) PCR=27000000 (1.000000)\n"
                                  "* Program 0x0001 PCR initial lock at TS 0.500000 PCR 1.000000\n");
    EXPECT_EQ(check(0.5625, modulus - 1, 0x102),
              "* PID 0x0102 (program 0x0001) PCR=2576980377599 (95443.717689)\n" +
                  error_line("0.562500", "95442655188851.859375000", "0.062500") +
                  "* Program 0x0001 PCR reset/jump forward at TS 0.562500 PCR 95443.717689\n");
}

TEST_F(pcr_checks, the_header_dump_shows_neither)
{
    settings.dump_ts_mode = 1;
    EXPECT_EQ(check(0.5, second), "* Program 0x0001 PCR initial lock at TS 0.500000 PCR 1.000000\n");
    EXPECT_EQ(check(0.5625, second + second / 16), "");
}

TEST_F(pcr_checks, the_error_is_positive_when_the_PCR_runs_ahead)
{
    settings.dump_pcr_analysis = true;
    settings.pcr_drift_correction = false;
    check(0.0, second);
    EXPECT_EQ(check(0.0625, 2 * second + second / 16),
              error_line("0.062500", "1000000000.000000000", "0.062500"));
    EXPECT_EQ(check(0.125, second / 2 + second / 8),
              error_line("0.125000", "-500000000.000000000", "0.062500"));
}

TEST_F(pcr_checks, the_drift_correction_moves_the_clock_by_a_twentieth_of_the_error)
{
    settings.dump_pcr_analysis = true;
    check(0.5, second);
    // 1.25 s ahead: the origin goes back by 62.5 ms.
    EXPECT_EQ(check(0.5625, second + 21 * second / 16),
              error_line("0.562500", "1250000000.000000000", "0.062500"));
    EXPECT_EQ(clock->base_time, 0.4375);
    EXPECT_EQ(check(0.625, second + 3 * second / 16), error_line("0.625000", "0.000000000", "0.062500"));
    EXPECT_EQ(clock->base_time, 0.4375);
    // 1.25 s behind: it comes back.
    EXPECT_EQ(check(0.6875, second / 4 - 1 * second / 4),
              error_line("0.687500", "-1250000000.000000000", "0.062500"));
    EXPECT_EQ(clock->base_time, 0.5);
    EXPECT_EQ(clock->base_pcr, second);
}

TEST_F(pcr_checks, without_drift_correction_the_clock_stays)
{
    settings.dump_pcr_analysis = true;
    settings.pcr_drift_correction = false;
    check(0.5, second);
    EXPECT_EQ(check(0.5625, second + 21 * second / 16),
              error_line("0.562500", "1250000000.000000000", "0.062500"));
    EXPECT_EQ(clock->base_time, 0.5);
    EXPECT_EQ(check(0.625, second + 3 * second / 16),
              error_line("0.625000", "62500000.000000000", "0.062500"));
}

TEST_F(pcr_checks, the_interval_permitted_is_100_ms_by_default)
{
    check(0.0, 0);
    EXPECT_EQ(check(0.09, 9 * second / 100), "");
    EXPECT_EQ(
        check(0.20, 20 * second / 100),
        "!!! Program 0x0001 TS 0.200000 Too much time between PCR timestamps (110.000ms > 100.000ms)\n");
    EXPECT_EQ(errors.priority1_errors, 0u);
    EXPECT_EQ(errors.priority2_errors, 0u);
}

TEST_F(pcr_checks, the_interval_may_be_set)
{
    settings.max_pcr_interval = 0.04;
    check(0.0, 0);
    EXPECT_EQ(check(0.05, 5 * second / 100),
              "!!! Program 0x0001 TS 0.050000 Too much time between PCR timestamps (50.000ms > 40.000ms)\n");
    EXPECT_EQ(check(0.10, 10 * second / 100),
              "!!! Program 0x0001 TS 0.100000 Too much time between PCR timestamps (50.000ms > 40.000ms)\n");
}

TEST_F(pcr_checks, an_interval_of_just_the_limit_is_permitted)
{
    settings.max_pcr_interval = 0.25;
    check(0.5, 0);
    EXPECT_EQ(check(0.75, second / 4), "");
    EXPECT_EQ(
        check(1.015625, second / 2),
        "!!! Program 0x0001 TS 1.015625 Too much time between PCR timestamps (265.625ms > 250.000ms)\n");
}

TEST_F(pcr_checks, a_jump_back_locks_the_clock_again)
{
    check(0.0, 20 * second);
    EXPECT_EQ(check(0.0625, 5 * second),
              "* Program 0x0001 PCR reset/jump back at TS 0.062500 PCR 5.000000\n");
    EXPECT_EQ(clock->base_pcr, 5 * second);
    EXPECT_EQ(clock->base_time, 0.0625);
    EXPECT_EQ(clock->last_pcr_time, 0.0625);
    settings.dump_pcr_analysis = true;
    EXPECT_EQ(check(0.125, 5 * second + second / 16), error_line("0.125000", "0.000000000", "0.062500"));
}

TEST_F(pcr_checks, a_jump_forward_locks_the_clock_again)
{
    check(0.0, 5 * second);
    EXPECT_EQ(check(0.0625, 20 * second),
              "* Program 0x0001 PCR reset/jump forward at TS 0.062500 PCR 20.000000\n");
    EXPECT_EQ(clock->base_pcr, 20 * second);
    EXPECT_EQ(clock->base_time, 0.0625);
    EXPECT_EQ(clock->last_pcr_time, 0.0625);
    settings.dump_pcr_analysis = true;
    EXPECT_EQ(check(0.125, 20 * second + second / 16), error_line("0.125000", "0.000000000", "0.062500"));
}

TEST_F(pcr_checks, a_jump_is_more_than_ten_seconds)
{
    settings.pcr_drift_correction = false;
    check(0.0, 20 * second);
    EXPECT_EQ(check(0.0, 30 * second), "");
    EXPECT_EQ(check(0.0, 10 * second), "");
    EXPECT_EQ(clock->base_pcr, 20 * second);
    EXPECT_EQ(check(0.0, 10 * second - 1),
              "* Program 0x0001 PCR reset/jump back at TS 0.000000 PCR 10.000000\n");
    EXPECT_EQ(check(0.0, 20 * second),
              "* Program 0x0001 PCR reset/jump forward at TS 0.000000 PCR 20.000000\n");
}

TEST_F(pcr_checks, the_lines_of_one_PCR_come_in_order)
{
    settings.dump_ts_mode = 2;
    check(0.0, 0);
    EXPECT_EQ(check(0.5, 20 * second),
              "* PID 0x0101 (program 0x0001) PCR=540000000 (20.000000)\n" +
                  error_line("0.500000", "19500000000.000000000", "0.500000") +
                  "!!! Program 0x0001 TS 0.500000 Too much time between PCR timestamps (500.000ms > "
                  "100.000ms)\n"
                  "* Program 0x0001 PCR reset/jump forward at TS 0.500000 PCR 20.000000\n");
}

TEST_F(pcr_checks, a_focus_on_another_program_hides_error_and_jump_lines_only)
{
    settings.dump_ts_mode = 2;
    settings.program_focus = 2;
    EXPECT_EQ(check(0.0, 0), "* PID 0x0101 (program 0x0001) PCR=0 (0.000000)\n"
                             "* Program 0x0001 PCR initial lock at TS 0.000000 PCR 0.000000\n");
    EXPECT_EQ(check(0.5, 20 * second),
              "* PID 0x0101 (program 0x0001) PCR=540000000 (20.000000)\n"
              "!!! Program 0x0001 TS 0.500000 Too much time between PCR timestamps (500.000ms > "
              "100.000ms)\n");
    EXPECT_EQ(clock->base_pcr, 20 * second) << "locked again all the same";
    EXPECT_EQ(check(0.5, 0), "* PID 0x0101 (program 0x0001) PCR=0 (0.000000)\n");
    EXPECT_EQ(clock->base_pcr, 0u);
}

TEST_F(pcr_checks, a_focus_on_the_program_shows_them)
{
    settings.dump_pcr_analysis = true;
    settings.program_focus = 1;
    check(0.0, 0);
    EXPECT_EQ(check(0.0625, second / 16), error_line("0.062500", "0.000000000", "0.062500"));
    EXPECT_EQ(check(0.125, 20 * second + second / 8),
              error_line("0.125000", "20000000000.000000000", "0.062500") +
                  "* Program 0x0001 PCR reset/jump forward at TS 0.125000 PCR 20.125000\n");
    EXPECT_EQ(check(0.1875, second / 8 + second / 16),
              error_line("0.187500", "-20000000000.000000000", "0.062500") +
                  "* Program 0x0001 PCR reset/jump back at TS 0.187500 PCR 0.187500\n");
}

TEST_F(pcr_checks, a_PCR_that_wraps_is_no_jump)
{
    settings.dump_pcr_analysis = true;
    check(0.0, modulus - second / 64);
    EXPECT_EQ(check(0.03125, second / 64), error_line("0.031250", "0.000000000", "0.031250"));
    EXPECT_EQ(check(0.0625, 3 * second / 64), error_line("0.062500", "0.000000000", "0.031250"));
}

TEST_F(pcr_checks, a_PCR_that_wraps_before_its_prediction_is_a_jump_back)
{
    settings.pcr_drift_correction = false;
    check(0.0, modulus - second / 64);
    EXPECT_EQ(check(0.0, second / 64), "* Program 0x0001 PCR reset/jump back at TS 0.000000 PCR 0.015625\n");
}

TEST_F(pcr_checks, without_a_bitrate_the_clock_is_locked_at_minus_1_and_never_late)
{
    EXPECT_EQ(check(-1.0, second), "* Program 0x0001 PCR initial lock at TS -1.000000 PCR 1.000000\n");
    for (unsigned i = 2; i < 10; ++i) EXPECT_EQ(check(-1.0, i * second), "");
}

TEST_F(pcr_checks, without_a_bitrate_and_drift_correction_the_prediction_stays_at_the_lock)
{
    settings.pcr_drift_correction = false;
    settings.dump_pcr_analysis = true;
    check(-1.0, second);
    EXPECT_EQ(check(-1.0, 2 * second), error_line("-1.000000", "1000000000.000000000", "0.000000"));
    EXPECT_EQ(check(-1.0, 11 * second), error_line("-1.000000", "10000000000.000000000", "0.000000"));
    EXPECT_EQ(check(-1.0, 12 * second),
              error_line("-1.000000", "11000000000.000000000", "0.000000") +
                  "* Program 0x0001 PCR reset/jump forward at TS -1.000000 PCR 12.000000\n");
    EXPECT_EQ(check(-1.0, 22 * second), error_line("-1.000000", "10000000000.000000000", "0.000000"));
    EXPECT_EQ(clock->base_pcr, 12 * second);
}

TEST_F(pcr_checks, without_a_bitrate_the_drift_correction_moves_the_prediction)
{
    settings.dump_pcr_analysis = true;
    check(-1.0, second);
    EXPECT_EQ(check(-1.0, 9 * second / 4), error_line("-1.000000", "1250000000.000000000", "0.000000"));
    EXPECT_EQ(clock->base_time, -1.0625);
    EXPECT_EQ(check(-1.0, 17 * second / 16), error_line("-1.000000", "0.000000000", "0.000000"));
}

TEST_F(pcr_checks, the_prediction_is_cut_off_to_whole_ticks)
{
    settings.pcr_drift_correction = false;
    settings.dump_pcr_analysis = true;
    check(0.0, 0);
    // 1/256 s is 105468.75 ticks.
    EXPECT_EQ(check(0.00390625, 105468), error_line("0.003906", "0.000000000", "0.003906"));
}

TEST_F(pcr_checks, a_prediction_before_zero_has_the_pattern_of_its_signed_value)
{
    settings.pcr_drift_correction = false;
    settings.dump_pcr_analysis = true;
    check(0.0, 0);
    clock->base_time = 1.0;
    // 2^64 - 27000000, modulo 2^33 * 300
    EXPECT_EQ(check(0.0, 2130276778816), error_line("0.000000", "0.000000000", "0.000000"));
}

TEST_F(pcr_checks, a_prediction_of_2_to_the_63_and_more_keeps_its_top_bit)
{
    settings.pcr_drift_correction = false;
    settings.dump_pcr_analysis = true;
    check(0.0, 0);
    clock->base_time = -500000000000.0;
    EXPECT_EQ(check(0.0, 13500000000000000000ull % modulus),
              error_line("0.000000", "0.000000000", "0.000000"));
    clock->base_time = -300000000000.0;
    EXPECT_EQ(check(0.0, 8100000000000000000ull % modulus),
              error_line("0.000000", "0.000000000", "0.000000"));
}

TEST_F(pcr_checks, a_clock_is_unlocked_only_below_its_limit)
{
    settings.pcr_drift_correction = false;
    clock->base_time = -999999999999.0;
    clock->last_pcr_time = 0.0;
    EXPECT_EQ(check(0.0, 0).find("initial lock"), std::string::npos);
    clock->base_time = -1000000000000.0;
    EXPECT_EQ(check(0.0, 0), "* Program 0x0001 PCR initial lock at TS 0.000000 PCR 0.000000\n");
}

TEST_F(pcr_checks, the_clock_stays_locked_when_its_tables_come_again)
{
    check(0.0, 0);
    program_clock_create(1, 0x200);
    clock->pcr_pid = 0x102;
    EXPECT_EQ(check(0.0625, second / 16), "");
    EXPECT_EQ(clock->last_pcr_time, 0.0625);
}
