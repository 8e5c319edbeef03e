#include "mpeg_ts_overview/driver/command_line.h"

#include <gtest/gtest.h>

namespace {

struct parsed_line {
    std::optional<int> status;
    overview_options options;
    std::string output;
    std::string errors;
};

parsed_line parse(std::vector<const char *> arguments)
{
    parsed_line parsed;
    arguments.insert(arguments.begin(), "mpeg_ts_overview");
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    parsed.status = parse_command_line(static_cast<int>(arguments.size()), arguments.data(), &parsed.options);
    parsed.output = testing::internal::GetCapturedStdout();
    parsed.errors = testing::internal::GetCapturedStderr();
    return parsed;
}

overview_options options_of(const std::vector<const char *> &arguments)
{
    const parsed_line parsed = parse(arguments);
    EXPECT_FALSE(parsed.status) << parsed.errors;
    EXPECT_EQ(parsed.output + parsed.errors, "");
    return parsed.options;
}

/// What wrong usage is answered with.
std::string refusal_of(const std::vector<const char *> &arguments)
{
    const parsed_line parsed = parse(arguments);
    EXPECT_EQ(parsed.status, 1);
    EXPECT_EQ(parsed.output, "");
    const std::string beginning = "mpeg_ts_overview: ";
    const std::string end = "\nmpeg_ts_overview --help lists the options\n";
    EXPECT_TRUE(parsed.errors.starts_with(beginning)) << parsed.errors;
    EXPECT_TRUE(parsed.errors.ends_with(end)) << parsed.errors;
    if (parsed.errors.size() < beginning.size() + end.size()) return parsed.errors;
    return parsed.errors.substr(beginning.size(), parsed.errors.size() - beginning.size() - end.size());
}

} // namespace

TEST(command_line, a_file_alone_gives_the_summary_and_nothing_else)
{
    const overview_options options = options_of({"recording.ts"});
    EXPECT_EQ(options.input, "recording.ts");
    EXPECT_TRUE(options.text);
    EXPECT_FALSE(options.json);
    EXPECT_FALSE(options.html);
    EXPECT_TRUE(options.checked.empty());
    EXPECT_FALSE(options.whole_multiplex);
    EXPECT_FALSE(options.packet_size);
    EXPECT_EQ(options.clock, clock_choice::automatic);
    EXPECT_FALSE(options.bitrate_bps);
    EXPECT_EQ(options.assume_country, 0U);
    EXPECT_FALSE(options.atsc_mode);
    EXPECT_EQ(options.color, color_choice::automatic);
}

TEST(command_line, outputs_silence_the_summary_unless_it_is_asked_for)
{
    overview_options options = options_of({"--json=out.json", "--html=out.html", "recording.ts"});
    EXPECT_EQ(options.json, "out.json");
    EXPECT_EQ(options.html, "out.html");
    EXPECT_FALSE(options.text);
    options = options_of({"--json=out.json", "--text", "recording.ts"});
    EXPECT_TRUE(options.text);
    options = options_of({"recording.ts", "--html=-"});
    EXPECT_EQ(options.html, "-");
    EXPECT_FALSE(options.text);
}

TEST(command_line, standard_output_has_room_for_one)
{
    const char *const refusal = "only one of --json, --html and --text can go to standard output";
    EXPECT_EQ(refusal_of({"--json=-", "--html=-", "a.ts"}), refusal);
    EXPECT_EQ(refusal_of({"--json=-", "--text", "a.ts"}), refusal);
    EXPECT_EQ(refusal_of({"--html=-", "--text", "a.ts"}), refusal);
}

TEST(command_line, an_output_names_its_file_behind_an_equals_sign)
{
    EXPECT_EQ(refusal_of({"--json", "a.ts"}), "--json: no file is named; it stands behind '='");
    EXPECT_EQ(refusal_of({"--html", "a.ts", "b.ts"}), "--html: no file is named; it stands behind '='");
    EXPECT_EQ(refusal_of({"--json=", "a.ts"}), "--json=: nothing stands behind '='");
}

TEST(command_line, two_outputs_do_not_take_each_others_place)
{
    const char *const refusal = "--json and --html: both are 'x'";
    EXPECT_EQ(refusal_of({"--json=x", "--html=x", "a.ts"}), refusal);
    EXPECT_EQ(refusal_of({"--json=x", "--html=./x", "a.ts"}), refusal);
    EXPECT_EQ(refusal_of({"--json=x", "--html=missing/../x", "a.ts"}), refusal);
    EXPECT_EQ(options_of({"--json=x", "--html=missing/x", "a.ts"}).html, "missing/x");
    EXPECT_EQ(options_of({"--json=/dev/null", "--html=/dev/null", "a.ts"}).html, "/dev/null");
}

TEST(command_line, messages_leave_out_the_controls_of_an_argument)
{
    EXPECT_EQ(refusal_of({"a.ts", "b\x1B[31m\n\xC2\x9B.ts"}),
              "The following argument was not expected: b[31m.ts");
}

TEST(command_line, check_has_priorities_behind_an_equals_sign_only)
{
    EXPECT_EQ(options_of({"--check", "3"}).checked, (std::vector<int>{1, 2}));
    EXPECT_EQ(options_of({"--check", "3"}).input, "3");
    EXPECT_EQ(options_of({"--check=3", "a.ts"}).checked, std::vector<int>{3});
    EXPECT_EQ(options_of({"a.ts", "--check=1,2,3"}).checked, (std::vector<int>{1, 2, 3}));
    for (const char *text : {"--check=0", "--check=4", "--check=12", "--check=1,", "--check=,1",
                             "--check=1,,2", "--check=1 2", "--check=all"})
        EXPECT_EQ(refusal_of({text, "a.ts"}),
                  "--check: '" + std::string(text + 8) + "' is no list of priorities such as 1,2,3");
}

TEST(command_line, no_option_takes_its_value_from_the_next_argument_when_it_ends_in_an_equals_sign)
{
    for (const char *text : {"--html=", "--check=", "--bitrate=", "--clock=", "--limit="})
        EXPECT_EQ(refusal_of({text, "a.ts"}), std::string(text) + ": nothing stands behind '='");
}

TEST(command_line, one_file_a_run)
{
    EXPECT_EQ(refusal_of({}), "no file is named");
    EXPECT_EQ(refusal_of({"--text"}), "no file is named");
    EXPECT_EQ(refusal_of({""}), "no file is named");
    EXPECT_NE(refusal_of({"a.ts", "b.ts"}).find("b.ts"), std::string::npos);
    EXPECT_EQ(options_of({"-"}).input, "-");
    EXPECT_EQ(options_of({"--", "--json"}).input, "--json");
    EXPECT_EQ(options_of({"--text", "--", "--check"}).input, "--check");
}

TEST(command_line, packet_sizes_are_three)
{
    EXPECT_EQ(options_of({"--packet-size=188", "a"}).packet_size, 188U);
    EXPECT_EQ(options_of({"--packet-size=192", "a"}).packet_size, 192U);
    EXPECT_EQ(options_of({"--packet-size=204", "a"}).packet_size, 204U);
    EXPECT_EQ(refusal_of({"--packet-size=208", "a"}), "--packet-size: '208' is none of 188, 192, 204");
}

TEST(command_line, clocks_are_three)
{
    EXPECT_EQ(options_of({"--clock=pcr", "a"}).clock, clock_choice::pcr);
    EXPECT_EQ(options_of({"--clock=arrival", "a"}).clock, clock_choice::arrival);
    EXPECT_EQ(options_of({"--clock=none", "a"}).clock, clock_choice::none);
    EXPECT_EQ(refusal_of({"--clock=auto", "a"}), "--clock: 'auto' is none of pcr, arrival, none");
}

TEST(command_line, arrival_stamps_stand_in_packets_of_192_bytes_only)
{
    EXPECT_EQ(options_of({"--clock=arrival", "--packet-size=192", "a"}).packet_size, 192U);
    EXPECT_EQ(refusal_of({"--clock=arrival", "--packet-size=188", "a"}),
              "--clock=arrival: packets of 188 bytes have no arrival time stamps");
    EXPECT_EQ(refusal_of({"--clock=arrival", "--packet-size=204", "a"}),
              "--clock=arrival: packets of 204 bytes have no arrival time stamps");
    EXPECT_EQ(options_of({"--clock=arrival", "--packet-size=188", "--bitrate=4000000", "a"}).bitrate_bps,
              4000000U);
}

TEST(command_line, a_bitrate_is_within_what_arithmetic_can_bear)
{
    EXPECT_EQ(options_of({"--bitrate=1000", "a"}).bitrate_bps, 1000U);
    EXPECT_EQ(options_of({"--bitrate=1000000000000", "a"}).bitrate_bps, 1000000000000U);
    EXPECT_EQ(refusal_of({"--bitrate=999", "a"}),
              "--bitrate: 999 is not within 1000 and 1000000000000 bits per second");
    EXPECT_EQ(refusal_of({"--bitrate=1000000000001", "a"}),
              "--bitrate: 1000000000001 is not within 1000 and 1000000000000 bits per second");
    for (const char *text : {"--bitrate=-1", "--bitrate=1e6", "--bitrate=4M", "--bitrate=+1000",
                             "--bitrate=99999999999999999999"})
        EXPECT_EQ(refusal_of({text, "a"}), "--bitrate: '" + std::string(text + 10) + "' is no number");
}

TEST(command_line, limits_add_up)
{
    const overview_options options =
        options_of({"--limit", "pcr_interval=40ms", "--limit=pcr_accuracy=250", "a.ts"});
    EXPECT_EQ(options.input, "a.ts");
    EXPECT_EQ(options.other_limits.pcr_interval_ticks, 1080000);
    EXPECT_EQ(options.other_limits.pcr_accuracy_ns, 250.0);
    EXPECT_EQ(refusal_of({"--limit", "pcr=1", "a.ts"}), "--limit: there is no limit named 'pcr'");
    EXPECT_NE(refusal_of({"a.ts", "--limit"}), "");
}

TEST(command_line, countries_are_australia_or_a_specifier)
{
    EXPECT_EQ(options_of({"--assume-country=aus", "a"}).assume_country, 0x3200U);
    EXPECT_EQ(options_of({"--assume-country=0x28", "a"}).assume_country, 0x28U);
    EXPECT_EQ(options_of({"--assume-country=40", "a"}).assume_country, 40U);
    EXPECT_EQ(options_of({"--assume-country=4294967295", "a"}).assume_country, 0xFFFFFFFFU);
    EXPECT_EQ(refusal_of({"--assume-country=4294967296", "a"}),
              "--assume-country: 4294967296 has more than 32 bits");
    EXPECT_EQ(refusal_of({"--assume-country=nz", "a"}), "--assume-country: 'nz' is no number");
    EXPECT_EQ(refusal_of({"--assume-country=0x", "a"}), "--assume-country: '' is no number");
}

TEST(command_line, the_last_of_atsc_and_not_atsc_counts)
{
    EXPECT_EQ(options_of({"--atsc", "a"}).atsc_mode, true);
    EXPECT_EQ(options_of({"--not-atsc", "a"}).atsc_mode, false);
    EXPECT_EQ(options_of({"--atsc", "--not-atsc", "a"}).atsc_mode, false);
    EXPECT_EQ(options_of({"--not-atsc", "--atsc", "a"}).atsc_mode, true);
}

TEST(command_line, the_last_of_several_values_counts)
{
    const overview_options options = options_of({"--clock=pcr", "--clock=none", "--json=a", "--json=b", "x"});
    EXPECT_EQ(options.clock, clock_choice::none);
    EXPECT_EQ(options.json, "b");
}

TEST(command_line, whole_multiplex_is_a_flag)
{
    EXPECT_TRUE(options_of({"--whole-multiplex", "a"}).whole_multiplex);
    EXPECT_NE(refusal_of({"--whole-multiplex=no", "a"}), "");
}

TEST(command_line, what_is_unknown_is_named)
{
    EXPECT_NE(refusal_of({"--jsn=x", "a.ts"}).find("--jsn=x"), std::string::npos);
    EXPECT_NE(refusal_of({"-x", "a.ts"}).find("-x"), std::string::npos);
}

TEST(command_line, help_fits_a_terminal_and_names_every_option)
{
    const parsed_line help = parse({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.errors, "");
    EXPECT_EQ(parse({"-h"}).output, help.output);
    for (const char *option :
         {"--json=",           "--html=",      "--text",         "--color=",     "--check",
          "--whole-multiplex", "--limit ",     "--packet-size=", "--clock=",     "--bitrate=",
          "--assume-country=", "--atsc",       "--not-atsc",     "-h, --help",   "--version",
          "pcr_interval",      "pcr_accuracy", "pts_interval",   "pat_interval", "pmt_interval",
          "pid_absence",       "sdt_interval", "nit_interval",   "eit_schedule", "si_minimum_gap"})
        EXPECT_NE(help.output.find(option), std::string::npos) << option;
    for (size_t at = 0, end = 0; (end = help.output.find('\n', at)) != std::string::npos; at = end + 1)
        EXPECT_LE(end - at, 80U) << help.output.substr(at, end - at);
}

TEST(command_line, the_version_is_one_line)
{
    const parsed_line version = parse({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output, "mpeg_ts_overview " OVERVIEW_VERSION "\n");
    EXPECT_EQ(version.errors, "");
}

TEST(command_line, colour_is_for_terminals_that_do_not_refuse_it)
{
    const auto automatic = color_choice::automatic;
    EXPECT_EQ(options_of({"--color=always", "a"}).color, color_choice::always);
    EXPECT_EQ(options_of({"--color=never", "a"}).color, color_choice::never);
    EXPECT_EQ(options_of({"--color=auto", "a"}).color, automatic);
    EXPECT_EQ(refusal_of({"--color=yes", "a"}), "--color: 'yes' is none of auto, always, never");

    EXPECT_TRUE(color_is_wanted(automatic, true, nullptr, "xterm"));
    EXPECT_TRUE(color_is_wanted(automatic, true, "", "xterm"));
    EXPECT_FALSE(color_is_wanted(automatic, true, "1", "xterm"));
    EXPECT_FALSE(color_is_wanted(automatic, true, nullptr, "dumb"));
    EXPECT_FALSE(color_is_wanted(automatic, true, nullptr, nullptr));
    EXPECT_FALSE(color_is_wanted(automatic, false, nullptr, "xterm"));
    EXPECT_TRUE(color_is_wanted(color_choice::always, false, "1", "dumb"));
    EXPECT_FALSE(color_is_wanted(color_choice::never, true, nullptr, "xterm"));
}
