// What the meters measured: PIDs, rates, PCRs, time stamps.
#include "mpeg_ts_overview/model/moment.h"
#include "mpeg_ts_overview/output/json_parts.h"

namespace {

ordered_json json_of(const rate_facts &rate)
{
    return {
        {"mean_bps", json_value(rate.mean_bps)                                                      },
        {"min_bps",  json_value(rate.min_bps)                                                       },
        {"max_bps",  json_value(rate.max_bps)                                                       },
        {"series",   rate.series_bps.empty() ? ordered_json(nullptr) : ordered_json(rate.series_bps)}
    };
}

ordered_json json_of_pid_rate(const pid_rate_facts &facts)
{
    ordered_json row;
    row["pid"] = facts.pid;
    row.update(json_of(facts.rate));
    return row;
}

ordered_json json_of(const std::optional<residual_facts> &residual)
{
    if (!residual)
        return {
            {"min", nullptr},
            {"max", nullptr},
            {"rms", nullptr}
        };
    return {
        {"min", six_decimals(residual->min_ns)},
        {"max", six_decimals(residual->max_ns)},
        {"rms", six_decimals(residual->rms_ns)}
    };
}

ordered_json json_of(const std::optional<ppm_extent> &offset)
{
    if (!offset)
        return {
            {"min", nullptr},
            {"max", nullptr}
        };
    return {
        {"min", six_decimals(offset->min_ppm)},
        {"max", six_decimals(offset->max_ppm)}
    };
}

ordered_json json_of_window(const residual_window &window)
{
    return {
        {"t_s", json_seconds(window.ticks) },
        {"min", six_decimals(window.min_ns)},
        {"max", six_decimals(window.max_ns)}
    };
}

ordered_json json_of(const stamp_facts &stamps)
{
    return {
        {"count",               stamps.count                                    },
        {"arrival_interval_ms", json_milliseconds(stamps.arrival_interval_ticks)}
    };
}

} // namespace

ordered_json json_of(const pid_facts &facts)
{
    return {
        {"pid",                   facts.pid                      },
        {"packets",               facts.packets                  },
        {"first_packet",          facts.first_packet             },
        {"last_packet",           facts.last_packet              },
        {"first_s",               json_seconds(facts.first_ticks)},
        {"last_s",                json_seconds(facts.last_ticks) },
        {"scrambled",             facts.scrambled                },
        {"transport_errors",      facts.transport_errors         },
        {"unit_starts",           facts.unit_starts              },
        {"random_access_points",  facts.random_access_points     },
        {"without_payload",       facts.without_payload          },
        {"reserved_control",      facts.reserved_control         },
        {"duplicates",            facts.duplicates               },
        {"continuity_errors",     facts.continuity_errors        },
        {"lost_packets_estimate", facts.lost_packets_estimate    },
        {"out_of_order",          facts.out_of_order             },
        {"discontinuities",       facts.discontinuities          },
        {"crc_errors",            facts.crc_errors               },
        {"incomplete_sections",   facts.incomplete_sections      }
    };
}

void put_rates(json_stream &out, const rates_facts &rates)
{
    const bool timed = rates.bucket_ticks > 0;
    out.open_object("rates");
    out.member("bucket_s", timed ? ordered_json(seconds_of(rates.bucket_ticks)) : ordered_json(nullptr));
    out.member("whole", json_of(rates.whole));
    out.list("pids", rates.pids, json_of_pid_rate);
    out.close_object();
}

ordered_json json_of(const pcr_facts &facts)
{
    const ordered_json windows = json_list(facts.residual_series, json_of_window);
    return {
        {"pid",                       facts.pid                                                                 },
        {"count",                     facts.count                                                               },
        {"interval_ms",               json_milliseconds(facts.interval_ticks)                                   },
        {"discontinuities_flagged",   facts.discontinuities_flagged                                             },
        {"discontinuities_unflagged", facts.discontinuities_unflagged                                           },
        {"interval_series",           json_milliseconds(facts.interval_series_ticks)                            },
        {"residual_ns",               json_of(facts.residual)                                                   },
        {"basis",                     facts.basis != nullptr ? ordered_json(facts.basis) : ordered_json(nullptr)},
        {"rate_offset_ppm",           json_of(facts.rate_offset)                                                },
        {"residual_series",           windows                                                                   }
    };
}

ordered_json json_of(const time_stamp_facts &facts)
{
    const auto of_margins = [&](uint64_t count) {
        return facts.has_margins() ? ordered_json(count) : ordered_json(nullptr);
    };
    return {
        {"pid",           facts.pid                                   },
        {"pes_not_read",  facts.pes_not_read                          },
        {"pts",           json_of(facts.pts)                          },
        {"dts",           json_of(facts.dts)                          },
        {"reordered",     facts.reordered                             },
        {"margin_ms",     json_milliseconds(facts.margin_ticks)       },
        {"unrelated",     of_margins(facts.unrelated)                 },
        {"late",          of_margins(facts.late)                      },
        {"margin_series", json_milliseconds(facts.margin_series_ticks)}
    };
}
