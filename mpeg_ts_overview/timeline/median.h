// The median of some numbers.
#pragma once

#include <vector>

/// The middle one, or the mean of the middle two. There is at least one value.
double median_of(std::vector<double> values);
