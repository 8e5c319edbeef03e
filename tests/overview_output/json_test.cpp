#include "mpeg_ts_overview/output/json.h"

#include "mpeg_ts_overview/output/json_values.h"
#include "sample_overview.h"

#include <gtest/gtest.h>

namespace {

std::string text_of(const overview &found)
{
    std::string text;
    EXPECT_TRUE(write_json(found, [&](std::string_view piece) {
        text += piece;
        return true;
    }));
    return text;
}

ordered_json parsed(const overview &found)
{
    return ordered_json::parse(text_of(found));
}

/// The line of the text that begins so.
std::string line_of(const std::string &text, const std::string &beginning)
{
    const size_t at = text.find("\n" + beginning);
    if (at == std::string::npos) return "";
    return text.substr(at + 1, text.find('\n', at + 1) - at - 1);
}

std::string keys_of(const ordered_json &object)
{
    std::string keys;
    for (const auto &[key, value] : object.items()) keys += key + " ";
    return keys;
}

} // namespace

TEST(json, members_stand_in_their_order)
{
    EXPECT_EQ(keys_of(parsed({})),
              "format version recording transport_stream programs pids rates pcr time_stamps tables "
              "breaks checks guide cues teletext clock faults transcript limits_reached ");
}

TEST(json, the_same_overview_gives_the_same_bytes)
{
    EXPECT_EQ(text_of(sample_overview()), text_of(sample_overview()));
}

TEST(json, no_piece_is_longer_than_the_longest_row)
{
    overview found = sample_overview();
    found.guide.events.resize(5000, found.guide.events[0]);
    size_t longest = 0;
    write_json(found, [&](std::string_view piece) {
        longest = std::max(longest, piece.size());
        return true;
    });
    EXPECT_LT(longest, 2000U);
}

TEST(json, nothing_more_is_written_behind_a_piece_that_could_not_be)
{
    int pieces = 0;
    EXPECT_FALSE(write_json(sample_overview(), [&](std::string_view) { return ++pieces < 10; }));
    EXPECT_EQ(pieces, 10);
}

TEST(json, an_overview_of_nothing_has_every_member)
{
    EXPECT_EQ(text_of({}),
              R"({
"format": "mpeg_ts_overview",
"version": 1,
"recording": {"path":"","bytes":0,"packet_size":0,"leading_bytes":0,"skipped_bytes":0,"trailing_bytes":0,"packets":0,)"
              R"("duration_s":null,"time_base":"none","clock_pid":null,"mean_bps":null,)"
              R"("constant_bitrate":false,"standard":"MPEG","sync_byte_errors":0,"sync_losses":0},
"transport_stream": {"transport_stream_id":null,"original_network_id":null,"network_name":null},
"programs": [],
"pids": [],
"rates": {
"bucket_s": null,
"whole": {"mean_bps":null,"min_bps":null,"max_bps":null,"series":null},
"pids": []
},
"pcr": [],
"time_stamps": [],
"tables": {
"rows": [],
"not_kept": 0
},
"breaks": [],
"checks": [],
"guide": {
"events": [],
"others": 0,
"not_kept": 0
},
"cues": [],
"teletext": [],
"clock": {"first":null,"last":null},
"faults": [],
"transcript": [],
"limits_reached": []
}
)");
}

TEST(json, texts_that_are_no_utf_8_and_numbers_that_are_none_do_no_harm)
{
    const ordered_json found = parsed(hostile_overview());
    const std::string path = found["recording"]["path"];
    EXPECT_EQ(path.substr(0, 5), std::string("\0\x1B[31", 5));
    EXPECT_NE(path.find("\xEF\xBF\xBD"), std::string::npos);
    EXPECT_EQ(found["checks"][1]["worst"], nullptr);
    EXPECT_EQ(found["pcr"][0]["residual_ns"]["max"], nullptr);
}

TEST(json, what_was_not_measured_is_null)
{
    overview found;
    found.pids.resize(1);
    found.pcr.resize(1);
    found.time_stamps.resize(1);
    found.tables.rows.resize(1);
    found.programs.resize(1);
    found.programs[0].streams.resize(1);
    found.checks.resize(1);
    found.checks[0].log.count = 3;
    found.guide.events.resize(1);
    found.teletext.pages.resize(1);
    const ordered_json json = parsed(found);
    const ordered_json no_extent = {
        {"min",  nullptr},
        {"mean", nullptr},
        {"max",  nullptr}
    };

    for (const char *key : {"first_s", "last_s"}) EXPECT_EQ(json["pids"][0][key], nullptr) << key;
    EXPECT_EQ(json["pcr"][0]["interval_ms"], no_extent);
    for (const char *key : {"interval_series", "basis"}) EXPECT_EQ(json["pcr"][0][key], nullptr) << key;
    EXPECT_EQ(json["pcr"][0]["residual_ns"].dump(), R"({"min":null,"max":null,"rms":null})");
    EXPECT_EQ(json["pcr"][0]["rate_offset_ppm"].dump(), R"({"min":null,"max":null})");
    EXPECT_EQ(json["time_stamps"][0]["margin_ms"], no_extent);
    for (const char *key : {"late", "unrelated", "margin_series"})
        EXPECT_EQ(json["time_stamps"][0][key], nullptr) << key;
    EXPECT_EQ(json["tables"]["rows"][0]["interval_ms"], no_extent);
    for (const char *key : {"pcr_pid", "service_name", "provider_name", "service_type", "channel"})
        EXPECT_EQ(json["programs"][0][key], nullptr) << key;
    for (const char *key : {"language", "details", "mean_bps", "share"})
        EXPECT_EQ(json["programs"][0]["streams"][0][key], nullptr) << key;
    for (const char *key :
         {"count", "first_s", "first_packet", "last_s", "worst", "worst_unit", "limit", "why"})
        EXPECT_EQ(json["checks"][0][key], nullptr) << key;
    for (const char *key : {"start_utc", "duration_s", "language", "present_from_s"})
        EXPECT_EQ(json["guide"]["events"][0][key], nullptr) << key;
    for (const char *key : {"first_s", "last_s"}) EXPECT_EQ(json["teletext"][0][key], nullptr) << key;
}

TEST(json, margins_that_were_all_good_or_all_unrelated_count_0_late_ones)
{
    overview found;
    found.time_stamps.resize(2);
    found.time_stamps[0].margin_ticks.add(1);
    found.time_stamps[1].unrelated = 3;
    const ordered_json json = parsed(found);
    for (const ordered_json &row : json["time_stamps"]) EXPECT_EQ(row["late"], 0);
    EXPECT_EQ(json["time_stamps"][0]["unrelated"], 0);
    EXPECT_EQ(json["time_stamps"][1]["unrelated"], 3);
}

TEST(json, a_check_that_passes_counts_nothing_and_shows_its_worst)
{
    overview found;
    found.checks.resize(1);
    found.checks[0].outcome = check_outcome::pass;
    found.checks[0].log.worst = 0.0400001234;
    const ordered_json check = parsed(found)["checks"][0];
    EXPECT_EQ(check["count"], 0);
    EXPECT_EQ(check["first_packet"], nullptr);
    EXPECT_EQ(check["worst"].dump(), "0.04");
}

TEST(json, a_transcript_that_ended_early_stands_among_the_limits)
{
    overview found;
    found.transcript.note = "a PAT with 70000 programs";
    EXPECT_EQ(line_of(text_of(found), "{\"what\""),
              R"({"what":"transcript: a PAT with 70000 programs","limit":null,"dropped":null})");
}

TEST(json, each_kind_of_break_and_time_base_has_its_name)
{
    overview found;
    for (const auto kind : {time_break_kind::irregular_span, time_break_kind::arrival,
                            time_break_kind::clock_change, time_break_kind::sync_loss})
        found.breaks.kept.push_back({{}, kind, std::nullopt});
    std::string kinds;
    const ordered_json breaks = parsed(found)["breaks"];
    for (const auto &place : breaks) kinds += place["kind"].get<std::string>() + " ";
    EXPECT_EQ(kinds, "irregular_span arrival clock_change sync_loss ");

    std::string bases;
    for (const auto base :
         {time_base_kind::pcr, time_base_kind::arrival, time_base_kind::bitrate, time_base_kind::none}) {
        found.recording.time_base = base;
        bases += parsed(found)["recording"]["time_base"].get<std::string>() + " ";
    }
    EXPECT_EQ(bases, "pcr arrival bitrate none ");
}

TEST(json, lines_of_a_transcript_are_a_list)
{
    overview found;
    for (const char *lines : {"", "one", "one\n", "one\n\n  two\n"}) {
        found.transcript.entries.emplace_back();
        found.transcript.entries.back().lines = lines;
    }
    std::string all;
    const ordered_json transcript = parsed(found)["transcript"];
    for (const auto &entry : transcript) all += entry["lines"].dump() + "\n";
    EXPECT_EQ(all, "[]\n[\"one\"]\n[\"one\"]\n[\"one\",\"\",\"  two\"]\n");
}
