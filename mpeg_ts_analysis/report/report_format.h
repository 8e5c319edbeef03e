// printf formats that are taken apart and checked against their arguments when the program is compiled, into
// pieces: some constant text, then one conversion.
//
// Conversions: %u %d %x %X (32 bits), %llu %lld %llx %llX (64 bits) and %p, with a width up to 255, "0" and
// "-" as the C library has them; %s, %c and %.Nf with N up to 9, without a width.
#pragma once

#include "mpeg_ts_analysis/report/report_buffer.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

enum class report_conversion : uint8_t {
    none, ///< only the constant text
    unsigned_decimal,
    signed_decimal,
    hexadecimal,
    upper_hexadecimal,
    text,
    character,
    pointer,
    fixed_point
};

/// Most characters of a number without a width: of "%f", of anything else (20 digits and a sign).
constexpr size_t report_fixed_point_limit = 330;
constexpr size_t report_integer_limit = 21;

struct report_piece {
    uint16_t literal_start = 0;  ///< offset of the constant text in the format
    uint16_t literal_length = 0; ///< bytes of constant text before the conversion
    report_conversion conversion = report_conversion::none;
    uint8_t width = 0;     ///< least number of characters
    uint8_t precision = 6; ///< digits behind the point of %f
    bool zero_padded = false;
    bool left_aligned = false;
    bool is_long = false; ///< 64 bits
};

/// What a format may do with an argument of type T.
template <typename T>
constexpr bool report_accepts(report_conversion conversion, bool is_long)
{
    switch (conversion) {
    case report_conversion::unsigned_decimal:
    case report_conversion::signed_decimal:
    case report_conversion::hexadecimal:
    case report_conversion::upper_hexadecimal:
        return std::is_integral_v<T> && (is_long ? sizeof(T) == 8 : sizeof(T) <= 4);
    case report_conversion::character:
        return std::is_integral_v<T> && sizeof(T) <= 4 && !is_long;
    case report_conversion::text:
        return std::is_same_v<T, const char *> || std::is_same_v<T, char *>;
    case report_conversion::pointer:
        return std::is_pointer_v<T>;
    case report_conversion::fixed_point:
        return std::is_same_v<T, double>;
    case report_conversion::none:
        break;
    }
    return false;
}

/// Whether a conversion is put in a field of a least width.
constexpr bool report_takes_width(report_conversion conversion)
{
    return conversion != report_conversion::none && conversion != report_conversion::text &&
           conversion != report_conversion::character && conversion != report_conversion::fixed_point;
}

/// Not constexpr on purpose: a format that reaches it does not compile, and the compiler shows the reason.
inline void report_format_error(const char * /*reason*/) {}

template <typename... arguments>
class report_format {
public:
    template <size_t size>
    consteval report_format(const char (&literal)[size]) : text(literal)
    {
        const bool accepted = (take_conversion<arguments>() && ...);
        if (!accepted) report_format_error("a conversion does not suit its argument, or is missing");
        take_literal();
        if (text[at] != '\0') report_format_error("a conversion has no argument");
        if (longest_line() > report_room_limit)
            report_format_error("the line may not fit in the buffer's room");
    }

    const char *text;
    report_piece pieces[sizeof...(arguments) + 1];

private:
    /// Most bytes of a line whose texts are empty: a text makes room for what follows it.
    constexpr size_t longest_line() const
    {
        size_t length = 0;
        for (const report_piece &taken : pieces) {
            length += taken.literal_length;
            if (taken.conversion == report_conversion::fixed_point)
                length += report_fixed_point_limit;
            else if (taken.conversion == report_conversion::character)
                length += 1;
            else if (report_takes_width(taken.conversion))
                length += taken.width > report_integer_limit ? taken.width : report_integer_limit;
        }
        return length;
    }

    constexpr void take_literal()
    {
        piece().literal_start = static_cast<uint16_t>(at);
        while (text[at] != '\0' && text[at] != '%') ++at;
        piece().literal_length = static_cast<uint16_t>(at - piece().literal_start);
    }

    template <typename argument>
    constexpr bool take_conversion()
    {
        take_literal();
        if (text[at++] != '%') return false;
        for (; text[at] == '0' || text[at] == '-'; ++at) {
            if (text[at] == '0') piece().zero_padded = true;
            if (text[at] == '-') piece().left_aligned = true;
        }
        piece().width = take_number();
        const bool has_precision = text[at] == '.';
        if (has_precision) {
            ++at;
            piece().precision = take_number();
        }
        piece().is_long = text[at] == 'l' && text[at + 1] == 'l';
        if (piece().is_long) at += 2;
        piece().conversion = conversion_of(text[at++]);
        const report_piece &taken = pieces[index++];
        if (taken.width != 0 && !report_takes_width(taken.conversion))
            report_format_error("the conversion takes no width");
        if (has_precision && (taken.conversion != report_conversion::fixed_point || taken.precision > 9))
            report_format_error("only %f takes a precision, up to 9");
        return report_accepts<argument>(taken.conversion, taken.is_long);
    }

    constexpr uint8_t take_number()
    {
        unsigned number = 0;
        for (; text[at] >= '0' && text[at] <= '9'; ++at)
            number = 10 * number + static_cast<unsigned>(text[at] - '0');
        if (number > UINT8_MAX) report_format_error("a number above 255");
        return static_cast<uint8_t>(number);
    }

    static constexpr report_conversion conversion_of(char letter)
    {
        switch (letter) {
        case 'u':
            return report_conversion::unsigned_decimal;
        case 'd':
            return report_conversion::signed_decimal;
        case 'x':
            return report_conversion::hexadecimal;
        case 'X':
            return report_conversion::upper_hexadecimal;
        case 's':
            return report_conversion::text;
        case 'c':
            return report_conversion::character;
        case 'p':
            return report_conversion::pointer;
        case 'f':
            return report_conversion::fixed_point;
        default:
            return report_conversion::none;
        }
    }

    constexpr report_piece &piece() { return pieces[index]; }

    size_t at = 0;
    size_t index = 0;
};
