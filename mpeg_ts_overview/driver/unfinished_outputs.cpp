#include "mpeg_ts_overview/driver/unfinished_outputs.h"

#include <climits>
#include <cstring>
#include <unistd.h>

namespace {

/// A handler can reach nothing but variables of static storage.
constexpr size_t slot_count = 4;
char paths[slot_count][PATH_MAX];
volatile std::sig_atomic_t taken[slot_count];

void remove_and_end(int signal)
{
    unfinished_outputs_remove();
    std::raise(signal); // the handler is gone after its first use
}

} // namespace

signals_held::signals_held()
{
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_BLOCK, &all, &before);
}

signals_held::~signals_held()
{
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

void unfinished_output_add(const std::string &path)
{
    for (size_t i = 0; i < slot_count; ++i) {
        if (taken[i] || path.size() >= sizeof paths[i]) continue;
        std::memcpy(paths[i], path.c_str(), path.size() + 1);
        taken[i] = 1;
        return;
    }
}

void unfinished_output_forget(const std::string &path)
{
    for (size_t i = 0; i < slot_count; ++i)
        if (taken[i] && path == paths[i]) taken[i] = 0;
}

void unfinished_outputs_remove()
{
    for (size_t i = 0; i < slot_count; ++i)
        if (taken[i]) unlink(paths[i]);
}

void unfinished_outputs_remove_on(std::initializer_list<int> signals)
{
    for (const int signal : signals) {
        struct sigaction action = {};
        struct sigaction before = {};
        action.sa_handler = remove_and_end;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}
