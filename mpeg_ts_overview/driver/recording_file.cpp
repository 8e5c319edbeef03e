#include "mpeg_ts_overview/driver/recording_file.h"

#include "mpeg_ts_overview/driver/interrupt.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds between_lines(200);

double seconds(std::chrono::steady_clock::duration time)
{
    return std::chrono::duration<double>(time).count();
}

} // namespace

recording_file::~recording_file()
{
    end_progress();
    if (descriptor > STDIN_FILENO) close(descriptor);
}

void recording_file::end_progress()
{
    if (progress_shown) std::fputs("\r\033[K", stderr);
    shows_progress = progress_shown = false;
}

bool recording_file::open(const std::string &path)
{
    if (path == "-") {
        descriptor = STDIN_FILENO;
    } else {
        while ((descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC)) < 0)
            if (errno != EINTR || interrupt_noted()) return false;
    }
    is_regular = fstat(descriptor, &identity_) == 0 && S_ISREG(identity_.st_mode);
    if (is_regular) size = static_cast<uint64_t>(identity_.st_size);
    shows_progress = size != 0 && isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) == 0;
    started = shown_at = std::chrono::steady_clock::now();
    return true;
}

ptrdiff_t recording_file::read(uint8_t *to, size_t room)
{
    if (shows_progress) show_progress();
    ssize_t got = -1;
    while (wait_to_read() && (got = ::read(descriptor, to, room)) < 0 && errno == EINTR) {
    }
    if (interrupt_noted()) return 0;
    if (got < 0) read_error = errno;
    if (got > 0) done += static_cast<uint64_t>(got);
    return got;
}

/// Returns false when an interrupt was noted. Nobody waits for a regular file: there is always something, or
/// the end.
bool recording_file::wait_to_read() const
{
    return is_regular ? !interrupt_noted() : interrupt_wait_to_read(descriptor);
}

/// Draws percent, rate and time left, at most 5 times a second.
void recording_file::show_progress()
{
    const auto now = std::chrono::steady_clock::now();
    if (now - shown_at < between_lines) return;
    shown_at = now;
    progress_shown = true;

    const double part = std::min(static_cast<double>(done) / static_cast<double>(size), 1.0);
    const double rate = static_cast<double>(done) / seconds(now - started);
    const auto left =
        static_cast<unsigned long>(rate > 0.0 ? (1.0 - part) * static_cast<double>(size) / rate : 0.0);
    std::fprintf(stderr, "\r%3.0f%%  %.1f MB/s  %lu:%02lu left\033[K", 100.0 * part, rate / 1e6, left / 60,
                 left % 60);
}
