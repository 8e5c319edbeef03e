// A format put down with its arguments. The format's pieces are constants wherever this is inlined, so that a
// line is straight code: constant text, the digits of a number, constant text.
#pragma once

#include "mpeg_ts_analysis/report/fixed_point.h"
#include "mpeg_ts_analysis/report/put_field.h"
#include "mpeg_ts_analysis/report/report_buffer.h"
#include "mpeg_ts_analysis/report/report_format.h"

#include <cstring>
#include <utility>

/// Puts a text of any length behind w, which points into the buffer. Returns a place for at least
/// report_room_limit more bytes.
char *report_put_text(char *w, const char *text);

template <typename number_type>
[[gnu::always_inline]] inline char *report_put_signed(char *w, number_type number, number_field field)
{
    using unsigned_type = std::make_unsigned_t<number_type>;
    const auto bits = static_cast<unsigned_type>(number);
    if (number >= 0) return put_unsigned_field(w, bits, field);
    return put_decimal_field(w, unsigned_type{0} - bits, true, field);
}

/// A number of 32 bits or less is promoted and taken as the C library's conversions would read it.
template <typename number_type>
[[gnu::always_inline]] inline char *report_put_number(char *w, report_piece piece, number_type value)
{
    using unsigned_type = std::conditional_t<sizeof(value) == 8, unsigned long long, unsigned>;
    const auto number = static_cast<unsigned_type>(+value);
    const number_field field = {piece.width, piece.zero_padded, piece.left_aligned};

    switch (piece.conversion) {
    case report_conversion::character:
        *w = static_cast<char>(number);
        return w + 1;
    case report_conversion::hexadecimal:
        return put_lower_hex_field(w, number, field);
    case report_conversion::upper_hexadecimal:
        return put_hex_field(w, number, field, upper_hex_digits);
    case report_conversion::signed_decimal:
        return report_put_signed(w, static_cast<std::make_signed_t<unsigned_type>>(number), field);
    default:
        return put_unsigned_field(w, number, field);
    }
}

[[gnu::always_inline]] inline char *report_put_literal(char *w, const char *text, report_piece piece)
{
    std::memcpy(w, text + piece.literal_start, piece.literal_length);
    return w + piece.literal_length;
}

template <typename argument>
[[gnu::always_inline]] inline char *report_put_piece(char *w, const char *text, report_piece piece,
                                                     argument value)
{
    w = report_put_literal(w, text, piece);
    if constexpr (std::is_floating_point_v<argument>)
        return put_fixed_point(w, value, piece.precision);
    else if constexpr (!std::is_pointer_v<argument>)
        return report_put_number(w, piece, value);
    else if (piece.conversion == report_conversion::pointer)
        return put_pointer_field(w, value, {piece.width, piece.zero_padded, piece.left_aligned});
    else
        return report_put_text(w, static_cast<const char *>(static_cast<const void *>(value)));
}

template <typename... A, size_t... place>
[[gnu::always_inline]] inline void report_put_pieces(const report_format<A...> format,
                                                     std::index_sequence<place...>, A... values)
{
    char *w = report_room();
    ((w = report_put_piece(w, format.text, format.pieces[place], values)), ...);
    report_put(report_put_literal(w, format.text, format.pieces[sizeof...(A)]));
}
