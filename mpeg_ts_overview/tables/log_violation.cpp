#include "mpeg_ts_overview/tables/log_violation.h"

#include <cstdio>

size_t place_of_detail(const violation_log &log, const moment &at)
{
    const auto behind = [](const moment &wanted, const violation &v) { return wanted.packet < v.at.packet; };
    return static_cast<size_t>(std::upper_bound(log.details.begin(), log.details.end(), at, behind) -
                               log.details.begin());
}

std::string with_unit(double value, const char *unit)
{
    char digits[400]; // the longest double has 309 before its point
    std::snprintf(digits, sizeof(digits), "%.6f", value);
    std::string text = digits;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text + ' ' + unit;
}

std::string in_ms(int64_t ticks)
{
    return with_unit(static_cast<double>(ticks) * 1000 / static_cast<double>(ticks_per_second), "ms");
}
