// Lines of a descriptor that obey the descriptor dump mode. Faults in the stream ("!!!") do not: they go
// through report_line or report_printf.
#pragma once

#include "mpeg_ts_analysis/report/names.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"

/// True unless the dump mode is none.
inline bool descriptors_are_shown()
{
    return settings.dump_descriptors_mode != dump_descriptors_none;
}

/// Prints as report_printf does, unless the dump mode is none.
template <typename... A>
[[gnu::always_inline]] inline void show(const report_format<std::type_identity_t<A>...> format, A... values)
{
    if (descriptors_are_shown()) report_printf<A...>(format, values...);
}

/// Prints a code and then its name from a table of names.h (absent when it has none), unless the dump mode is
/// none.
template <typename table>
[[gnu::always_inline]] inline void show_named(const report_format<unsigned, const char *> format,
                                              unsigned value, const table &names, const char *absent = "")
{
    if (descriptors_are_shown()) report_printf(format, value, name_of(names, value, absent));
}
