// The recording on a file descriptor: a file, a pipe, a device, standard input.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/stat.h>

class recording_file {
public:
    recording_file() = default;
    recording_file(const recording_file &) = delete;
    recording_file &operator=(const recording_file &) = delete;
    ~recording_file();

    /// Opens path, "-" for standard input. Returns false, with errno set, when that fails.
    bool open(const std::string &path);

    /// Reads up to size bytes. Returns how many, 0 at the end or when an interrupt was noted, -1 with error()
    /// when reading fails.
    ptrdiff_t read(uint8_t *to, size_t size);

    /// Takes the progress line away.
    void end_progress();

    /// What fstat() says of it.
    const struct stat &identity() const { return identity_; }

    /// errno of the read that failed, 0 when none did.
    int error() const { return read_error; }

private:
    bool wait_to_read() const;
    void show_progress();

    struct stat identity_ = {};
    int descriptor = -1;
    int read_error = 0;
    bool is_regular = false;
    uint64_t size = 0; ///< of a regular file when it was opened, else 0
    uint64_t done = 0; ///< bytes read
    bool shows_progress = false;
    bool progress_shown = false;
    std::chrono::steady_clock::time_point started;
    std::chrono::steady_clock::time_point shown_at;
};
