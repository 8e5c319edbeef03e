// Faults of the packets themselves: TS_sync_loss, Sync_byte_error and Transport_error of ETSI TR 101 290
// (1.1, 1.2, 2.1).
#pragma once

#include "mpeg_ts_overview/model/violation_log.h"

#include <cstdint>

class transport_faults {
public:
    /// Sync was lost before the packet at that moment.
    void on_sync_loss(const moment &at);
    void on_bad_sync_byte(const moment &at);
    void on_transport_error(uint16_t pid, const moment &at);

    const violation_log &sync_losses() const { return losses; }
    /// The two bad sync bytes by which a loss shows are of them.
    const violation_log &sync_byte_errors() const { return bad_bytes; }
    const violation_log &transport_errors() const { return errors; }

private:
    violation_log losses;
    violation_log bad_bytes;
    violation_log errors;
};
