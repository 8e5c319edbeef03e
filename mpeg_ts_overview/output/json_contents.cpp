// What the programs carry: guide, cues, teletext.
#include "mpeg_ts_overview/output/json_parts.h"

#include <fmt/format.h>

namespace {

constexpr double stamp_frequency = 90000.0;

ordered_json json_of_segmentation(const cue_segmentation &segmentation)
{
    return {
        {"type", segmentation.type           },
        {"name", segmentation.name           },
        {"upid", json_text(segmentation.upid)}
    };
}

/// Seconds of a count of 90 kHz.
ordered_json json_of_stamp(const std::optional<uint64_t> &stamp)
{
    if (!stamp) return nullptr;
    return six_decimals(static_cast<double>(*stamp) / stamp_frequency);
}

} // namespace

ordered_json json_of(const guide_event &event)
{
    return {
        {"service",        event.service                                                                         },
        {"event_id",       event.event_id                                                                        },
        {"start_utc",      event.start_utc_s ? ordered_json(utc_text(*event.start_utc_s)) : ordered_json(nullptr)},
        {"duration_s",     json_value(event.duration_s)                                                          },
        {"title",          event.title                                                                           },
        {"text",           event.text                                                                            },
        {"language",       json_text(event.language)                                                             },
        {"source",         event.source                                                                          },
        {"present_from_s", json_seconds(event.present_ticks)                                                     }
    };
}

ordered_json json_of(const cue &message)
{
    const auto pre_roll = message.pre_roll_ticks ? ordered_json(milliseconds_of(*message.pre_roll_ticks))
                                                 : ordered_json(nullptr);
    const ordered_json segmentations = json_list(message.segmentations, json_of_segmentation);
    return {
        {"pid",              message.pid                          },
        {"program",          json_value(message.program)          },
        {"t_s",              json_seconds(message.at.ticks)       },
        {"packet",           message.at.packet                    },
        {"command",          message.command                      },
        {"count",            message.count                        },
        {"splice_event_id",  json_value(message.splice_event_id)  },
        {"out_of_network",   json_value(message.out_of_network)   },
        {"immediate",        json_value(message.immediate)        },
        {"pts_time_s",       json_of_stamp(message.pts_time)      },
        {"break_duration_s", json_of_stamp(message.break_duration)},
        {"auto_return",      json_value(message.auto_return)      },
        {"pre_roll_ms",      pre_roll                             },
        {"segmentations",    segmentations                        },
        {"cancelled",        message.cancelled                    }
    };
}

ordered_json json_of(const teletext_page &page)
{
    const std::string page_number = fmt::format("{:03X}", page.page);
    return {
        {"pid",             page.pid                      },
        {"page",            page_number                   },
        {"subcode",         page.subcode                  },
        {"count",           page.count                    },
        {"first_s",         json_seconds(page.first_ticks)},
        {"last_s",          json_seconds(page.last_ticks) },
        {"rows",            page.rows                     },
        {"national_option", page.national_option          }
    };
}
