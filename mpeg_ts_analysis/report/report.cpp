#include "mpeg_ts_analysis/report/report.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <unistd.h>

char report_bytes[report_buffer_size];
char *report_write = report_bytes;

namespace {

std::string *diverted_to = nullptr;

[[noreturn]] void stop_unwritable(int error)
{
    if (error == EPIPE) {
        // SIGPIPE was ignored, or it would have ended the program already: end as it would have.
        std::signal(SIGPIPE, SIG_DFL);
        std::raise(SIGPIPE);
    }
    std::fprintf(stderr, "mpeg_ts_analysis: cannot write the report: %s\n", std::strerror(error));
    _exit(1);
}

void wait_until_writable()
{
    pollfd output = {STDOUT_FILENO, POLLOUT, 0};
    poll(&output, 1, -1);
}

void write_out(const char *p, const char *fence)
{
    while (p < fence) {
        const ssize_t written = write(STDOUT_FILENO, p, static_cast<size_t>(fence - p));
        if (written >= 0)
            p += written;
        else if (errno == EAGAIN) // whoever shares the output has made it non-blocking
            wait_until_writable();
        else if (errno != EINTR)
            stop_unwritable(errno);
    }
}

char *put_at(char *w, const char *bytes, size_t length)
{
    std::memcpy(w, bytes, length);
    return w + length;
}

void put_bytes(const char *bytes, size_t length)
{
    while (length > report_room_limit) {
        report_put(put_at(report_room(), bytes, report_room_limit));
        bytes += report_room_limit;
        length -= report_room_limit;
    }
    report_put(put_at(report_room(), bytes, length));
}

} // namespace

char *report_put_text(char *w, const char *text)
{
    const char *const last_place = report_bytes + (report_buffer_size - report_room_limit);
    const size_t length = std::strlen(text);

    if (w <= last_place && length <= static_cast<size_t>(last_place - w)) return put_at(w, text, length);
    report_put(w);
    put_bytes(text, length);
    return report_room();
}

void report_flush()
{
    // Emptied first: a write that fails must not find the same bytes again on its way out.
    char *const end = report_write;
    report_write = report_bytes;
    if (diverted_to != nullptr)
        diverted_to->append(report_bytes, end);
    else
        write_out(report_bytes, end);
}

void report_close()
{
    report_flush();
    // Standard output that was never open has lost nothing, or the flush would have said so.
    if (close(STDOUT_FILENO) != 0 && errno != EBADF && errno != EINTR) stop_unwritable(errno);
}

void report_divert(std::string *sink)
{
    report_flush();
    diverted_to = sink;
}
