// The straight line of least squares through points, and what is left when it is taken away.
#pragma once

#include <cstdint>
#include <vector>

struct line_point {
    int64_t x = 0; ///< 0 of the first point, never falling
    int64_t y = 0; ///< 0 of the first point
};

class line_fit {
public:
    /// Fits a line to the points. Returns false when all have the same x.
    bool fit(const std::vector<line_point> &points);

    /// y of each point minus that of the line.
    const std::vector<double> &residuals() const { return rest; }

    double slope_minus_one() const { return slope_excess; }

private:
    std::vector<double> rest; ///< kept from fit to fit
    double slope_excess = 0;
};
