#include "mpeg_ts_overview/contents/day_clock.h"

#include "mpeg_ts_overview/tables/psip.h"
#include "mpeg_ts_overview/tables/stt.h"
#include "mpeg_ts_overview/tables/table_key.h"
#include "mpeg_ts_overview/tables/tdt.h"

namespace {

/// Nothing for sections that tell no time.
std::optional<clock_reading> reading_of(const table_section &section)
{
    const auto reading = [&](std::optional<int64_t> utc_s, const char *source) {
        return utc_s ? std::optional(clock_reading{*utc_s, source, section.at}) : std::nullopt;
    };
    switch (section.header.table_id) {
    case tdt_table_id:
        return reading(read_tdt(section), "TDT");
    case tot_table_id:
        return reading(read_tdt(section), "TOT");
    case stt_table_id: {
        const std::optional<stt> time = is_long(section) ? read_stt(section) : std::nullopt;
        return time ? reading(time->utc_s(), "STT") : std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

} // namespace

void day_clock::on_section(const table_section &section)
{
    const std::optional<clock_reading> reading = reading_of(section);
    if (!reading) return;
    if (!readings.first) readings.first = reading;
    readings.last = reading;
}
