#include "mpeg_ts_overview/output/text.h"

#include "mpeg_ts_overview/output/terminal_text.h"
#include "sample_overview.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(text, everything_at_once)
{
    EXPECT_EQ(summary_text(sample_overview(), false),
              R"(recording.ts   1.08 GB   8 min 0 s   18.00 Mbit/s constant   188-byte packets   DVB
  time by PCR of 0x0100

  FAIL  1.4   Continuity_count_error    12 on PID 0x0100, first at 0:00:03.120 (packet 48211)
  FAIL  2.3a  PCR_repetition_error      1 on PID 0x0100, worst 250.5 ms (limit 100 ms),
              first at 0:00:00.030 (packet 70)
  ok    1 check       not measured: 2.4 (variable bitrate), 3.1a (no NIT in the recording), 3.3

  0x0001  5 One (Provider)                       digital television   6.01 Mbit/s
     0x0100  MPEG-2 video 1280x720 25p       6.01 Mbit/s  ########################################
     0x0101  MPEG-1 audio layer II     eng   0.20 Mbit/s  #
     0x0102  teletext (absent)
  0x0002                                         absent
  other: 0x1FFF null packets 2.90 Mbit/s (16.1 %)
  tables: PAT 100 ms, PMT 100 ms, SDT 500 ms
  PCR 30 ms (max 41)      2 cues, 3 events, 1 teletext page, 2 time breaks, 3 faults in tables
  not kept: breaks 12 (limit 1000)
)");
}

TEST(text, the_usual_profile_of_mpeg_2_video_is_left_out)
{
    overview found = sample_overview();
    program_stream &stream = found.programs[0].streams[0];
    stream.details = "1280x720 25p Main@High 1440";
    EXPECT_EQ(summary_text(found, false), summary_text(sample_overview(), false));
    stream.details = "1280x720 25p 4:2:2@High";
    EXPECT_NE(summary_text(found, false).find("MPEG-2 video 1280x720 25p 4:2:2@High "), std::string::npos);
}

TEST(text, an_overview_of_nothing_says_so_in_one_line)
{
    overview found;
    found.recording.path = "empty.ts";
    found.recording.packet_size = 188;
    EXPECT_EQ(summary_text(found, false), "empty.ts   0 bytes   188-byte packets   MPEG   no times\n");
}

TEST(text, colour_is_nothing_but_escape_sequences_around_the_same_text)
{
    std::string text = summary_text(sample_overview(), true);
    EXPECT_NE(text.find("\033[1mrecording.ts\033[0m   1.08 GB"), std::string::npos);
    EXPECT_NE(text.find("  \033[1;31mFAIL\033[0m  1.4   Continuity"), std::string::npos);
    EXPECT_NE(text.find("  \033[32mok\033[0m    1 check"), std::string::npos);
    EXPECT_NE(text.find("\033[36m#\033[0m\n"), std::string::npos);
    for (size_t at = text.find('\033'); at != std::string::npos; at = text.find('\033'))
        text.erase(at, text.find('m', at) + 1 - at);
    EXPECT_EQ(text, summary_text(sample_overview(), false));
}

TEST(text, whatever_the_stream_says_no_line_is_longer_than_100_columns_or_holds_a_control)
{
    overview found = hostile_overview();
    found.recording.path += "/" + std::string(300, 'p');
    found.programs[0].service_name = std::string(300, 'n');
    found.programs[0].service_type->name = std::string(300, 't');
    found.programs[0].streams[0].details = std::string(300, 'd');
    found.programs[0].streams[0].language = std::string(300, 'l');
    found.tables.rows[0].name = std::string(300, 'a');
    found.checks[3].why = std::string(300, 'w');
    found.transcript.note = std::string(300, 'r');
    std::istringstream lines(summary_text(found, false));
    std::string line;
    size_t count = 0;
    while (std::getline(lines, line)) {
        ++count;
        EXPECT_LE(columns_of(line), 100U) << line;
        EXPECT_EQ(without_controls(line), line);
    }
    EXPECT_GE(count, 15U);
}

TEST(text, the_end_of_a_long_path_is_shown)
{
    overview found;
    found.recording.path = std::string(80, '/') + "\xC3\xA9.ts";
    found.recording.packet_size = 192;
    EXPECT_EQ(summary_text(found, false),
              "..." + std::string(53, '/') + "\xC3\xA9.ts   0 bytes   192-byte packets   MPEG\n  no times\n");
}

TEST(text, each_time_base_is_said)
{
    overview found;
    const auto says = [&](const char *text) {
        return summary_text(found, false).find(std::string("   ") + text + "\n") != std::string::npos;
    };
    EXPECT_TRUE(says("no times"));
    found.recording.time_base = time_base_kind::arrival;
    EXPECT_TRUE(says("time by arrival"));
    found.recording.time_base = time_base_kind::bitrate;
    EXPECT_TRUE(says("time by bitrate"));
    found.recording.time_base = time_base_kind::pcr;
    EXPECT_TRUE(says("time by PCR"));
    found.recording.clock_pid = 0x0100;
    EXPECT_TRUE(says("time by PCR of 0x0100"));
}

TEST(text, a_rate_is_constant_or_variable)
{
    overview found;
    found.rates.whole.mean_bps = 4000000;
    EXPECT_NE(summary_text(found, false).find("   4.00 Mbit/s variable   "), std::string::npos);
    found.recording.constant_bitrate = true;
    EXPECT_NE(summary_text(found, false).find("   4.00 Mbit/s constant   "), std::string::npos);
}

TEST(text, without_rates_streams_show_their_share)
{
    overview found = sample_overview();
    found.rates = {};
    for (program_stream &stream : found.programs[0].streams) stream.mean_bps.reset();
    const std::string text = summary_text(found, false);
    EXPECT_NE(text.find("\n     0x0100  MPEG-2 video 1280x720 25p            33.4 %\n"), std::string::npos)
        << text;
    EXPECT_NE(text.find("\n  other: 0x1FFF null packets (16.1 %)\n"), std::string::npos) << text;
}

TEST(text, pids_beyond_eight_of_no_program_are_counted)
{
    overview found;
    found.recording.packets = 103;
    found.recording.sync_byte_errors = 5;
    found.recording.sync_losses = 1;
    for (uint16_t pid = 0x0020; pid < 0x002A; ++pid) {
        pid_facts facts;
        facts.pid = pid;
        facts.packets = pid == 0x0024 ? 55 : 5;
        found.pids.push_back(facts);
    }
    EXPECT_NE(
        summary_text(found, false)
            .find(
                "\n  other: 0x0024 (55.0 %), 0x0020 (5.0 %), 0x0021 (5.0 %), 0x0022 (5.0 %), 0x0023 (5.0 %),\n"
                "         0x0025 (5.0 %), 0x0026 (5.0 %), 0x0027 (5.0 %), 2 more PIDs\n"),
        std::string::npos)
        << summary_text(found, false);
}

TEST(text, tables_pcr_and_counts_share_a_line_where_they_fit)
{
    overview found = sample_overview();
    found.tables.rows.resize(1);
    found.breaks = {};
    found.transcript = {};
    EXPECT_NE(
        summary_text(found, false)
            .find("\n  tables: PAT 100 ms      PCR 30 ms (max 41)      2 cues, 3 events, 1 teletext page\n"),
        std::string::npos)
        << summary_text(found, false);
}

TEST(text, counts_of_many_digits_go_to_lines_of_their_own)
{
    overview found = sample_overview();
    found.cues.not_kept = 4999998;
    found.guide.not_kept = 19999998;
    found.teletext.not_kept = 1999999;
    found.breaks.not_kept = 99999998;
    const std::string text = summary_text(found, false);
    EXPECT_NE(text.find("\n  PCR 30 ms (max 41)\n  5000000 cues, 20000000 events, "), std::string::npos)
        << text;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(columns_of(line), 100U) << line;
}

TEST(text, rates_of_many_digits_take_from_the_bars)
{
    overview found = sample_overview();
    found.programs[0].streams[0].mean_bps = 1000000000000;
    found.programs[0].streams[0].details = std::string(60, 'd');
    found.programs[0].streams[0].language = "eng,fra,deu";
    const std::string text = summary_text(found, false);
    EXPECT_NE(text.find("   1000000.00 Mbit/s  ##"), std::string::npos) << text;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(columns_of(line), 100U) << line;
}

TEST(text, the_longest_interval_of_pcrs_is_in_the_unit_of_the_mean)
{
    overview found = sample_overview();
    found.pcr.resize(1);
    found.pcr[0].interval_ticks = extent();
    for (const int64_t seconds : {1, 2}) found.pcr[0].interval_ticks.add(seconds * ticks_per_second);
    EXPECT_NE(summary_text(found, false).find("PCR 1.5 s (max 2)"), std::string::npos);
}

TEST(text, a_transcript_that_ended_early_says_why)
{
    overview found;
    found.transcript.note = "a PAT with 70000 programs";
    EXPECT_NE(summary_text(found, false).find("\n  transcript: a PAT with 70000 programs\n"),
              std::string::npos);
}
