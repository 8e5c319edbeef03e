// "%.Nf" without the C library: exact, and quick for the numbers that a report has.
#pragma once

/// Puts value with precision (0 to 9) digits behind the point at w, rounded as the C library rounds: exactly,
/// halves to even. Returns one past the last byte put, at most 330 bytes on.
char *put_fixed_point(char *w, double value, unsigned precision);
