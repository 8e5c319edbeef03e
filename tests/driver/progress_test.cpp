#include "mpeg_ts_analysis/driver/progress.h"

#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

/// Standard error is a terminal that the test reads, standard output is none.
struct progress : testing::Test {
    progress()
        : errors_before(dup(STDERR_FILENO)), output_before(dup(STDOUT_FILENO)),
          master(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
        grantpt(master);
        unlockpt(master);
        replace(STDERR_FILENO, open(ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC));
        replace(STDOUT_FILENO, open("/dev/null", O_WRONLY | O_CLOEXEC));
    }

    ~progress() override
    {
        replace(STDERR_FILENO, errors_before);
        replace(STDOUT_FILENO, output_before);
        close(master);
    }

    static void replace(int descriptor, int by)
    {
        EXPECT_EQ(dup2(by, descriptor), descriptor);
        close(by);
    }

    /// What has been drawn since the last call.
    std::string drawn() const
    {
        char buffer[1000];
        const ssize_t length = read(master, buffer, sizeof(buffer));
        return length > 0 ? std::string(buffer, static_cast<size_t>(length)) : "";
    }

    /// A scan of 1000 bytes that began so many seconds ago.
    static scan_progress scan_since(double seconds)
    {
        scan_progress scan;
        progress_start(&scan, 1000);
        scan.started -= seconds;
        scan.drawn_at -= seconds;
        return scan;
    }

    int errors_before;
    int output_before;
    int master;
};

TEST_F(progress, is_drawn_with_percent_rate_and_time_left)
{
    scan_progress scan = scan_since(29700.0);

    progress_show(&scan, 990);
    EXPECT_EQ(drawn(), "\r 99%  0.0 MB/s  5:00 left\033[K");
}

TEST_F(progress, is_drawn_seldom)
{
    scan_progress scan = scan_since(-60.0); // however slow the machine is

    progress_show(&scan, 250);
    EXPECT_EQ(drawn(), "");
}

TEST_F(progress, never_passes_the_end_of_a_file_that_grows)
{
    scan_progress scan = scan_since(10.0);

    progress_show(&scan, 5000);
    EXPECT_EQ(drawn(), "\r100%  0.0 MB/s  0:00 left\033[K");
}

TEST_F(progress, knows_no_time_left_before_the_first_byte)
{
    scan_progress scan = scan_since(10.0);

    progress_show(&scan, 0);
    EXPECT_EQ(drawn(), "\r  0%  0.0 MB/s  0:00 left\033[K");
}

TEST_F(progress, is_taken_away_at_the_end)
{
    scan_progress scan = scan_since(10.0);
    progress_show(&scan, 500);
    drawn();

    progress_end(&scan);
    EXPECT_EQ(drawn(), "\r\033[K");
    progress_end(&scan);
    EXPECT_EQ(drawn(), "");
}

TEST_F(progress, is_not_shown_for_an_input_of_unknown_size)
{
    scan_progress scan;

    progress_start(&scan, 0);
    EXPECT_FALSE(scan.shown);
    progress_show(&scan, 500);
    progress_end(&scan);
    EXPECT_EQ(drawn(), "");
}

TEST_F(progress, is_not_shown_beside_a_report_on_a_terminal)
{
    scan_progress scan;

    EXPECT_EQ(dup2(STDERR_FILENO, STDOUT_FILENO), STDOUT_FILENO);
    progress_start(&scan, 1000);
    EXPECT_FALSE(scan.shown);
}
