#include "tests/support/report_test.h"

#include <cfloat>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

struct report_writer : report_test {};

namespace {

constexpr size_t buffer_size = size_t{64} * 1024;

/// Writes a line to a standard output that is the descriptor.
void write_to(int descriptor)
{
    report_divert(nullptr);
    if (descriptor < 0)
        close(STDOUT_FILENO);
    else
        dup2(descriptor, STDOUT_FILENO);
    report_line("a line");
    report_flush();
    _exit(0);
}

/// A pipe that nobody reads.
int broken_pipe()
{
    int ends[2];
    if (pipe(ends) != 0) return -1;
    close(ends[0]);
    return ends[1];
}

} // namespace

TEST_F(report_writer, a_line_gets_its_line_end)
{
    report_line("* Scan complete");
    report_line("");
    report_line("100% %s as it is");
    EXPECT_EQ(report(), "* Scan complete\n\n100% %s as it is\n");
}

TEST_F(report_writer, bytes_are_printed_unchanged_up_to_the_first_zero)
{
    report_printf("%s", "\x0B\x86\x8A\xC3\xFF%s\x7F");
    report_printf("%s", "A\0B");
    report_printf("%s", "");
    EXPECT_EQ(report(), "\x0B\x86\x8A\xC3\xFF%s\x7F"
                        "A");
}

TEST_F(report_writer, texts_of_every_length_around_the_limits_are_put_whole)
{
    for (const size_t around : {size_t{1024}, size_t{2048}, buffer_size - 2048, buffer_size, 3 * buffer_size})
        for (size_t length = around - 2; length <= around + 2; ++length) {
            const std::string text(length, 'x');
            report_printf("<%s>", text.c_str());
            EXPECT_EQ(report(), "<" + text + ">");
            report_line(text.c_str());
            EXPECT_EQ(report(), text + "\n");
        }
}

TEST_F(report_writer, nothing_is_lost_or_changed_where_the_buffer_is_full)
{
    for (size_t start = buffer_size - 2150; start < buffer_size - 1950; ++start) {
        const std::string before(start, '.');
        report_printf("%s", before.c_str());
        report_printf("PID 0x%04x %f %c\n", 0x1FFFu, -1.0, 'c');
        ASSERT_EQ(report(), before + "PID 0x1fff -1.000000 c\n");
    }
}

TEST_F(report_writer, texts_and_the_longest_numbers_behind_them_fit_wherever_the_buffer_is_full)
{
    char longest[400];
    std::snprintf(longest, sizeof(longest), "%.9f", -DBL_MAX);
    const std::string numbers = std::string(longest) + longest + longest;
    const std::string text(255, 't');
    for (size_t start = buffer_size - 4000; start < buffer_size; start += 7) {
        const std::string before(start, '.');
        report_printf("%s", before.c_str());
        report_printf("%.9f%.9f%.9f%s%.9f%.9f%.9f%s\n", -DBL_MAX, -DBL_MAX, -DBL_MAX, text.c_str(), -DBL_MAX,
                      -DBL_MAX, -DBL_MAX, text.c_str());
        ASSERT_EQ(report(), before + numbers + text + numbers + text + "\n") << start;
    }
}

TEST_F(report_writer, what_is_printed_reaches_standard_output_in_order)
{
    report_divert(nullptr);
    testing::internal::CaptureStdout();
    std::string expected;
    for (unsigned i = 0; i < 20000; ++i) {
        report_printf("line %u\n", i);
        expected += "line " + std::to_string(i) + "\n";
    }
    report_flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), expected);
}

TEST_F(report_writer, nothing_is_written_before_the_buffer_is_full_or_flushed)
{
    report_divert(nullptr);
    testing::internal::CaptureStdout();
    report_line("held");
    const std::string written = testing::internal::GetCapturedStdout();
    testing::internal::CaptureStdout();
    report_flush();
    EXPECT_EQ(written, "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "held\n");
}

TEST_F(report_writer, diverting_first_writes_out_what_is_held)
{
    std::string first;
    std::string second;
    report_divert(&first);
    report_line("first");
    report_divert(&second);
    report_line("second");
    report_divert(nullptr);
    EXPECT_EQ(first, "first\n");
    EXPECT_EQ(second, "second\n");
}

TEST_F(report_writer, a_closed_standard_output_ends_the_run_with_a_message)
{
    EXPECT_EXIT(write_to(-1), testing::ExitedWithCode(1),
                "^mpeg_ts_analysis: cannot write the report: Bad file descriptor\n$");
}

TEST_F(report_writer, a_full_disk_ends_the_run_with_a_message)
{
    const int full = open("/dev/full", O_WRONLY);
    if (full < 0) GTEST_SKIP() << "no /dev/full";
    EXPECT_EXIT(write_to(full), testing::ExitedWithCode(1),
                "^mpeg_ts_analysis: cannot write the report: No space left on device\n$");
    close(full);
}

TEST_F(report_writer, a_pipe_without_a_reader_ends_the_run_quietly)
{
    EXPECT_EXIT(write_to(broken_pipe()), testing::KilledBySignal(SIGPIPE), "^$");
}

TEST_F(report_writer, a_pipe_without_a_reader_ends_the_run_quietly_when_the_signal_was_ignored)
{
    EXPECT_EXIT((std::signal(SIGPIPE, SIG_IGN), write_to(broken_pipe())), testing::KilledBySignal(SIGPIPE),
                "^$");
}
