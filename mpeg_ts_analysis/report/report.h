// The one way to standard output. Everything goes through one buffer, which is written out when it is full
// and when report_flush is called. A report that cannot be written ends the run: with a message on standard
// error and exit status 1, or quietly by SIGPIPE when the reader of a pipe has gone.
#pragma once

#include "mpeg_ts_analysis/report/report_format.h"

#include <string>

/// Writes a format that report_format has taken apart; use report_printf.
void report_pieces(const char *text, const report_piece *pieces, size_t piece_count,
                   const report_argument *arguments);

/// Prints as printf does; the compiler checks the format against the arguments.
template <typename... A>
void report_printf(const report_format<std::type_identity_t<A>...> &format, A... values)
{
    const report_argument arguments[] = {report_argument_of(values)..., report_argument{}};
    report_pieces(format.text, format.pieces, sizeof...(A) + 1, arguments);
}

/// Prints a constant line and its line end.
void report_line(const char *line);

/// Writes out what the buffer holds.
void report_flush();

/// Writes out what the buffer holds and closes standard output; an error that only the closing tells of
/// counts as one of writing.
void report_close();

/// Sends the report to a string instead of standard output; null sends it back. For tests.
void report_divert(std::string *sink);
