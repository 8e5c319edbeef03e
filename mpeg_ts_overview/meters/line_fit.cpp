#include "mpeg_ts_overview/meters/line_fit.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

/// True when y * span.x - span.y * x of no point leaves 64 bits.
bool is_exact(const std::vector<line_point> &points, const line_point &span)
{
    int64_t greatest = 1;
    for (const line_point &point : points) greatest = std::max(greatest, std::abs(point.y));
    return span.x <= std::numeric_limits<int64_t>::max() / 2 / greatest;
}

} // namespace

// The line through the first and the last point is taken away in integers: what is left is small, and double
// is enough for the rest.
bool line_fit::fit(const std::vector<line_point> &points)
{
    rest.clear();
    if (points.empty() || points.back().x <= 0) return false;
    const line_point span = points.back();
    const auto span_x = static_cast<double>(span.x);
    const double span_slope = static_cast<double>(span.y) / span_x;
    const bool exact = is_exact(points, span);

    double sum_x = 0;
    double sum_rest = 0;
    for (const line_point &point : points) {
        rest.push_back(exact ? static_cast<double>(point.y * span.x - span.y * point.x) / span_x
                             : static_cast<double>(point.y) - span_slope * static_cast<double>(point.x));
        sum_x += static_cast<double>(point.x);
        sum_rest += rest.back();
    }

    const auto count = static_cast<double>(points.size());
    const double mean_x = sum_x / count;
    const double mean_rest = sum_rest / count;
    double square = 0;
    double product = 0;
    for (size_t i = 0; i < points.size(); ++i) {
        const double x = static_cast<double>(points[i].x) - mean_x;
        square += x * x;
        product += x * (rest[i] - mean_rest);
    }
    const double rest_slope = product / square;
    for (size_t i = 0; i < points.size(); ++i)
        rest[i] -= mean_rest + rest_slope * (static_cast<double>(points[i].x) - mean_x);
    slope_excess = static_cast<double>(span.y - span.x) / span_x + rest_slope;
    return true;
}
