#include "mpeg_ts_overview/output/json_parts.h"

namespace {

const char *name_of(time_base_kind kind)
{
    switch (kind) {
    case time_base_kind::pcr:
        return "pcr";
    case time_base_kind::arrival:
        return "arrival";
    case time_base_kind::bitrate:
        return "bitrate";
    case time_base_kind::none:
        break;
    }
    return "none";
}

const char *name_of(time_break_kind kind)
{
    switch (kind) {
    case time_break_kind::irregular_span:
        break;
    case time_break_kind::arrival:
        return "arrival";
    case time_break_kind::clock_change:
        return "clock_change";
    case time_break_kind::sync_loss:
        return "sync_loss";
    }
    return "irregular_span";
}

ordered_json json_of(const std::optional<clock_reading> &reading)
{
    if (!reading) return nullptr;
    return {
        {"utc",    utc_text(reading->utc_s)       },
        {"source", reading->source                },
        {"t_s",    json_seconds(reading->at.ticks)},
        {"packet", reading->at.packet             }
    };
}

} // namespace

ordered_json json_of_recording(const overview &found)
{
    const recording_facts &recording = found.recording;
    return {
        {"path",             recording.path                        },
        {"bytes",            recording.bytes                       },
        {"packet_size",      recording.packet_size                 },
        {"leading_bytes",    recording.leading_bytes               },
        {"skipped_bytes",    recording.skipped_bytes               },
        {"trailing_bytes",   recording.trailing_bytes              },
        {"packets",          recording.packets                     },
        {"duration_s",       json_seconds(recording.duration_ticks)},
        {"time_base",        name_of(recording.time_base)          },
        {"clock_pid",        json_value(recording.clock_pid)       },
        {"mean_bps",         json_value(found.rates.whole.mean_bps)},
        {"constant_bitrate", recording.constant_bitrate            },
        {"standard",         found.standard                        },
        {"sync_byte_errors", recording.sync_byte_errors            },
        {"sync_losses",      recording.sync_losses                 }
    };
}

ordered_json json_of(const transport_stream_facts &facts)
{
    return {
        {"transport_stream_id", json_value(facts.transport_stream_id)},
        {"original_network_id", json_value(facts.original_network_id)},
        {"network_name",        json_value(facts.network_name)       }
    };
}

ordered_json json_of(const time_break &place)
{
    return {
        {"packet",     place.at.packet                   },
        {"byte",       place.at.byte                     },
        {"t_s",        json_seconds(place.at.ticks)      },
        {"kind",       name_of(place.kind)               },
        {"pcr_jump_s", json_seconds(place.pcr_jump_ticks)}
    };
}

ordered_json json_of(const clock_facts &facts)
{
    return {
        {"first", json_of(facts.first)},
        {"last",  json_of(facts.last) }
    };
}

ordered_json json_of(const limit_reached &limit)
{
    return {
        {"what",    limit.what   },
        {"limit",   limit.limit  },
        {"dropped", limit.dropped}
    };
}
