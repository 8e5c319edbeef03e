#include "mpeg_ts_overview/driver/interrupt.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <unistd.h>

// Signals are noted for good, so that each case is a process of its own.

namespace {

struct open_pipe {
    open_pipe()
    {
        if (pipe(ends) != 0) std::abort();
    }
    int reading() const { return ends[0]; }
    void write_one() const
    {
        if (write(ends[1], "G", 1) != 1) std::abort();
    }
    int ends[2] = {};
};

/// Ends with status 0 when that holds. A wait that never ends is ended by the alarm.
[[noreturn]] void end_with(bool holds)
{
    _exit(holds ? 0 : 1);
}

void catch_signals()
{
    alarm(20);
    interrupt_catch([] {});
}

} // namespace

TEST(interrupt, the_wait_ends_when_there_is_something_to_read)
{
    const auto run = [] {
        catch_signals();
        const open_pipe input;
        input.write_one();
        end_with(interrupt_wait_to_read(input.reading()) && !interrupt_noted());
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

TEST(interrupt, nothing_is_waited_for_behind_a_signal)
{
    const auto run = [] {
        catch_signals();
        const open_pipe input;
        raise(SIGTERM);
        input.write_one();
        end_with(!interrupt_wait_to_read(input.reading()));
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

TEST(interrupt, a_signal_ends_the_wait)
{
    const auto run = [] {
        catch_signals();
        const open_pipe input;
        const pid_t waiting = getpid();
        if (fork() == 0) {
            usleep(200000);
            kill(waiting, SIGINT);
            _exit(0);
        }
        end_with(!interrupt_wait_to_read(input.reading()) && interrupt_noted());
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

TEST(interrupt, signals_come_as_before_behind_the_wait)
{
    const auto run = [] {
        catch_signals();
        const open_pipe input;
        input.write_one();
        const bool waited = interrupt_wait_to_read(input.reading());
        raise(SIGINT);
        end_with(waited && interrupt_noted());
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}
