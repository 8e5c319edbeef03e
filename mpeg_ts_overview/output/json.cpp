#include "mpeg_ts_overview/output/json.h"

#include "mpeg_ts_overview/output/json_parts.h"

namespace {

template <class Row>
void put_list(json_stream &out, const char *name, const std::vector<Row> &rows)
{
    out.list(name, rows, [](const Row &row) { return json_of(row); });
}

void put_tables(json_stream &out, const tables_facts &tables)
{
    out.open_object("tables");
    put_list(out, "rows", tables.rows);
    out.member("not_kept", tables.not_kept);
    out.close_object();
}

void put_guide(json_stream &out, const guide_facts &guide)
{
    out.open_object("guide");
    put_list(out, "events", guide.events);
    out.member("others", guide.events_of_others);
    out.member("not_kept", guide.not_kept);
    out.close_object();
}

/// A transcript that ended early stands among the stores that reached their limits.
void put_limits(json_stream &out, const overview &found)
{
    std::vector<ordered_json> rows;
    for (const limit_reached &limit : found.limits_reached) rows.push_back(json_of(limit));
    if (const std::string &note = found.transcript.note; !note.empty())
        rows.push_back({
            {"what",    "transcript: " + note},
            {"limit",   nullptr              },
            {"dropped", nullptr              }
        });
    out.list("limits_reached", rows, [](const ordered_json &row) { return row; });
}

} // namespace

bool write_json(const overview &found, const output_sink &write)
{
    json_stream out(write);
    out.member("format", "mpeg_ts_overview");
    out.member("version", 1);
    out.member("recording", json_of_recording(found));
    out.member("transport_stream", json_of(found.transport_stream));
    put_list(out, "programs", found.programs);
    put_list(out, "pids", found.pids);
    put_rates(out, found.rates);
    put_list(out, "pcr", found.pcr);
    put_list(out, "time_stamps", found.time_stamps);
    put_tables(out, found.tables);
    put_list(out, "breaks", found.breaks.kept);
    put_list(out, "checks", found.checks);
    put_guide(out, found.guide);
    put_list(out, "cues", found.cues.cues);
    put_list(out, "teletext", found.teletext.pages);
    out.member("clock", json_of(found.clock));
    put_list(out, "faults", found.transcript.faults);
    put_list(out, "transcript", found.transcript.entries);
    put_limits(out, found);
    return out.end();
}
