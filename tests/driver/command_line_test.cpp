#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/driver/command_line.h"
#include "mpeg_ts_analysis/driver/usage.h"

#include <string>
#include <vector>

using arguments = std::vector<const char *>;

struct command_line : report_test {
    /// Parses the arguments behind the program name from a fresh state. What is written to standard error is
    /// in said.
    const char *parse(arguments given)
    {
        process_state_reset();
        given.insert(given.begin(), "mpeg_ts_analysis");
        testing::internal::CaptureStderr();
        const char *const path = parse_command_line(static_cast<int>(given.size()), given.data());
        said = testing::internal::GetCapturedStderr();
        return path;
    }

    /// The settings that differ from their defaults after these switches and a file.
    std::string changed_by(arguments switches)
    {
        switches.push_back("file.ts");
        EXPECT_STREQ(parse(switches), "file.ts");
        EXPECT_EQ(said, "");
        return changed_settings();
    }

    static std::string changed_settings()
    {
        const analysis_settings defaults;
        std::string text;
        const auto add = [&text](const char *name, auto value, auto default_value) {
            if (value == default_value) return;
            if (!text.empty()) text += ' ';
            text += std::string(name) + '=' + std::to_string(value);
        };
        add("packet_size_mode", settings.packet_size_mode, defaults.packet_size_mode);
        add("bdmv_mode", settings.bdmv_mode, defaults.bdmv_mode);
        add("atsc_mode", settings.atsc_mode, defaults.atsc_mode);
        add("atsc_mh_mode", settings.atsc_mh_mode, defaults.atsc_mh_mode);
        add("max_pcr_interval", settings.max_pcr_interval, defaults.max_pcr_interval);
        add("pcr_drift_correction", settings.pcr_drift_correction, defaults.pcr_drift_correction);
        add("dump_descriptors_mode", settings.dump_descriptors_mode, defaults.dump_descriptors_mode);
        add("skip_padding", settings.skip_padding, defaults.skip_padding);
        add("program_focus", settings.program_focus, defaults.program_focus);
        add("assume_country", settings.assume_country, defaults.assume_country);
        add("dump_tables", settings.dump_tables, defaults.dump_tables);
        add("dump_pcr_analysis", settings.dump_pcr_analysis, defaults.dump_pcr_analysis);
        add("dump_ts_mode", settings.dump_ts_mode, defaults.dump_ts_mode);
        add("ts_bitrate_auto", settings.ts_bitrate_auto, defaults.ts_bitrate_auto);
        add("ts_bitrate", settings.ts_bitrate, defaults.ts_bitrate);
        add("packet_size", settings.packet_size, defaults.packet_size);
        add("colour_output", settings.colour_output, defaults.colour_output);
        return text;
    }

    static std::string usage_text()
    {
        testing::internal::CaptureStderr();
        print_usage();
        return testing::internal::GetCapturedStderr();
    }

    std::string said;
};

TEST_F(command_line, settings_begin_with_their_defaults)
{
    process_state_reset();
    EXPECT_EQ(settings.packet_size_mode, -1);
    EXPECT_EQ(settings.bdmv_mode, -1);
    EXPECT_EQ(settings.atsc_mode, -1);
    EXPECT_EQ(settings.atsc_mh_mode, -1);
    EXPECT_EQ(settings.max_pcr_interval, 0.1);
    EXPECT_TRUE(settings.pcr_drift_correction);
    EXPECT_EQ(settings.dump_descriptors_mode, 1);
    EXPECT_TRUE(settings.skip_padding);
    EXPECT_EQ(settings.program_focus, 0);
    EXPECT_EQ(settings.assume_country, 0u);
    EXPECT_FALSE(settings.dump_tables);
    EXPECT_FALSE(settings.dump_pcr_analysis);
    EXPECT_EQ(settings.dump_ts_mode, 0);
    EXPECT_FALSE(settings.ts_bitrate_auto);
    EXPECT_EQ(settings.ts_bitrate, 0u);
}

TEST_F(command_line, a_file_alone_leaves_every_setting)
{
    EXPECT_EQ(changed_by({}), "");
}

TEST_F(command_line, each_switch_without_a_value_sets_its_setting)
{
    EXPECT_EQ(changed_by({"-avchd"}), "packet_size_mode=1");
    EXPECT_EQ(changed_by({"-std"}), "packet_size_mode=0");
    EXPECT_EQ(changed_by({"-bdmv"}), "bdmv_mode=1");
    EXPECT_EQ(changed_by({"-not-bdmv"}), "bdmv_mode=0");
    EXPECT_EQ(changed_by({"-dump-tables"}), "dump_tables=1");
    EXPECT_EQ(changed_by({"-atsc"}), "atsc_mode=1");
    EXPECT_EQ(changed_by({"-not-atsc"}), "atsc_mode=0");
    EXPECT_EQ(changed_by({"-atsc-mh"}), "atsc_mh_mode=1");
    EXPECT_EQ(changed_by({"-not-atsc-mh"}), "atsc_mh_mode=0");
    EXPECT_EQ(changed_by({"-no-skip-padding"}), "skip_padding=0");
    EXPECT_EQ(changed_by({"-no-pcr-drift-correction"}), "pcr_drift_correction=0");
    EXPECT_EQ(changed_by({"-dump-pcr-analysis"}), "dump_pcr_analysis=1");
    EXPECT_EQ(changed_by({"-dump-ts"}), "dump_ts_mode=1");
}

TEST_F(command_line, a_later_switch_overrides_an_earlier_one)
{
    EXPECT_EQ(changed_by({"-avchd", "-std"}), "packet_size_mode=0");
    EXPECT_EQ(changed_by({"-std", "-avchd"}), "packet_size_mode=1");
    EXPECT_EQ(changed_by({"-bdmv", "-not-bdmv"}), "bdmv_mode=0");
    EXPECT_EQ(changed_by({"-not-atsc", "-atsc"}), "atsc_mode=1");
    EXPECT_EQ(changed_by({"-atsc-mh", "-not-atsc-mh"}), "atsc_mh_mode=0");
    EXPECT_EQ(changed_by({"-no-skip-padding", "-skip-padding"}), "");
    EXPECT_EQ(changed_by({"-no-pcr-drift-correction", "-pcr-drift-correction"}), "");
    EXPECT_EQ(changed_by({"-dump-ts=contents", "-dump-ts"}), "dump_ts_mode=1");
    EXPECT_EQ(changed_by({"-dump-descriptors=raw", "-dump-descriptors"}), "");
    EXPECT_EQ(changed_by({"-program=7", "-program=9"}), "program_focus=9");
}

TEST_F(command_line, one_two_or_three_dashes_give_the_same_switch)
{
    EXPECT_EQ(changed_by({"-std"}), "packet_size_mode=0");
    EXPECT_EQ(changed_by({"--std"}), "packet_size_mode=0");
    EXPECT_EQ(changed_by({"---std"}), "packet_size_mode=0");
    EXPECT_EQ(changed_by({"---program=5"}), "program_focus=5");
}

TEST_F(command_line, program_takes_a_number_of_any_base_cut_to_16_bits)
{
    EXPECT_EQ(changed_by({"-program=10"}), "program_focus=10");
    EXPECT_EQ(changed_by({"-program=0x10"}), "program_focus=16");
    EXPECT_EQ(changed_by({"-program=010"}), "program_focus=8");
    EXPECT_EQ(changed_by({"-program=65541"}), "program_focus=5");
    EXPECT_EQ(changed_by({"-program=-1"}), "program_focus=65535");
    EXPECT_EQ(changed_by({"-program=5x"}), "program_focus=5");
    EXPECT_EQ(changed_by({"-program=7", "-program=x"}), "");
    EXPECT_EQ(changed_by({"-program=7", "-program="}), "");
}

TEST_F(command_line, max_pcr_interval_takes_milliseconds)
{
    EXPECT_EQ(changed_by({"-max-pcr-interval=40"}), "max_pcr_interval=0.040000");
    EXPECT_EQ(changed_by({"-max-pcr-interval=2.5"}), "max_pcr_interval=0.002500");
    EXPECT_EQ(changed_by({"-max-pcr-interval=1e3"}), "max_pcr_interval=1.000000");
    EXPECT_EQ(changed_by({"-max-pcr-interval=0x10"}), "max_pcr_interval=0.016000");
    EXPECT_EQ(changed_by({"-max-pcr-interval=12.5ms"}), "max_pcr_interval=0.012500");
    EXPECT_EQ(changed_by({"-max-pcr-interval=-7"}), "max_pcr_interval=-0.007000");
    EXPECT_EQ(changed_by({"-max-pcr-interval=fast"}), "max_pcr_interval=0.000000");
    EXPECT_EQ(changed_by({"-max-pcr-interval="}), "max_pcr_interval=0.000000");
    EXPECT_EQ(changed_by({"-max-pcr-interval=100"}), "");
    EXPECT_EQ(changed_by({"-max-pcr-interval"}), "");
}

TEST_F(command_line, assume_country_takes_a_number_or_aus)
{
    EXPECT_EQ(changed_by({"-assume-country=aus"}), "assume_country=12800");
    EXPECT_EQ(changed_by({"-assume-country=0x3210"}), "assume_country=12816");
    EXPECT_EQ(changed_by({"-assume-country=12816"}), "assume_country=12816");
    EXPECT_EQ(changed_by({"-assume-country=031020"}), "assume_country=12816");
    EXPECT_EQ(changed_by({"-assume-country=9z"}), "assume_country=9");
    EXPECT_EQ(changed_by({"-assume-country=aus", "-assume-country=0"}), "");
}

TEST_F(command_line, any_other_country_changes_nothing)
{
    const arguments words = {"-assume-country=aust", "-assume-country=au",     "-assume-country=AUS",
                             "-assume-country=nz",   "-assume-country=",       "-assume-country= 5",
                             "-assume-country=+5",   "-assume-country=x12816", "-assume-country",
                             "-assume-countryaus"};
    for (const char *const word : words) {
        EXPECT_EQ(changed_by({word}), "") << word;
        EXPECT_EQ(changed_by({"-assume-country=7", word}), "assume_country=7") << word;
    }
}

TEST_F(command_line, dump_ts_takes_its_mode_by_name)
{
    EXPECT_EQ(changed_by({"-dump-ts=header"}), "dump_ts_mode=1");
    EXPECT_EQ(changed_by({"-dump-ts=contents"}), "dump_ts_mode=2");
    EXPECT_EQ(changed_by({"-dump-ts=all"}), "dump_descriptors_mode=2 dump_ts_mode=2");
    EXPECT_EQ(changed_by({"-dump-ts=raw"}), "dump_descriptors_mode=2 dump_ts_mode=2");
    for (const char *const other :
         {"-dump-ts=", "-dump-ts=content", "-dump-ts=contents ", "-dump-ts=ALL", "-dump-ts=2"})
        EXPECT_EQ(changed_by({other}), "dump_ts_mode=1") << other;
}

TEST_F(command_line, dump_descriptors_takes_its_mode_by_name)
{
    EXPECT_EQ(changed_by({"-dump-descriptors=none"}), "dump_descriptors_mode=0");
    EXPECT_EQ(changed_by({"-dump-descriptors=raw"}), "dump_descriptors_mode=2");
    EXPECT_EQ(changed_by({"-dump-descriptors=all"}), "dump_descriptors_mode=2");
    for (const char *const contents :
         {"-dump-descriptors", "-dump-descriptors=contents", "-dump-descriptors=", "-dump-descriptors=NONE",
          "-dump-descriptors=rawer", "-dump-descriptors=0"}) {
        EXPECT_EQ(changed_by({"-dump-descriptors=none", contents}), "") << contents;
        EXPECT_EQ(changed_by({"-dump-descriptors=raw", contents}), "") << contents;
    }
}

TEST_F(command_line, packet_headers_without_descriptors_and_everything)
{
    EXPECT_EQ(changed_by({"-dump-ts=header", "-dump-descriptors=none"}),
              "dump_descriptors_mode=0 dump_ts_mode=1");
    EXPECT_EQ(changed_by({"-dump-descriptors=none", "-dump-ts=all"}),
              "dump_descriptors_mode=2 dump_ts_mode=2");
    EXPECT_EQ(changed_by({"-dump-descriptors=none", "-dump-ts=contents"}),
              "dump_descriptors_mode=0 dump_ts_mode=2");
}

TEST_F(command_line, ts_bitrate_takes_a_number_or_auto)
{
    EXPECT_EQ(changed_by({"-ts-bitrate=1000000"}), "ts_bitrate=1000000");
    EXPECT_EQ(changed_by({"-ts-bitrate=0x10"}), "ts_bitrate=16");
    EXPECT_EQ(changed_by({"-ts-bitrate=010"}), "ts_bitrate=8");
    EXPECT_EQ(changed_by({"-ts-bitrate=18446744073709551615"}), "ts_bitrate=18446744073709551615");
    EXPECT_EQ(changed_by({"-ts-bitrate=38M"}), "ts_bitrate=38");
    EXPECT_EQ(changed_by({"-ts-bitrate=auto"}), "ts_bitrate_auto=1");
    EXPECT_EQ(changed_by({"-ts-bitrate=5", "-ts-bitrate=auto"}), "ts_bitrate_auto=1");
    EXPECT_EQ(changed_by({"-ts-bitrate=auto", "-ts-bitrate=5"}), "ts_bitrate=5");
}

TEST_F(command_line, ts_bitrate_without_a_number_is_unknown)
{
    for (const char *const unknown :
         {"-ts-bitrate", "-ts-bitrate=", "-ts-bitrate=AUTO", "-ts-bitrate=autox", "-ts-bitratex=5"}) {
        EXPECT_EQ(changed_by({"-ts-bitrate=auto", unknown}), "") << unknown;
        EXPECT_EQ(changed_by({"-ts-bitrate=5", unknown}), "") << unknown;
    }
}

TEST_F(command_line, text_behind_the_name_of_a_switch_with_a_value_is_accepted)
{
    EXPECT_EQ(changed_by({"-programme=5"}), "");
    EXPECT_EQ(changed_by({"-program"}), "");
    EXPECT_EQ(changed_by({"-max-pcr-intervals=5"}), "");
    EXPECT_EQ(changed_by({"-assume-country-code=5"}), "");
    EXPECT_EQ(changed_by({"-dump-tsx"}), "dump_ts_mode=1");
    EXPECT_EQ(changed_by({"-dump-tsx=contents"}), "dump_ts_mode=1");
    EXPECT_EQ(changed_by({"-dump-descriptors=none", "-dump-descriptorsx=raw"}), "");
}

TEST_F(command_line, dump_tables_is_not_dump_ts)
{
    EXPECT_EQ(changed_by({"-dump-tables"}), "dump_tables=1");
}

TEST_F(command_line, an_unknown_switch_is_named_without_its_dashes)
{
    EXPECT_EQ(parse({"-nosuch", "file.ts"}), nullptr);
    EXPECT_EQ(said, "Unknown switch 'nosuch'\n" + usage_text());
    EXPECT_EQ(parse({"---no-such=1", "file.ts"}), nullptr);
    EXPECT_EQ(said, "Unknown switch 'no-such=1'\n" + usage_text());
    EXPECT_EQ(report(), "");
}

TEST_F(command_line, a_lone_dash_is_an_unknown_switch_with_an_empty_name)
{
    for (const char *const dashes : {"-", "--", "---"}) {
        EXPECT_EQ(parse({dashes, "file.ts"}), nullptr);
        EXPECT_EQ(said, "Unknown switch ''\n" + usage_text());
    }
}

TEST_F(command_line, exact_names_take_nothing_behind_them)
{
    for (const std::string name :
         {"h", "help", "avchd", "std", "bdmv", "not-bdmv", "dump-tables", "atsc", "not-atsc", "atsc-mh",
          "not-atsc-mh", "skip-padding", "no-pcr-drift-correction", "pcr-drift-correction",
          "dump-pcr-analysis", "no-skip-padding"})
        for (const std::string rest : {"x", "=1"}) {
            EXPECT_EQ(parse({("-" + name + rest).c_str(), "file.ts"}), nullptr);
            EXPECT_EQ(said, "Unknown switch '" + name + rest + "'\n" + usage_text());
            EXPECT_EQ(changed_settings(), "");
        }
}

TEST_F(command_line, names_cut_short_or_in_capitals_are_unknown)
{
    for (const std::string name : {"hel", "st", "STD", "progra", "max-pcr-interva", "assume-countr", "dump-t",
                                   "dump-descriptor", "ts-bitrat", " std"}) {
        EXPECT_EQ(parse({("-" + name).c_str(), "file.ts"}), nullptr);
        EXPECT_EQ(said, "Unknown switch '" + name + "'\n" + usage_text());
    }
}

TEST_F(command_line, help_ends_the_parse_with_the_usage_text)
{
    for (const char *const help : {"-h", "-help", "--help", "--h"}) {
        EXPECT_EQ(parse({help}), nullptr);
        EXPECT_EQ(said, usage_text());
        EXPECT_EQ(parse({"-std", "file.ts", help}), nullptr);
        EXPECT_EQ(said, usage_text());
        EXPECT_EQ(parse({help, "-nosuch", "file.ts", "another.ts"}), nullptr);
        EXPECT_EQ(said, usage_text());
    }
    EXPECT_EQ(report(), "");
}

TEST_F(command_line, no_argument_at_all_prints_the_usage_text)
{
    EXPECT_EQ(parse({}), nullptr);
    EXPECT_EQ(said, usage_text());
    EXPECT_EQ(report(), "");
}

TEST_F(command_line, no_file_prints_the_usage_text)
{
    EXPECT_EQ(parse({"-std"}), nullptr);
    EXPECT_EQ(said, usage_text());
    EXPECT_EQ(report(), "");
}

TEST_F(command_line, only_the_first_file_is_kept)
{
    EXPECT_STREQ(parse({"first.ts", "second.ts", "-std", "third.ts"}), "first.ts");
    EXPECT_EQ(said, "Ignoring argv 'second.ts'\nIgnoring argv 'third.ts'\n");
    EXPECT_EQ(changed_settings(), "packet_size_mode=0");
}

TEST_F(command_line, switches_may_follow_the_file)
{
    EXPECT_STREQ(parse({"file.ts", "-avchd", "-program=3"}), "file.ts");
    EXPECT_EQ(said, "");
    EXPECT_EQ(changed_settings(), "packet_size_mode=1 program_focus=3");
}

TEST_F(command_line, a_dash_inside_a_name_does_not_make_it_a_switch)
{
    EXPECT_STREQ(parse({"a-std"}), "a-std");
    EXPECT_EQ(said, "");
    EXPECT_EQ(changed_settings(), "");
}
