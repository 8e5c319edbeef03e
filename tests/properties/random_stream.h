// Streams that nobody has thought of: the recipes and random sections, damaged at random. The same seed gives
// the same stream everywhere.
#pragma once

#include "tests/support/stream_builder.h"

#include <random>

class random_stream {
public:
    explicit random_stream(unsigned seed) : random(seed) {}

    /// The packets of a recipe among random ones, some of them lost, repeated, exchanged or with bits turned.
    bytes damaged_multiplex();

    /// Tables of every kind that say anything, with correct checksums, PES packets, PCRs, teletext and noise.
    bytes tables_and_noise();

    /// Below limit.
    unsigned any(unsigned limit) { return static_cast<unsigned>(random()) % limit; }

    bytes any_bytes(size_t size);

private:
    bytes any_descriptors();
    bytes any_loop_of_descriptors();
    bytes any_program_map(unsigned program_number);
    void add_table(stream_builder &stream);
    void add_payload(stream_builder &stream);

    std::mt19937 random;
};
