#include "mpeg_ts_analysis/report/report.h"

#include "mpeg_ts_analysis/report/fixed_point.h"
#include "mpeg_ts_analysis/report/put_number.h"
#include "mpeg_ts_analysis/report/report_buffer.h"

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

void put_bytes(const char *bytes, size_t length)
{
    while (length > report_room_limit) {
        std::memcpy(report_room(), bytes, report_room_limit);
        report_put(report_write + report_room_limit);
        bytes += report_room_limit;
        length -= report_room_limit;
    }
    std::memcpy(report_room(), bytes, length);
    report_put(report_write + length);
}

/// Puts a number of count digits (in decimal or by the digits given) in its field: a sign or "0x" stands
/// before zeros and behind blanks.
char *put_in_field(char *w, const report_piece &piece, const char *prefix, unsigned long long number,
                   unsigned count, const char *hex_digit_names)
{
    const size_t prefix_length = std::strlen(prefix);
    const size_t length = prefix_length + count;
    const size_t padding = piece.width > length ? piece.width - length : 0;

    if (padding > 0 && !piece.left_aligned && !piece.zero_padded) {
        std::memset(w, ' ', padding);
        w += padding;
    }
    while (*prefix != '\0') *w++ = *prefix++;
    if (piece.zero_padded && !piece.left_aligned) count += static_cast<unsigned>(padding);
    w = hex_digit_names != nullptr ? put_hex_digits(w, number, count, hex_digit_names)
                                   : put_decimal_digits(w, number, count);
    if (padding > 0 && piece.left_aligned) {
        std::memset(w, ' ', padding);
        w += padding;
    }
    return w;
}

char *put_signed(char *w, const report_piece &piece, long long number)
{
    const auto bits = static_cast<unsigned long long>(number);
    const unsigned long long magnitude = number < 0 ? 0 - bits : bits;
    return put_in_field(w, piece, number < 0 ? "-" : "", magnitude, decimal_digits(magnitude), nullptr);
}

char *put_number(char *w, const report_piece &piece, const report_argument &argument)
{
    const unsigned long long number = argument.number;

    switch (piece.conversion) {
    case report_conversion::hexadecimal:
        return put_in_field(w, piece, "", number, hex_digits(number), lower_hex_digits);
    case report_conversion::upper_hexadecimal:
        return put_in_field(w, piece, "", number, hex_digits(number), upper_hex_digits);
    case report_conversion::signed_decimal:
        return put_signed(w, piece,
                          piece.is_long ? static_cast<long long>(number) : static_cast<int>(number));
    case report_conversion::pointer: {
        const auto address = reinterpret_cast<uintptr_t>(argument.pointer);
        return put_in_field(w, piece, "0x", address, hex_digits(address), lower_hex_digits);
    }
    case report_conversion::fixed_point:
        return put_fixed_point(w, argument.real, piece.precision);
    case report_conversion::character:
        *w = static_cast<char>(number);
        return w + 1;
    default:
        return put_in_field(w, piece, "", number, decimal_digits(number), nullptr);
    }
}

} // namespace

void report_pieces(const char *text, const report_piece *pieces, size_t piece_count,
                   const report_argument *arguments)
{
    for (size_t i = 0; i < piece_count; ++i) {
        const report_piece &piece = pieces[i];
        char *w = report_room();
        std::memcpy(w, text + piece.literal_start, piece.literal_length);
        w += piece.literal_length;
        if (piece.conversion == report_conversion::text) {
            report_put(w);
            const char *const string = static_cast<const char *>(arguments[i].pointer);
            put_bytes(string, std::strlen(string));
        } else {
            report_put(piece.conversion == report_conversion::none ? w : put_number(w, piece, arguments[i]));
        }
    }
}

void report_line(const char *line)
{
    put_bytes(line, std::strlen(line));
    put_bytes("\n", 1);
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
