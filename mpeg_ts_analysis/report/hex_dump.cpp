#include "mpeg_ts_analysis/report/hex_dump.h"

#include "mpeg_ts_analysis/report/report_buffer.h"

#include <array>
#include <cstring>

namespace {

constexpr long row_size = 16;

/// "00" to "ff", each with a blank behind it.
constexpr auto hex_of_byte = [] {
    constexpr char digit_names[] = "0123456789abcdef";
    std::array<std::array<char, 4>, 256> table{};
    for (size_t b = 0; b < 256; ++b) table[b] = {digit_names[b >> 4], digit_names[b & 0xF], ' ', '\0'};
    return table;
}();

char *put_hex(char *w, uint8_t byte)
{
    std::memcpy(w, hex_of_byte[byte].data(), 4);
    return w + 3;
}

char *put_prefixed_hex(char *w, uint8_t byte)
{
    w[0] = '0';
    w[1] = 'x';
    return put_hex(w + 2, byte);
}

char *put_blanks(char *w, size_t count)
{
    std::memset(w, ' ', count);
    return w + count;
}

char text_of_byte(uint8_t byte, uint8_t last)
{
    return byte >= 0x20 && byte <= last ? static_cast<char>(byte) : '.';
}

const uint8_t *row_fence(const uint8_t *p, const uint8_t *fence)
{
    return fence - p < row_size ? fence : p + row_size;
}

} // namespace

void report_hex_rows(const uint8_t *p, const uint8_t *fence)
{
    while (p < fence) {
        char *w = put_blanks(report_room(), 4);
        for (const uint8_t *const end = row_fence(p, fence); p < end; ++p) w = put_hex(w, *p);
        *w++ = '\n';
        report_put(w);
    }
}

void report_hex_and_text_rows(const uint8_t *p, const uint8_t *fence)
{
    while (p < fence) {
        char *w = put_blanks(report_room(), 4);
        const uint8_t *const end = row_fence(p, fence);
        const bool full = end - p == row_size;
        for (; p < end; ++p) w = put_hex(w, *p);
        if (full)
            for (const uint8_t *q = end - row_size; q < end; ++q) *w++ = text_of_byte(*q, 0x7E);
        *w++ = '\n';
        report_put(w);
    }
}

void report_table_rows(const uint8_t *p, const uint8_t *fence)
{
    while (p < fence) {
        char *w = put_blanks(report_room(), 3);
        const uint8_t *const end = row_fence(p, fence);
        const auto absent = static_cast<size_t>(row_size - (end - p));
        for (const uint8_t *q = p; q < end; ++q) w = put_hex(w, *q);
        w = put_blanks(w, 3 * absent + 2);
        for (; p < end; ++p) *w++ = text_of_byte(*p, 0x7F);
        w = put_blanks(w, absent);
        *w++ = '\n';
        report_put(w);
    }
}

void report_descriptor_rows(const uint8_t *p, const uint8_t *fence)
{
    while (p < fence) {
        char *w = put_blanks(report_room(), 12);
        for (const uint8_t *const end = row_fence(p, fence); p < end; ++p) w = put_prefixed_hex(w, *p);
        *w++ = '\n';
        report_put(w);
    }
}

void report_hex_bytes(const uint8_t *p, const uint8_t *fence)
{
    for (; p < fence; ++p) report_put(put_hex(report_room(), *p));
}

void report_hex_list(const uint8_t *p, const uint8_t *fence)
{
    for (; p < fence; ++p) {
        char *const w = put_prefixed_hex(report_room(), *p);
        report_put(p + 1 < fence ? w : w - 1);
    }
}
