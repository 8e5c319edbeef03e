#include "mpeg_ts_overview/output/json_parts.h"

namespace {

const char *name_of(check_outcome outcome)
{
    switch (outcome) {
    case check_outcome::pass:
        return "pass";
    case check_outcome::fail:
        return "fail";
    case check_outcome::not_measured:
        break;
    }
    return "not_measured";
}

ordered_json json_of_detail(const violation &detail)
{
    return {
        {"pid",    json_value(detail.pid)       },
        {"t_s",    json_seconds(detail.at.ticks)},
        {"packet", detail.at.packet             },
        {"text",   detail.text                  }
    };
}

ordered_json json_of_number(const std::optional<double> &value)
{
    return value ? ordered_json(six_decimals(*value)) : ordered_json(nullptr);
}

} // namespace

ordered_json json_of(const check_result &check)
{
    const violation_log &log = check.log;
    const bool measured = check.outcome != check_outcome::not_measured;
    const bool happened = measured && log.count > 0;
    const ordered_json details = json_list(log.details, json_of_detail);
    return {
        {"id",           check.id                                                         },
        {"priority",     check.priority                                                   },
        {"name",         check.name                                                       },
        {"result",       name_of(check.outcome)                                           },
        {"why",          json_text(check.why)                                             },
        {"count",        measured ? ordered_json(log.count) : ordered_json(nullptr)       },
        {"first_s",      happened ? json_seconds(log.first.ticks) : ordered_json(nullptr) },
        {"first_packet", happened ? ordered_json(log.first.packet) : ordered_json(nullptr)},
        {"last_s",       happened ? json_seconds(log.last.ticks) : ordered_json(nullptr)  },
        {"worst",        json_of_number(log.worst)                                        },
        {"worst_unit",   json_text(check.worst_unit)                                      },
        {"limit",        json_of_number(check.limit)                                      },
        {"details",      details                                                          }
    };
}
