#include "mpeg_ts_analysis/report/put_field.h"

namespace {

char *put_blanks(char *w, size_t count)
{
    std::memset(w, ' ', count);
    return w + count;
}

/// Puts a number of count digits (in decimal or by the digits given) in its field: a sign or "0x" stands
/// before zeros and behind blanks.
char *put_in_field(char *w, number_field field, const char *prefix, unsigned long long number, unsigned count,
                   const char *hex_digit_names)
{
    const size_t prefix_length = std::strlen(prefix);
    const size_t length = prefix_length + count;
    const size_t padding = field.width > length ? field.width - length : 0;

    if (!field.left_aligned && !field.zero_padded) w = put_blanks(w, padding);
    while (*prefix != '\0') *w++ = *prefix++;
    if (field.zero_padded && !field.left_aligned) count += static_cast<unsigned>(padding);
    w = hex_digit_names != nullptr ? put_hex_digits(w, number, count, hex_digit_names)
                                   : put_decimal_digits(w, number, count);
    return field.left_aligned ? put_blanks(w, padding) : w;
}

} // namespace

char *put_decimal_field(char *w, unsigned long long magnitude, bool is_negative, number_field field)
{
    return put_in_field(w, field, is_negative ? "-" : "", magnitude, decimal_digits(magnitude), nullptr);
}

char *put_hex_field(char *w, unsigned long long number, number_field field, const char *digits)
{
    return put_in_field(w, field, "", number, hex_digits(number), digits);
}

char *put_pointer_field(char *w, const void *address, number_field field)
{
    const auto number = reinterpret_cast<uintptr_t>(address);
    return put_in_field(w, field, "0x", number, hex_digits(number), lower_hex_digits);
}

char *put_long_decimal(char *w, unsigned long long number)
{
    return put_decimal(w, number);
}
