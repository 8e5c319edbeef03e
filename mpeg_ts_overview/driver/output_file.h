// One output: a file that appears when it is whole, something that is written in place, or standard output.
#pragma once

#include <string>
#include <string_view>
#include <sys/stat.h>

class output_file {
public:
    output_file() = default;
    /// Removes what was written beside the place and not finished.
    ~output_file();
    output_file(const output_file &) = delete;
    output_file &operator=(const output_file &) = delete;

    /// Opens the output at path, "-" being standard output. A place that is empty or holds a regular file is
    /// written to by finish(); anything else, as pipes, devices and symbolic links, as the text comes. input:
    /// what fstat() says of the input, which is never written to. Returns false when it cannot be opened;
    /// error() says why.
    bool open(const std::string &path, const struct stat &input);

    /// Returns false when this or something before could not be written.
    bool write(std::string_view text);

    /// Puts everything in its place. Returns false when that fails: then the place holds what it held before.
    bool finish();

    /// What went wrong, in words: "cannot write 'out.json': No space left on device".
    const std::string &error() const { return error_; }

private:
    bool open_beside(const struct stat *replaced);
    bool open_in_place(const struct stat &input);
    bool flush();
    void discard();
    bool fail(int error_number);
    bool fail(const char *reason);

    std::string path_;
    std::string beside_; ///< path of the file that is renamed at the end; empty when there is none
    std::string buffer_;
    std::string error_;
    int descriptor_ = -1;
    bool holds_what_was_ = false; ///< the file that is written in place is not emptied yet
};
