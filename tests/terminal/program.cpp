#include "tests/terminal/program.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace {

struct channel {
    int ours = -1;
    int theirs = -1;
};

channel open_channel(output_kind kind)
{
    channel ends;
    int both[2];
    if (kind == output_kind::terminal) {
        struct termios raw = {};
        cfmakeraw(&raw);
        if (openpty(&ends.ours, &ends.theirs, nullptr, &raw, nullptr) != 0)
            throw std::runtime_error("no terminal");
    } else {
        if (pipe(both) != 0) throw std::runtime_error("no pipe");
        ends.ours = both[0];
        ends.theirs = both[1];
        if (kind == output_kind::nonblocking_pipe) fcntl(ends.theirs, F_SETFL, O_NONBLOCK);
    }
    fcntl(ends.ours, F_SETFD, FD_CLOEXEC);
    return ends;
}

/// Appends what can be read at once; closes the descriptor at its end.
void take(int &descriptor, std::string &text)
{
    char block[65536];
    const ssize_t size = read(descriptor, block, sizeof(block));
    if (size > 0) {
        text.append(block, static_cast<size_t>(size));
    } else if (size == 0 || errno != EINTR) { // a terminal whose other side is closed gives EIO
        close(descriptor);
        descriptor = -1;
    }
}

} // namespace

program::program(const std::vector<std::string> &arguments, output_kind output, output_kind errors, int input)
{
    const channel output_channel = open_channel(output);
    const channel errors_channel = open_channel(errors);
    std::vector<char *> argv = {const_cast<char *>(PROGRAM_PATH)};
    for (const std::string &argument : arguments) argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);

    process = fork();
    if (process == 0) {
        ::signal(SIGINT, SIG_DFL);
        if (input >= 0)
            dup2(input, STDIN_FILENO);
        else
            close(STDIN_FILENO);
        dup2(output_channel.theirs, STDOUT_FILENO);
        dup2(errors_channel.theirs, STDERR_FILENO);
        execv(PROGRAM_PATH, argv.data());
        _exit(127);
    }
    close(output_channel.theirs);
    close(errors_channel.theirs);
    output_end = output_channel.ours;
    errors_end = errors_channel.ours;
}

void program::signal(int number) const
{
    kill(process, number);
}

bool program::read_some()
{
    struct pollfd ends[] = {
        {output_end, POLLIN, 0},
        {errors_end, POLLIN, 0}
    };
    if (output_end < 0 && errors_end < 0) return false;
    if (poll(ends, 2, -1) < 0) return true;
    if (ends[0].revents != 0) take(output_end, result.output);
    if (ends[1].revents != 0) take(errors_end, result.errors);
    return true;
}

bool program::wait_for_output(const std::string &text)
{
    while (result.output.find(text) == std::string::npos)
        if (!read_some()) return false;
    return true;
}

program_result program::finish()
{
    while (read_some()) continue;
    waitpid(process, &result.wait_status, 0);
    return result;
}

long_stream::long_stream(unsigned megabytes)
{
    char name[] = "/tmp/mpeg_ts_long_XXXXXX";
    const int file = mkstemp(name);
    if (file < 0) throw std::runtime_error("no temporary file");
    path = name;

    // Sixteen packets make a round of the continuity counter.
    std::string block;
    for (unsigned i = 0; i < 16 * 320; ++i) {
        block += std::string("\x47\x01\x00", 3);
        block += static_cast<char>(0x10 | i % 16);
        block += std::string(184, '\x55');
    }
    for (size_t done = 0; done < size_t{megabytes} * 1000000; done += block.size())
        if (write(file, block.data(), block.size()) != static_cast<ssize_t>(block.size()))
            throw std::runtime_error("the temporary folder is full");
    close(file);
}

long_stream::~long_stream()
{
    unlink(path.c_str());
}
