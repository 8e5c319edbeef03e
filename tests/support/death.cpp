#include "tests/support/death.h"

#include "mpeg_ts_analysis/report/report.h"

#include <unistd.h>

void report_to_standard_error()
{
    report_divert(nullptr);
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

std::string exactly(std::string_view text)
{
    std::string pattern;
    for (const char character : text) {
        if (std::string_view("\\.[]{}()*+?^$|").find(character) != std::string_view::npos) pattern += '\\';
        pattern += character;
    }
    return pattern;
}
