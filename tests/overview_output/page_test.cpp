#include "mpeg_ts_overview/output/page.h"

#include "mpeg_ts_overview/output/page_template.h"
#include "page/building.h"
#include "page/recordings.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

namespace {

const overview &multiplex()
{
    static const overview found = multiplex_recording();
    return found;
}

std::string page_of(const overview &found)
{
    std::string page;
    EXPECT_TRUE(write_page(found, [&](std::string_view piece) {
        page += piece;
        return true;
    }));
    return page;
}

nlohmann::json data_of(const std::string &page)
{
    const std::string begin = R"(<script type="application/json" id="data">)";
    const size_t from = page.find(begin) + begin.size();
    return nlohmann::json::parse(page.substr(from, page.find("</script>", from) - from));
}

} // namespace

TEST(page, has_the_rows_of_the_json)
{
    const nlohmann::json data = data_of(page_of(multiplex()));
    EXPECT_EQ(data["recording"]["path"], "recordings/multiplex.ts");
    EXPECT_EQ(data["programs"].size(), 30U);
    EXPECT_EQ(data["programs"][4]["service_name"], "Service 5");
    EXPECT_EQ(data["guide"]["events"].size(), 1200U);
    EXPECT_EQ(data["cues"].size(), 9U);
    EXPECT_EQ(data["teletext"].size(), 87U);
    EXPECT_EQ(data["transcript"].size(), 33U);
    EXPECT_EQ(data["checks"].size(), 24U);
}

TEST(page, sums_the_rates_of_each_program)
{
    const nlohmann::json rates = data_of(page_of(multiplex()))["rates"];
    ASSERT_EQ(rates["programs"].size(), 30U);
    EXPECT_EQ(rates["programs"][0]["number"], 30); // the one with the most
    uint64_t sum = 0;
    for (const pid_rate_facts &row : multiplex().rates.pids)
        if (row.pid >= 0x0108 && row.pid <= 0x010C) sum += row.rate.series_bps[7];
    EXPECT_EQ(rates["programs"][0]["series"][7], sum);
}

TEST(page, has_series_of_the_64_pids_with_the_most_and_says_so)
{
    const nlohmann::json data = data_of(page_of(multiplex()));
    EXPECT_EQ(data["rates"]["pid_series"].size(), 64U);
    EXPECT_EQ(data["rates"]["pid_series"][0]["pid"], 0x0109);
    EXPECT_EQ(data["rates"]["pids"].size(), 155U);
    size_t with_margins = 0;
    for (const auto &row : data["time_stamps"]) with_margins += row["margin_series"].is_null() ? 0U : 1U;
    EXPECT_EQ(with_margins, 64U);
    EXPECT_EQ(data["time_stamps"].size(), 90U);
    EXPECT_EQ(data["cuts"][0], "rates over time: of 155 PIDs the 64 with the most, the others are one");
    EXPECT_EQ(data["cuts"][1], "time stamps over time: 64 PIDs of 90 have their series");
    EXPECT_EQ(data["all_rows"], nlohmann::json::object());
}

TEST(page, is_below_10_MB_with_more_of_everything_and_says_what_is_left_out)
{
    const overview found = overfull_recording();
    const std::string page = page_of(found);
    EXPECT_LT(page.size(), 10000000U);
    const nlohmann::json data = data_of(page);
    const std::string cuts = data["cuts"].dump();
    for (const char *what :
         {"programs: ", "tables: ", "events of the guide: ", "cues: ", "sections of the transcript: ",
          "groups of faults: ", "texts of more than 300 characters"})
        EXPECT_NE(cuts.find(what), std::string::npos) << what;
    EXPECT_EQ(data["all_rows"]["programs"], found.programs.size());
    EXPECT_EQ(data["all_rows"]["tables"], found.tables.rows.size());
    EXPECT_EQ(data["all_rows"]["sections of the transcript"], found.transcript.entries.size());
    // What is on stays in the guide, wherever it came.
    const nlohmann::json &events = data["guide"]["events"];
    ASSERT_LT(events.size(), 5000U);
    EXPECT_EQ(events[2]["title"], "on air");
}

TEST(page, is_below_10_MB_when_every_store_is_full)
{
    const std::string page = page_of(hostile_recording());
    EXPECT_LT(page.size(), 10000000U);
    const nlohmann::json data = data_of(page);
    const std::string cuts = data["cuts"].dump();
    for (const char *what :
         {"programs: ", "PIDs: ", "rates of PIDs: ", "tables: ", "events of the guide: ", "cues: ",
          "teletext pages: ", "sections of the transcript: ", "groups of faults: ", "PCRs over time: ",
          "time stamps over time: ", "rates over time: "})
        EXPECT_NE(cuts.find(what), std::string::npos) << what;
    for (const char *list : {"cues", "teletext", "faults", "breaks"})
        EXPECT_GT(data[list].size(), 50U) << list;
    EXPECT_EQ(data["checks"].size(), 24U);
    EXPECT_LE(data["transcript"].dump().size(), 1U << 20);
}

TEST(page, leaves_nothing_out_that_has_room)
{
    overview found = small_recording();
    add_cues(found, 0x0150, 2000);
    add_teletext(found, 0x0104, 2000, "Headlines: rain in the north");
    for (unsigned number = 0; number < 4000; ++number)
        add_table(found, 0x0012, 0x50, static_cast<uint16_t>(number), "EIT schedule", 10);
    const nlohmann::json data = data_of(page_of(found));
    EXPECT_EQ(data["cues"].size(), 2000U);
    EXPECT_EQ(data["teletext"].size(), 2000U);
    EXPECT_EQ(data["tables"]["rows"].size(), found.tables.rows.size());
    EXPECT_TRUE(data["cuts"].empty());
}

TEST(page, never_has_markup_of_the_stream)
{
    const std::string page = page_of(markup_recording());
    EXPECT_EQ(page.find("<img"), std::string::npos);
    EXPECT_EQ(page.find("</script><script>document"), std::string::npos);
    EXPECT_EQ(data_of(page)["programs"][0]["service_name"], *markup_recording().programs[0].service_name);
}

TEST(page, is_one_file_that_refers_to_no_other)
{
    const std::string page = page_of(small_recording());
    for (const char *words : {" src=", "sourceMappingURL", "@import", "url(", "import {", "\nexport "})
        EXPECT_EQ(page.find(words), std::string::npos) << words;
    for (const char *words : {"default-src 'none'", "script-src 'sha256-", "WITHOUT WARRANTY OF ANY KIND"})
        EXPECT_NE(page.find(words), std::string::npos) << words;
}

TEST(page, tells_of_a_sink_that_fails)
{
    size_t pieces = 0;
    const overview found = small_recording();
    EXPECT_FALSE(write_page(found, [&](std::string_view) { return ++pieces < 3; }));
    EXPECT_EQ(pieces, 3U);
    const size_t before_data = page_before_data().size();
    pieces = 0;
    EXPECT_FALSE(write_page(found, [&](std::string_view) { return ++pieces < before_data + 3; }));
    EXPECT_EQ(pieces, before_data + 3);
}
