#include "mpeg_ts_overview/driver/output_file.h"

#include "mpeg_ts_overview/driver/unfinished_outputs.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr size_t buffer_size = 65536;
constexpr unsigned names_tried = 100;
constexpr mode_t mode_of_new_files = 0666; ///< less the umask, as ever

bool holds_bytes(const struct stat &file)
{
    return S_ISREG(file.st_mode) || S_ISBLK(file.st_mode);
}

bool is_same_file(const struct stat &a, const struct stat &b)
{
    return holds_bytes(a) && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// A name beside path that nobody else uses.
std::string name_beside(const std::string &path, unsigned attempt)
{
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    return fmt::format("{}.mpeg_ts_overview.{}.{}", folder, getpid(), attempt);
}

void wait_until_writable(int descriptor)
{
    pollfd output = {descriptor, POLLOUT, 0};
    poll(&output, 1, -1);
}

/// Returns 0 or the errno.
int write_all(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written >= 0)
            text.remove_prefix(static_cast<size_t>(written));
        else if (errno == EAGAIN) // whoever shares the output has made it non-blocking
            wait_until_writable(descriptor);
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace

output_file::~output_file()
{
    discard();
}

bool output_file::open(const std::string &path, const struct stat &input)
{
    path_ = path;
    if (path == "-") {
        struct stat output = {};
        descriptor_ = STDOUT_FILENO;
        if (fstat(descriptor_, &output) != 0) return fail(errno);
        return is_same_file(output, input) ? fail("it is the input") : true;
    }

    struct stat place = {};
    if (lstat(path.c_str(), &place) != 0) return errno == ENOENT ? open_beside(nullptr) : fail(errno);
    if (is_same_file(place, input)) return fail("it is the input");
    return S_ISREG(place.st_mode) ? open_beside(&place) : open_in_place(input);
}

/// replaced: the file that will be, or null.
bool output_file::open_beside(const struct stat *replaced)
{
    // A file that may not be written to is not replaced either.
    if (replaced != nullptr && faccessat(AT_FDCWD, path_.c_str(), W_OK, AT_EACCESS) != 0) return fail(errno);

    const signals_held held;
    for (unsigned attempt = 0; attempt < names_tried && descriptor_ < 0; ++attempt) {
        beside_ = name_beside(path_, attempt);
        descriptor_ = ::open(beside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode_of_new_files);
        if (descriptor_ < 0 && errno != EEXIST) break;
    }
    if (descriptor_ < 0) {
        beside_.clear();
        return fail(errno);
    }
    unfinished_output_add(beside_);
    if (replaced != nullptr) {
        // Only root can keep the owner of somebody else's file; what counts is that it is there.
        if (fchown(descriptor_, replaced->st_uid, replaced->st_gid) != 0) errno = 0;
        if (fchmod(descriptor_, replaced->st_mode & 0777) != 0) return fail(errno);
    }
    return true;
}

bool output_file::open_in_place(const struct stat &input)
{
    // Not emptied before it is known what it is, and what comes instead.
    descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, mode_of_new_files);
    struct stat place = {};
    if (descriptor_ < 0 || fstat(descriptor_, &place) != 0) return fail(errno);
    if (is_same_file(place, input)) return fail("it is the input");

    // A name of standard output is written to where that stands: something else may be on its way there.
    struct stat output = {};
    if (fstat(STDOUT_FILENO, &output) == 0 && is_same_file(place, output)) {
        ::close(descriptor_);
        descriptor_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        return descriptor_ >= 0 || fail(errno);
    }
    holds_what_was_ = S_ISREG(place.st_mode);
    return true;
}

bool output_file::write(std::string_view text)
{
    if (!error_.empty()) return false;
    buffer_ += text;
    return buffer_.size() < buffer_size || flush();
}

bool output_file::flush()
{
    if (std::exchange(holds_what_was_, false) && ftruncate(descriptor_, 0) != 0) return fail(errno);
    const int error_number = write_all(descriptor_, buffer_);
    buffer_.clear();
    return error_number == 0 || fail(error_number);
}

bool output_file::finish()
{
    if (!error_.empty() || !flush()) return false;
    if (path_ == "-") return true;

    const int descriptor = descriptor_;
    descriptor_ = -1;
    if (close(descriptor) != 0) return fail(errno);
    if (beside_.empty()) return true;

    const signals_held held;
    if (rename(beside_.c_str(), path_.c_str()) != 0) return fail(errno);
    unfinished_output_forget(beside_);
    beside_.clear();
    return true;
}

void output_file::discard()
{
    if (descriptor_ >= 0 && path_ != "-") close(descriptor_);
    descriptor_ = -1;
    if (beside_.empty()) return;
    const signals_held held;
    unlink(beside_.c_str());
    unfinished_output_forget(beside_);
    beside_.clear();
}

bool output_file::fail(int error_number)
{
    return fail(std::strerror(error_number));
}

bool output_file::fail(const char *reason)
{
    error_ = path_ == "-" ? fmt::format("cannot write to standard output: {}", reason)
                          : fmt::format("cannot write '{}': {}", path_, reason);
    discard();
    return false;
}
