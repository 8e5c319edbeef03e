// A shell at a terminal, as somebody types into it.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

/// A folder with recordings to complete, the start-up files of the shells, and a stand-in for the program
/// that tells what it has been called with. Gone with its owner.
class completion_folder {
public:
    completion_folder();
    ~completion_folder();
    completion_folder(const completion_folder &) = delete;
    completion_folder &operator=(const completion_folder &) = delete;

    std::string path;
};

class interactive_shell {
public:
    /// Starts "bash", "zsh" or "fish" in the folder, with the completions for that shell.
    interactive_shell(const std::string &name, const completion_folder &folder);
    ~interactive_shell();
    interactive_shell(const interactive_shell &) = delete;
    interactive_shell &operator=(const interactive_shell &) = delete;

    /// Types a line, "\t" for each press of the tabulator key, and Enter. Returns the arguments that the
    /// program was called with, each behind a bar, or what the terminal shows when it was not called in time.
    std::string arguments_of(const std::string &line);

private:
    /// Reads what the terminal shows until this holds; false when that takes too long.
    template <typename condition>
    bool wait_until(condition holds);

    std::string calls_path;
    std::string shown;
    pid_t process;
    int terminal;
};

/// Whether such a shell is installed.
bool shell_is_here(const std::string &name);
