#include "mpeg_ts_overview/driver/interrupt.h"

#include <cerrno>
#include <csignal>
#include <poll.h>

namespace {

// A handler can reach nothing but variables of its own.
volatile std::sig_atomic_t noted_signal = 0;
void (*before_the_end)() = nullptr;

void note(int signal)
{
    if (noted_signal == 0) {
        noted_signal = signal;
        return;
    }
    before_the_end();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void catch_signal(int signal)
{
    struct sigaction action = {};
    struct sigaction before = {};

    // Reads and writes that wait are interrupted.
    action.sa_handler = note;
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
        sigaction(signal, &action, nullptr);
}

} // namespace

void interrupt_catch(void (*at_second)())
{
    before_the_end = at_second;
    catch_signal(SIGINT);
    catch_signal(SIGTERM);
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

bool interrupt_noted()
{
    return noted_signal != 0;
}

bool interrupt_wait_to_read(int descriptor)
{
    sigset_t noted_ones;
    sigset_t before;
    sigemptyset(&noted_ones);
    sigaddset(&noted_ones, SIGINT);
    sigaddset(&noted_ones, SIGTERM);

    // Held back but while it waits, no signal comes between the look at what was noted and the wait.
    sigprocmask(SIG_BLOCK, &noted_ones, &before);
    pollfd input = {descriptor, POLLIN, 0};
    while (noted_signal == 0 && ppoll(&input, 1, nullptr, &before) < 0 && errno == EINTR) {
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return noted_signal == 0;
}

void interrupt_stop_if_noted()
{
    if (noted_signal == 0) return;
    std::signal(noted_signal, SIG_DFL);
    std::raise(noted_signal);
}
