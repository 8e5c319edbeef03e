// What the tables say: programs, the tables themselves, the analyser's words for them and the faults in them.
#include "mpeg_ts_overview/output/json_parts.h"

#include <string_view>

namespace {

ordered_json json_of_ca_system(const ca_system &system)
{
    return {
        {"id",  system.id },
        {"pid", system.pid}
    };
}

ordered_json json_of_stream(const program_stream &stream)
{
    return {
        {"pid",         stream.pid                                                                      },
        {"absent",      stream.absent                                                                   },
        {"stream_type", stream.stream_type                                                              },
        {"name",        stream.name                                                                     },
        {"kind",        json_text(stream.kind)                                                          },
        {"language",    json_text(stream.language)                                                      },
        {"details",     json_text(stream.details)                                                       },
        {"mean_bps",    json_value(stream.mean_bps)                                                     },
        {"share",       stream.share ? ordered_json(six_decimals(*stream.share)) : ordered_json(nullptr)}
    };
}

ordered_json json_of(const std::optional<service_kind> &kind)
{
    if (!kind) return nullptr;
    return {
        {"code", kind->code},
        {"name", kind->name}
    };
}

ordered_json json_of_version(const table_version &version)
{
    std::optional<int64_t> first_ticks;
    if (version.first_ticks != table_version::no_ticks) first_ticks = version.first_ticks;
    return {
        {"version",      uint64_t{version.version}     },
        {"first_s",      json_seconds(first_ticks)     },
        {"first_packet", uint64_t{version.first_packet}}
    };
}

/// A list of the lines of a text, without their line ends.
ordered_json json_of_lines(std::string_view text)
{
    ordered_json lines = ordered_json::array();
    while (!text.empty()) {
        const size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

} // namespace

ordered_json json_of(const program_facts &program)
{
    const ordered_json ca_systems = json_list(program.ca_systems, json_of_ca_system);
    const ordered_json streams = json_list(program.streams, json_of_stream);
    return {
        {"number",         program.number                    },
        {"pmt_pid",        program.pmt_pid                   },
        {"pcr_pid",        json_value(program.pcr_pid)       },
        {"absent",         program.absent                    },
        {"service_name",   json_value(program.service_name)  },
        {"provider_name",  json_value(program.provider_name) },
        {"service_type",   json_of(program.service_type)     },
        {"channel",        json_value(program.channel)       },
        {"running_status", json_value(program.running_status)},
        {"free_CA_mode",   json_value(program.free_CA_mode)  },
        {"ca_systems",     ca_systems                        },
        {"streams",        streams                           }
    };
}

ordered_json json_of(const table_facts &table)
{
    const ordered_json versions = json_list(table.versions, json_of_version);
    return {
        {"pid",                        table.pid                              },
        {"table_id",                   table.table_id                         },
        {"table_id_extension",         json_value(table.table_id_extension)   },
        {"transport_stream_id",        json_value(table.transport_stream_id)  },
        {"original_network_id",        json_value(table.original_network_id)  },
        {"ETM_id",                     json_value(table.ETM_id)               },
        {"name",                       table.name                             },
        {"sections",                   table.sections                         },
        {"interval_ms",                json_milliseconds(table.interval_ticks)},
        {"versions",                   versions                               },
        {"changed_under_same_version", table.changed_under_same_version       }
    };
}

ordered_json json_of(const fault_group &group)
{
    return {
        {"text",     group.text                     },
        {"pid",      group.pid                      },
        {"table_id", group.table_id                 },
        {"count",    group.count                    },
        {"first_s",  json_seconds(group.first.ticks)},
        {"last_s",   json_seconds(group.last.ticks) },
        {"packets",  group.packets                  }
    };
}

ordered_json json_of(const transcript_entry &entry)
{
    return {
        {"pid",          entry.pid                      },
        {"table_id",     entry.table_id                 },
        {"heading",      entry.heading                  },
        {"lines",        json_of_lines(entry.lines)     },
        {"count",        entry.count                    },
        {"first_s",      json_seconds(entry.first.ticks)},
        {"first_packet", entry.first.packet             },
        {"last_s",       json_seconds(entry.last.ticks) }
    };
}
