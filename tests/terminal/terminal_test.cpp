#include "tests/streams/recipes.h"
#include "tests/terminal/program.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <regex>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

const std::string teletext_sample = SAMPLES_PATH "/teletext.ts";
const std::string encoder_sample = SAMPLES_PATH "/encoder.ts";

program_result run(const std::vector<std::string> &arguments, output_kind output, output_kind errors)
{
    return program(arguments, output, errors).finish();
}

/// The page contents line of the sample, with the colour sequences that a terminal gets or without.
std::string page_contents(bool coloured)
{
    const std::string cyan = coloured ? "\033[36m" : "";
    const std::string white = coloured ? "\033[37m" : "";
    const std::string end = coloured ? "\033[0m" : "";
    return "Displayable page contents: <ALPHA cyan>" + cyan + "<DOUBLEHEIGHT>SAMPLE PAGE 100<ALPHA white>" +
           white + "<NORMALSIZE><STARTBOX>boxed<ENDBOX><Unknown 0x11>end        " + end + "\n";
}

} // namespace

TEST(terminal, standard_output_that_is_a_terminal_gets_colours)
{
    const program_result result = run({teletext_sample}, output_kind::terminal, output_kind::pipe);
    EXPECT_NE(result.output.find(page_contents(true)), std::string::npos);
}

TEST(terminal, standard_error_alone_as_a_terminal_gives_colours_too)
{
    const program_result result = run({teletext_sample}, output_kind::pipe, output_kind::terminal);
    EXPECT_NE(result.output.find(page_contents(true)), std::string::npos);
}

TEST(terminal, without_a_terminal_there_are_no_escape_sequences)
{
    const program_result result = run({teletext_sample}, output_kind::pipe, output_kind::pipe);
    EXPECT_NE(result.output.find(page_contents(false)), std::string::npos);
    EXPECT_EQ(result.output.find('\033'), std::string::npos);
}

TEST(terminal, a_long_scan_shows_its_progress_on_standard_error_and_takes_it_away)
{
    const long_stream stream(20);
    program dump({"-dump-ts=all", stream.path}, output_kind::pipe, output_kind::terminal);
    // Nobody reads the report for a while, so the scan takes long on any machine.
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
    const program_result result = dump.finish();
    EXPECT_TRUE(std::regex_match(
        result.errors, std::regex("(\r *[0-9]+%  [0-9]+\\.[0-9] MB/s  [0-9]+:[0-9][0-9] left\033\\[K)+"
                                  "\r\033\\[K")))
        << result.errors;
    EXPECT_EQ(result.wait_status, 0);
}

TEST(terminal, a_short_scan_shows_no_progress)
{
    EXPECT_EQ(run({encoder_sample}, output_kind::pipe, output_kind::terminal).errors, "");
}

TEST(terminal, without_a_terminal_standard_error_holds_nothing)
{
    const long_stream stream(20);
    EXPECT_EQ(run({"-dump-ts=all", stream.path}, output_kind::pipe, output_kind::pipe).errors, "");
}

TEST(terminal, a_report_on_the_terminal_is_not_mixed_with_progress)
{
    const long_stream stream(20);
    EXPECT_EQ(run({"-dump-ts=all", stream.path}, output_kind::terminal, output_kind::terminal).errors, "");
}

TEST(terminal, an_interrupt_ends_a_long_dump_with_whole_lines_and_no_summary)
{
    const long_stream stream(20);
    program dump({"-dump-ts=header", stream.path}, output_kind::pipe, output_kind::pipe);
    ASSERT_TRUE(dump.wait_for_output("TS PACKET"));
    dump.signal(SIGINT);
    const program_result result = dump.finish();
    ASSERT_TRUE(WIFSIGNALED(result.wait_status));
    EXPECT_EQ(WTERMSIG(result.wait_status), SIGINT);
    EXPECT_EQ(result.output.back(), '\n');
    EXPECT_EQ(result.output.find("* Scan complete"), std::string::npos);
}

TEST(terminal, a_pipe_that_does_not_block_gets_the_whole_report)
{
    const long_stream stream(1);
    const std::vector<std::string> arguments = {"-dump-ts=all", stream.path};
    program dump(arguments, output_kind::nonblocking_pipe, output_kind::pipe);
    // The pipe is full before the first byte is read.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const program_result result = dump.finish();

    EXPECT_EQ(result.wait_status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, run(arguments, output_kind::pipe, output_kind::pipe).output);
}

TEST(terminal, an_interrupt_ends_the_wait_for_the_writer_of_a_named_pipe)
{
    char name[] = "/tmp/mpeg_ts_pipe_XXXXXX";
    ASSERT_NE(mkdtemp(name), nullptr);
    const std::string path = std::string(name) + "/pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    program scan({path}, output_kind::pipe, output_kind::pipe);
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    scan.signal(SIGINT);
    const program_result result = scan.finish();
    unlink(path.c_str());
    rmdir(name);

    EXPECT_TRUE(WIFSIGNALED(result.wait_status) && WTERMSIG(result.wait_status) == SIGINT);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
}

TEST(terminal, what_was_found_in_a_pipe_is_shown_before_more_is_read)
{
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    program analysis({"-std", "/dev/stdin"}, output_kind::pipe, output_kind::pipe, ends[0]);
    close(ends[0]);
    const bytes stream = dvb_multiplex().data();
    ASSERT_EQ(write(ends[1], stream.data(), 188), 188);
    EXPECT_TRUE(analysis.wait_for_output("        First aware of, tracking program 0x0002\n"));
    close(ends[1]);
    EXPECT_EQ(analysis.finish().wait_status, 0);
}
