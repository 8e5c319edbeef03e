// What the caps of the stores dropped.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct limit_reached {
    std::string what;     ///< the store: "breaks", "tables", "guide" ...
    uint64_t limit = 0;   ///< how much it holds
    uint64_t dropped = 0; ///< how much came beyond
};
