#include "mpeg_ts_analysis/report/report.h"

#include "mpeg_ts_analysis/report/fixed_point.h"
#include "mpeg_ts_analysis/report/report_buffer.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <unistd.h>

char report_bytes[report_buffer_size];
char *report_write = report_bytes;

namespace {

std::string *diverted_to = nullptr;

constexpr char lower_digits[] = "0123456789abcdef";
constexpr char upper_digits[] = "0123456789ABCDEF";

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

void write_out(const char *p, const char *fence)
{
    while (p < fence) {
        const ssize_t written = write(STDOUT_FILENO, p, static_cast<size_t>(fence - p));
        if (written >= 0)
            p += written;
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

/// Digits of a number, right-aligned at the end of a place of 24 bytes.
struct digits {
    char place[24];
    char *start = place + sizeof(place);

    void put_decimal(unsigned long long number)
    {
        do *--start = static_cast<char>('0' + number % 10);
        while ((number /= 10) != 0);
    }

    void put_hexadecimal(unsigned long long number, const char *digit_names)
    {
        do *--start = digit_names[number & 0xF];
        while ((number >>= 4) != 0);
    }

    size_t length() const { return static_cast<size_t>(place + sizeof(place) - start); }
};

/// Puts a converted value in its field: the sign and "0x" stand before zeros and behind blanks.
char *put_field(char *w, const report_piece &piece, const char *prefix, size_t prefix_length,
                const char *body, size_t body_length)
{
    const size_t length = prefix_length + body_length;
    const size_t padding = piece.width > length ? piece.width - length : 0;
    const bool zeros = piece.zero_padded && !piece.left_aligned;

    if (!zeros && !piece.left_aligned)
        for (size_t i = 0; i < padding; ++i) *w++ = ' ';
    for (size_t i = 0; i < prefix_length; ++i) *w++ = prefix[i];
    if (zeros)
        for (size_t i = 0; i < padding; ++i) *w++ = '0';
    for (size_t i = 0; i < body_length; ++i) *w++ = body[i];
    if (piece.left_aligned)
        for (size_t i = 0; i < padding; ++i) *w++ = ' ';
    return w;
}

char *put_number(char *w, const report_piece &piece, unsigned long long number)
{
    digits text;
    const char *prefix = "";
    size_t prefix_length = 0;

    switch (piece.conversion) {
    case report_conversion::hexadecimal:
        text.put_hexadecimal(number, lower_digits);
        break;
    case report_conversion::upper_hexadecimal:
        text.put_hexadecimal(number, upper_digits);
        break;
    case report_conversion::pointer:
        prefix = "0x";
        prefix_length = 2;
        text.put_hexadecimal(number, lower_digits);
        break;
    case report_conversion::signed_decimal:
        if (static_cast<long long>(number) < 0) {
            prefix = "-";
            prefix_length = 1;
            number = 0 - number;
        }
        text.put_decimal(number);
        break;
    default:
        text.put_decimal(number);
        break;
    }
    return put_field(w, piece, prefix, prefix_length, text.start, text.length());
}

} // namespace

void report_pieces(const char *text, const report_piece *pieces, size_t piece_count,
                   const report_argument *arguments)
{
    for (size_t i = 0; i < piece_count; ++i) {
        const report_piece &piece = pieces[i];
        put_bytes(text + piece.literal_start, piece.literal_length);
        char *const w = report_room();
        switch (piece.conversion) {
        case report_conversion::none:
            break;
        case report_conversion::text: {
            const char *const string = static_cast<const char *>(arguments[i].pointer);
            put_bytes(string, std::strlen(string));
            break;
        }
        case report_conversion::character:
            *w = static_cast<char>(arguments[i].number);
            report_put(w + 1);
            break;
        case report_conversion::fixed_point:
            report_put(put_fixed_point(w, arguments[i].real, piece.precision));
            break;
        case report_conversion::pointer:
            report_put(put_number(w, piece, reinterpret_cast<uintptr_t>(arguments[i].pointer)));
            break;
        default:
            report_put(put_number(w, piece, arguments[i].number));
            break;
        }
    }
}

void report_line(const char *line)
{
    put_bytes(line, std::strlen(line));
    put_bytes("\n", 1);
}

void report_text(const uint8_t *start, const uint8_t *fence)
{
    const auto length = static_cast<size_t>(fence - start);
    if (length == 0) return;
    const void *const zero = std::memchr(start, 0, length);
    const auto *const end = zero != nullptr ? static_cast<const uint8_t *>(zero) : fence;
    put_bytes(reinterpret_cast<const char *>(start), static_cast<size_t>(end - start));
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

void report_divert(std::string *sink)
{
    report_flush();
    diverted_to = sink;
}
