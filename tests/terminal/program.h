// The program as its users start it: a process of its own whose output may be a terminal.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

/// What an end of the program's output is.
enum class output_kind { pipe, nonblocking_pipe, terminal };

struct program_result {
    std::string output; ///< standard output
    std::string errors; ///< standard error
    int wait_status = 0;
};

class program {
public:
    /// Starts the program with these arguments; standard input is the descriptor, or closed when it is below
    /// 0.
    program(const std::vector<std::string> &arguments, output_kind output, output_kind errors,
            int input = -1);

    void signal(int number) const;

    /// Reads standard output until it holds the text or the program ends. Returns false when the text did not
    /// come.
    bool wait_for_output(const std::string &text);

    /// Reads all that is left and waits for the end.
    program_result finish();

private:
    /// Takes what has come on either output. Returns false when both have ended.
    bool read_some();

    pid_t process;
    int output_end;
    int errors_end;
    program_result result;
};

/// A file in the temporary folder, gone with its owner, that holds a stream of this many megabytes of one
/// PID's packets.
class long_stream {
public:
    explicit long_stream(unsigned megabytes);
    ~long_stream();
    long_stream(const long_stream &) = delete;
    long_stream &operator=(const long_stream &) = delete;

    std::string path;
};
