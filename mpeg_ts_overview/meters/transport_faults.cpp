#include "mpeg_ts_overview/meters/transport_faults.h"

#include "mpeg_ts_overview/tables/log_violation.h"

void transport_faults::on_sync_loss(const moment &at)
{
    log_violation(losses, at, std::nullopt, [] { return "sync lost before this packet"; });
    for (int i = 0; i < 2; ++i) log_violation(bad_bytes, at, std::nullopt, [] { return "sync lost by it"; });
}

void transport_faults::on_bad_sync_byte(const moment &at)
{
    log_violation(bad_bytes, at, std::nullopt, [] { return "one packet without sync byte"; });
}

void transport_faults::on_transport_error(uint16_t pid, const moment &at)
{
    log_violation(errors, at, pid, [] { return "transport_error_indicator"; });
}
