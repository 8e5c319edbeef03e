// What the continuity_counter says of a packet.
#pragma once

struct packet_sequence {
    bool duplicate = false; ///< a copy of the PID's packet before, the allowed one or a further one
    bool broken =
        false;          ///< out of sequence, by error or by a discontinuity_indicator: what was begun is lost
    bool error = false; ///< a continuity error
};
