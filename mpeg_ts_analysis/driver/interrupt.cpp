#include "mpeg_ts_analysis/driver/interrupt.h"

#include "mpeg_ts_analysis/report/report.h"

#include <csignal>

namespace {

/// The signal that came, 0 before one did. A handler can reach nothing but a variable of its own.
volatile std::sig_atomic_t noted_signal = 0;

void note(int signal)
{
    noted_signal = signal;
}

void catch_signal(int signal)
{
    struct sigaction action = {};
    struct sigaction before = {};

    // Reads and writes that wait are interrupted; the handler is gone after its first use.
    action.sa_handler = note;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
        sigaction(signal, &action, nullptr);
}

} // namespace

void interrupt_catch()
{
    catch_signal(SIGINT);
    catch_signal(SIGTERM);
    std::signal(SIGXFSZ, SIG_IGN);
}

void interrupt_stop_if_noted()
{
    if (noted_signal == 0) return;
    report_flush();
    std::raise(noted_signal);
}
