// The one way to standard output. Everything goes through one buffer, which is written out when it is full
// and when report_flush is called. A report that cannot be written ends the run: with a message on standard
// error and exit status 1, or quietly by SIGPIPE when the reader of a pipe has gone.
#pragma once

#include "mpeg_ts_analysis/report/report_line.h"

#include <string>

/// Prints as printf does; the compiler checks the format against the arguments and writes the code of the
/// line.
template <typename... A>
[[gnu::always_inline]] inline void report_printf(const report_format<std::type_identity_t<A>...> format,
                                                 A... values)
{
    report_put_pieces<A...>(format, std::index_sequence_for<A...>(), values...);
}

/// Prints a line and its line end.
[[gnu::always_inline]] inline void report_line(const char *line)
{
    report_printf("%s\n", line);
}

/// Writes out what the buffer holds and closes standard output; an error that only the closing tells of
/// counts as one of writing.
void report_close();

/// Sends the report to a string instead of standard output; null sends it back. For tests.
void report_divert(std::string *sink);
