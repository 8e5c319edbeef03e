#include "mpeg_ts_overview/output/terminal_text.h"

#include <gtest/gtest.h>

TEST(terminal_text, controls_of_both_sets_are_dropped)
{
    EXPECT_EQ(without_controls("a\x1B[31mb\x07\n\t\x7F"), "a[31mb");
    EXPECT_EQ(without_controls("a\xC2\x9B"
                               "b\xC2\x80\xC2\x9F\xC2\xA0"),
              "ab\xC2\xA0");
    EXPECT_EQ(without_controls(std::string_view("\0x", 2)), "x");
    // A line end, an override of direction and what ends it; the marks of right-to-left text stay.
    EXPECT_EQ(without_controls("a\xE2\x80\xA8\xE2\x80\xAE"
                               "b\xE2\x80\xAC\xE2\x81\xA6"
                               "c\xE2\x80\x8F"),
              "abc\xE2\x80\x8F");
}

TEST(terminal_text, each_byte_that_is_no_utf_8_becomes_a_replacement_character)
{
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(without_controls("\x80"), replacement);
    EXPECT_EQ(without_controls("\xC0\x80"), replacement + replacement);
    EXPECT_EQ(without_controls("\xE0\x80\x80"), replacement + replacement + replacement);
    EXPECT_EQ(without_controls("\xED\xA0\x80"), replacement + replacement + replacement);
    EXPECT_EQ(without_controls("\xF4\x90\x80\x80"), replacement + replacement + replacement + replacement);
    EXPECT_EQ(without_controls("\xFF"), replacement);
    EXPECT_EQ(without_controls("\xE4\xBD"), replacement + replacement);
    EXPECT_EQ(without_controls("\xE4\xBD"
                               "a"),
              replacement + replacement + "a");
}

TEST(terminal_text, text_beyond_ascii_stays)
{
    const std::string text = "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x93\xBA";
    EXPECT_EQ(without_controls(text), text);
}

TEST(terminal_text, columns_are_counted_not_bytes)
{
    EXPECT_EQ(columns_of("abc"), 3U);
    EXPECT_EQ(columns_of("\xC3\xA9\xE2\x82\xAC"), 2U);
    EXPECT_EQ(columns_of("\xE4\xBD\xA0\xE5\xA5\xBD"), 4U);
    EXPECT_EQ(columns_of("e\xCC\x81"), 1U);
}

TEST(terminal_text, pictures_fill_two_columns)
{
    EXPECT_EQ(columns_of("\xE2\xAD\x90"), 2U);     // U+2B50, a star
    EXPECT_EQ(columns_of("\xE2\x9A\xBD"), 2U);     // U+26BD, a ball
    EXPECT_EQ(columns_of("\xF0\x9F\x9A\x80"), 2U); // U+1F680, a rocket
    EXPECT_EQ(columns_of("\xF0\x9F\xAA\x90"), 2U); // U+1FA90, a planet
    EXPECT_EQ(columns_of("\xE2\x99\xA5"), 1U);     // U+2665, a heart of text
}

TEST(terminal_text, a_long_text_is_cut_between_characters)
{
    EXPECT_EQ(cut_to("abcdef", 6), "abcdef");
    EXPECT_EQ(cut_to("abcdefg", 6), "abc...");
    EXPECT_EQ(cut_to("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", 4), "\xC3\xA9...");
    EXPECT_EQ(cut_to("\xE4\xBD\xA0\xE5\xA5\xBD\xE4\xBD\xA0", 4), "...");
}

TEST(terminal_text, filling_counts_columns)
{
    EXPECT_EQ(filled_to("abc", 5), "abc  ");
    EXPECT_EQ(filled_to("\xE4\xBD\xA0", 5), "\xE4\xBD\xA0   ");
    EXPECT_EQ(filled_to("\xE4\xBD\xA0\xE5\xA5\xBD\xE4\xBD\xA0", 4), "... ");
}

TEST(terminal_text, items_that_do_not_fit_go_to_the_next_line)
{
    const std::string forty(40, 'x');
    EXPECT_EQ(wrapped("first: ", {"a", "b"}, ", ", 2), "first: a, b\n");
    EXPECT_EQ(wrapped("first: ", {forty, forty, forty}, ", ", 2),
              "first: " + forty + ", " + forty + ",\n  " + forty + "\n");
    EXPECT_EQ(wrapped("", {forty, forty, forty}, "   ", 2), forty + "   " + forty + "\n  " + forty + "\n");
    EXPECT_EQ(wrapped("first", {}, ", ", 2), "first\n");
}

TEST(terminal_text, no_line_is_longer_than_100_columns)
{
    const std::string text =
        wrapped("", {std::string(49, 'x'), std::string(49, 'y'), std::string(300, 'z')}, ", ", 4);
    EXPECT_EQ(text, std::string(49, 'x') + ",\n    " + std::string(49, 'y') + ",\n    " +
                        std::string(93, 'z') + "...\n");
}
