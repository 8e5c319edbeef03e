#include "tests/completion/interactive_shell.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

const std::string prompt = "what now> ";
constexpr auto patience = 30s;

void add_to_file(const std::string &path, const std::string &text)
{
    std::ofstream(path, std::ios::app) << text;
}

std::string content_of(const std::string &path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The words that start a shell which knows nothing but its completion.
std::vector<std::string> command_of(const std::string &shell, const std::string &folder)
{
    if (shell == "bash") return {"bash", "--noprofile", "--rcfile", folder + "/bashrc", "-i"};
    if (shell == "zsh") return {"zsh", "--no-globalrcs", "-i"};
    return {"fish", "--no-config", "--private", "--init-command", "source " + folder + "/fishrc"};
}

[[noreturn]] void become_shell(const std::string &shell, const std::string &folder)
{
    const std::string path = folder + "/bin:" + std::getenv("PATH");
    std::vector<std::string> words = command_of(shell, folder);
    std::vector<char *> argv;
    for (std::string &word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    setenv("PATH", path.c_str(), 1);
    for (const char *const name : {"HOME", "ZDOTDIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        setenv(name, folder.c_str(), 1);
    setenv("TERM", "xterm", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    if (chdir((folder + "/recorded").c_str()) == 0) execvp(argv[0], argv.data());
    _exit(127);
}

} // namespace

completion_folder::completion_folder()
{
    char name[] = "/tmp/mpeg_ts_completion_XXXXXX";
    if (mkdtemp(name) == nullptr) throw std::runtime_error("no temporary folder");
    path = name;

    const std::string completions = COMPLETIONS_PATH;
    std::filesystem::create_directory(path + "/bin");
    for (const std::string program : {"mpeg_ts_analysis", "mpeg_ts_overview", "mpeg_ts_archive"}) {
        add_to_file(path + "/bashrc", "source '" + completions + "/" + program + ".bash'\n");
        add_to_file(path + "/fishrc", "source '" + completions + "/" + program + ".fish'\n");
        // What it has been called with is moved to its place when it is complete.
        add_to_file(path + "/bin/" + program, "#!/bin/sh\nprintf '|%s' \"$@\" >'" + path + "/call'\nmv '" +
                                                  path + "/call' '" + path + "/called'\n");
        std::filesystem::permissions(path + "/bin/" + program, std::filesystem::perms::owner_all);
    }
    add_to_file(path + "/bashrc", "PS1='" + prompt + "'\n");
    add_to_file(path + "/fishrc", "function fish_prompt\necho -n '" + prompt + "'\nend\nset fish_greeting\n");
    add_to_file(path + "/.zshrc", "fpath=('" + completions +
                                      "' $fpath)\nautoload -U compinit\ncompinit -u -D\nPS1='" + prompt +
                                      "'\n");

    std::filesystem::create_directories(path + "/recorded/recordings");
    for (const char *const file : {"a stream.ts", "clip.M2TS", "night.mts", "notes.txt", "record.trp",
                                   "recordings/index.txt", "recordings/inner.ts"})
        add_to_file(path + "/recorded/" + file, "");
}

completion_folder::~completion_folder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

interactive_shell::interactive_shell(const std::string &name, const completion_folder &folder)
    : calls_path(folder.path + "/called")
{
    const struct winsize size = {50, 200, 0, 0};
    process = forkpty(&terminal, nullptr, nullptr, &size);
    if (process < 0) throw std::runtime_error("no terminal");
    if (process == 0) become_shell(name, folder.path);
}

interactive_shell::~interactive_shell()
{
    close(terminal);
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

template <typename condition>
bool interactive_shell::wait_until(condition holds)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end) return false;
        struct pollfd readable = {terminal, POLLIN, 0};
        char block[4096];
        if (poll(&readable, 1, 10) <= 0) continue;
        const ssize_t size = read(terminal, block, sizeof(block));
        if (size <= 0) return holds();
        shown.append(block, static_cast<size_t>(size));
    }
    return true;
}

std::string interactive_shell::arguments_of(const std::string &line)
{
    if (!wait_until([&] { return shown.find(prompt) != std::string::npos; }))
        return "no prompt, but: " + shown;
    shown.clear();
    std::filesystem::remove(calls_path);

    const std::string typed = line + "\r";
    if (write(terminal, typed.data(), typed.size()) != static_cast<ssize_t>(typed.size()))
        return "nobody reads";
    if (!wait_until([&] { return std::filesystem::exists(calls_path); })) return "not called, but: " + shown;
    return content_of(calls_path);
}

bool shell_is_here(const std::string &name)
{
    return std::system(("command -v " + name + " >/dev/null").c_str()) == 0;
}
