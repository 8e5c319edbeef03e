// A line whose numbers are put down directly, for the one line that is printed for every packet. Everything
// else is a format: report.h.
#pragma once

#include "mpeg_ts_analysis/report/fixed_point.h"
#include "mpeg_ts_analysis/report/put_number.h"
#include "mpeg_ts_analysis/report/report_buffer.h"

/// Puts its parts straight into the report's buffer, at most report_room_limit bytes in all.
class direct_line {
public:
    direct_line() : w(report_room()) {}
    ~direct_line() { report_put(w); }
    direct_line(const direct_line &) = delete;
    direct_line &operator=(const direct_line &) = delete;

    template <size_t size>
    direct_line &text(const char (&literal)[size])
    {
        w = put_literal(w, literal);
        return *this;
    }

    /// A number below 10.
    direct_line &digit(unsigned number)
    {
        *w++ = static_cast<char>('0' + number);
        return *this;
    }

    /// At least least_digits digits, zeros in front.
    direct_line &decimal(unsigned long long number, unsigned least_digits)
    {
        const unsigned count = decimal_digits(number);
        w = put_decimal_digits(w, number, count < least_digits ? least_digits : count);
        return *this;
    }

    /// A number and blanks behind it, width characters at least.
    direct_line &decimal_left_aligned(unsigned long long number, unsigned width)
    {
        const char *const field_end = w + width;
        w = put_decimal(w, number);
        while (w < field_end) *w++ = ' ';
        return *this;
    }

    /// Exactly count hexadecimal digits.
    direct_line &hexadecimal(unsigned number, unsigned count)
    {
        w = put_hex_digits(w, number, count);
        return *this;
    }

    direct_line &fixed_point(double value, unsigned precision)
    {
        w = put_fixed_point(w, value, precision);
        return *this;
    }

private:
    char *w;
};
