// Figures as people read them.
#pragma once

#include <cstdint>
#include <string>

/// "1.08 GB", "256 kB", "940 bytes"; 1 kB is 1000 bytes.
std::string size_text(uint64_t bytes);

/// "18.00 Mbit/s", below 0.01 of them "1.50 kbit/s".
std::string rate_text(uint64_t bps);

/// "1 h 2 min 3 s", "8 min 0 s", "12.5 s", of ticks of 27 MHz.
std::string duration_text(int64_t ticks);

/// "0:00:03.120", of ticks of 27 MHz.
std::string clock_text(int64_t ticks);

/// "100 ms", "4.5 ms", "30 s": an interval that is typical, of milliseconds.
std::string interval_text(double milliseconds);

/// "1 cue", "2 cues".
std::string count_text(uint64_t count, const char *one, const char *more);
