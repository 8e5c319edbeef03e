// Is the bit rate constant? Regular spans are joined to stretches of at least 100 ms, whose rates are
// compared.
#pragma once

#include <cstdint>
#include <vector>

class rate_steadiness {
public:
    /// A regular span of so many packets and 27 MHz ticks.
    void add_span(int64_t packets, int64_t ticks);

    /// A span that is not regular: what was joined so far is no stretch.
    void on_break();

    /// True when of at least 20 stretches 95 % have a rate within 100 ppm of their median.
    bool is_constant() const;

private:
    int64_t joined_packets = 0;
    int64_t joined_ticks = 0;
    std::vector<double> rates; ///< packets per tick, of the first 4096 stretches
};
