// Files that are removed when a signal ends the program before they are whole.
#pragma once

#include <csignal>
#include <initializer_list>
#include <string>

/// No signal comes while one of these lives.
class signals_held {
public:
    signals_held();
    ~signals_held();
    signals_held(const signals_held &) = delete;
    signals_held &operator=(const signals_held &) = delete;

private:
    sigset_t before;
};

/// Remembers the path of a file that is not whole yet, at most 4 at a time. Signals are held by the caller,
/// who creates the file meanwhile.
void unfinished_output_add(const std::string &path);

/// Forgets a path. Signals are held by the caller, who renames or removes the file meanwhile.
void unfinished_output_forget(const std::string &path);

/// Removes the files that are remembered. Async-signal-safe.
void unfinished_outputs_remove();

/// From here on each of these signals that is not ignored removes the files and then ends the program as
/// ever.
void unfinished_outputs_remove_on(std::initializer_list<int> signals);
