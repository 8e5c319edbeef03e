#include "mpeg_ts_analysis/report/invariant.h"

#include "mpeg_ts_analysis/report/report.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

void (*invariant_handler)() = nullptr;

void invariant_failed(const char *condition, const char *file, unsigned line, const char *function)
{
    report_flush();
    if (invariant_handler != nullptr) invariant_handler();
    std::fprintf(stderr, "%s: %s:%u: %s: Assertion `%s' failed.\n", program_invocation_short_name, file, line,
                 function, condition);
    std::abort();
}
