#include "tests/completion/interactive_shell.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

/// Each test in each shell that is installed.
struct shells : testing::TestWithParam<const char *> {
    void SetUp() override
    {
        if (!shell_is_here(GetParam())) GTEST_SKIP() << GetParam() << " is not here";
        shell = std::make_unique<interactive_shell>(GetParam(), folder);
    }

    std::string analysis(const std::string &line) { return shell->arguments_of("mpeg_ts_analysis " + line); }
    std::string overview(const std::string &line) { return shell->arguments_of("mpeg_ts_overview " + line); }
    std::string archive(const std::string &line) { return shell->arguments_of("mpeg_ts_archive " + line); }

    completion_folder folder;
    std::unique_ptr<interactive_shell> shell;
};

INSTANTIATE_TEST_SUITE_P(real, shells, testing::Values("bash", "zsh", "fish"),
                         [](const testing::TestParamInfo<const char *> &shell) {
                             return std::string(shell.param);
                         });

TEST_P(shells, a_switch_is_finished)
{
    EXPECT_EQ(analysis("-avc\t"), "|-avchd");
    EXPECT_EQ(analysis("-dump-p\t"), "|-dump-pcr-analysis");
    EXPECT_EQ(analysis("-atsc -no-s\t"), "|-atsc|-no-skip-padding");
    EXPECT_EQ(analysis("-dump-ta\t -sk\t"), "|-dump-tables|-skip-padding");
    EXPECT_EQ(analysis("--hel\t"), "|--help");
}

TEST_P(shells, a_value_follows_its_switch)
{
    EXPECT_EQ(analysis("-dump-ts=c\t"), "|-dump-ts=contents");
    EXPECT_EQ(analysis("-dump-descriptors=n\t"), "|-dump-descriptors=none");
    EXPECT_EQ(analysis("-ts-bitrate=\t"), "|-ts-bitrate=auto");
    EXPECT_EQ(analysis("-std -assume-country=\t cl\t"), "|-std|-assume-country=aus|clip.M2TS");
}

TEST_P(shells, a_number_is_left_alone)
{
    EXPECT_EQ(analysis("-max-pcr-interval=40\t cl\t"), "|-max-pcr-interval=40|clip.M2TS");
    EXPECT_EQ(analysis("-program=2\t -bdm\t"), "|-program=2|-bdmv");
}

TEST_P(shells, files_are_those_named_like_transport_streams)
{
    EXPECT_EQ(analysis("cl\t"), "|clip.M2TS");
    EXPECT_EQ(analysis("a\t"), "|a stream.ts");
    EXPECT_EQ(analysis("-std n\t"), "|-std|night.mts");
    EXPECT_EQ(analysis("record.\t"), "|record.trp");
    EXPECT_EQ(analysis("recordings/in\t"), "|recordings/inner.ts");
}

TEST_P(shells, where_no_file_is_named_like_a_transport_stream_any_will_do)
{
    EXPECT_EQ(analysis("not\t"), "|notes.txt");
}

TEST_P(shells, an_option_of_the_overview_is_finished)
{
    EXPECT_EQ(overview("--whol\t"), "|--whole-multiplex");
    EXPECT_EQ(overview("--not\t --te\t"), "|--not-atsc|--text");
    EXPECT_EQ(overview("--vers\t"), "|--version");
}

TEST_P(shells, a_value_of_the_overview_follows_its_option)
{
    EXPECT_EQ(overview("--color=n\t"), "|--color=never");
    EXPECT_EQ(overview("--clock=a\t cl\t"), "|--clock=arrival|clip.M2TS");
    EXPECT_EQ(overview("--packet-size=2\t"), "|--packet-size=204");
    EXPECT_EQ(overview("--limit nit\t40"), "|--limit|nit_interval=40");
    EXPECT_EQ(overview("--json=not\t"), "|--json=notes.txt");
}

TEST_P(shells, files_of_the_overview_are_those_named_like_transport_streams)
{
    EXPECT_EQ(overview("cl\t"), "|clip.M2TS");
    EXPECT_EQ(overview("--text n\t"), "|--text|night.mts");
    EXPECT_EQ(overview("not\t"), "|notes.txt");
}

TEST_P(shells, a_command_of_the_archive_is_finished_and_its_options)
{
    EXPECT_EQ(archive("cat\t --ht\t"), "|catalogue|--html");
    // zsh takes the slash away.
    EXPECT_EQ(archive("plan --suf\t .ts recor\t").find("|plan|--suffix|.ts|recordings"), 0u);
    EXPECT_EQ(archive("run --slu\t"), "|run|--slurm");
    EXPECT_EQ(archive("--vers\t"), "|--version");
}
