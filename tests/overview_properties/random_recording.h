// Recordings that nobody has thought of: several PIDs with clocks and payload, damaged at random. The same
// seed gives the same recording everywhere.
#pragma once

#include "tests/support/stream_builder.h"

#include <random>

class random_recording {
public:
    explicit random_recording(unsigned seed) : random(seed) {}

    /// So many packets or a few more or less, of 188, 192 or 204 bytes; some are lost, repeated, hit.
    bytes damaged(unsigned packets);

    /// The same without damage to bytes: each slot has its sync byte.
    bytes in_sync(unsigned packets);

    /// Below limit.
    unsigned any(unsigned limit) { return static_cast<unsigned>(random()) % limit; }

private:
    void add_packet(stream_builder &stream);
    void add_tables(stream_builder &stream);
    bytes in_grid(const stream_builder &stream);
    void damage(bytes &recording);

    std::mt19937 random;
    unsigned long long now = 0; ///< of the clock
};
