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

    std::string arguments_of(const std::string &line) { return shell->arguments_of(line); }

    completion_folder folder;
    std::unique_ptr<interactive_shell> shell;
};

INSTANTIATE_TEST_SUITE_P(real, shells, testing::Values("bash", "zsh", "fish"),
                         [](const testing::TestParamInfo<const char *> &shell) {
                             return std::string(shell.param);
                         });

TEST_P(shells, a_switch_is_finished)
{
    EXPECT_EQ(arguments_of("-avc\t"), "|-avchd");
    EXPECT_EQ(arguments_of("-dump-p\t"), "|-dump-pcr-analysis");
    EXPECT_EQ(arguments_of("-atsc -no-s\t"), "|-atsc|-no-skip-padding");
    EXPECT_EQ(arguments_of("-dump-ta\t -sk\t"), "|-dump-tables|-skip-padding");
    EXPECT_EQ(arguments_of("--hel\t"), "|--help");
}

TEST_P(shells, a_value_follows_its_switch)
{
    EXPECT_EQ(arguments_of("-dump-ts=c\t"), "|-dump-ts=contents");
    EXPECT_EQ(arguments_of("-dump-descriptors=n\t"), "|-dump-descriptors=none");
    EXPECT_EQ(arguments_of("-ts-bitrate=\t"), "|-ts-bitrate=auto");
    EXPECT_EQ(arguments_of("-std -assume-country=\t cl\t"), "|-std|-assume-country=aus|clip.M2TS");
}

TEST_P(shells, a_number_is_left_alone)
{
    EXPECT_EQ(arguments_of("-max-pcr-interval=40\t cl\t"), "|-max-pcr-interval=40|clip.M2TS");
    EXPECT_EQ(arguments_of("-program=2\t -bdm\t"), "|-program=2|-bdmv");
}

TEST_P(shells, files_are_those_named_like_transport_streams)
{
    EXPECT_EQ(arguments_of("cl\t"), "|clip.M2TS");
    EXPECT_EQ(arguments_of("a\t"), "|a stream.ts");
    EXPECT_EQ(arguments_of("-std n\t"), "|-std|night.mts");
    EXPECT_EQ(arguments_of("record.\t"), "|record.trp");
    EXPECT_EQ(arguments_of("recordings/in\t"), "|recordings/inner.ts");
}

TEST_P(shells, where_no_file_is_named_like_a_transport_stream_any_will_do)
{
    EXPECT_EQ(arguments_of("not\t"), "|notes.txt");
}
