// What the continuity_counter says of a packet.
#pragma once

#include <cstdint>
#include <optional>

struct packet_sequence {
    bool duplicate = false; ///< a copy of the PID's packet before, the allowed one or a further one
    bool broken =
        false;          ///< out of sequence, by error or by a discontinuity_indicator: what was begun is lost
    bool error = false; ///< a continuity error
    std::optional<uint64_t> packet_before; ///< of an error, the index of the PID's packet before
};
