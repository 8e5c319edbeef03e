// Exact proportions in integers.
#pragma once

#include <cstdint>

/// count * numerator / denominator to the nearest integer, halves up: floor(x + 1/2). The denominator is
/// positive, the numerator not negative, and the result fits.
int64_t scaled(int64_t count, int64_t numerator, int64_t denominator);
