#include "text/utf8_valid.h"

#include "tests/support/well_formed.h"

#include <gtest/gtest.h>

#include <random>

TEST(utf8_valid, well_formed_text_stays_as_it_is)
{
    const std::string text = "plain \xC2\x80\xDF\xBF \xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF "
                             "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF\n";
    EXPECT_EQ(utf8_valid(text), text);
    EXPECT_EQ(utf8_valid(""), "");
    EXPECT_EQ(utf8_valid(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(utf8_valid, a_byte_that_begins_nothing_is_replaced)
{
    EXPECT_EQ(utf8_valid("a\x80z"), "a\xEF\xBF\xBDz");
    EXPECT_EQ(utf8_valid("\xC0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(utf8_valid("\xC1\xF5\xFF"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(utf8_valid, a_sequence_cut_short_is_replaced_as_one)
{
    EXPECT_EQ(utf8_valid("\xE2\x82"), "\xEF\xBF\xBD");
    EXPECT_EQ(utf8_valid("\xE2\x82z"), "\xEF\xBF\xBDz");
    EXPECT_EQ(utf8_valid("\xF0\x9F\x98\xC3\xA9"), "\xEF\xBF\xBD\xC3\xA9");
    EXPECT_EQ(utf8_valid("\xC3"), "\xEF\xBF\xBD");
}

TEST(utf8_valid, overlong_forms_surrogates_and_what_is_above_the_last_plane_are_no_text)
{
    EXPECT_EQ(utf8_valid("\xE0\x9F\xBF"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(utf8_valid("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(utf8_valid("\xF0\x8F\xBF\xBF"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(utf8_valid("\xF4\x90\x80\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(utf8_valid, all_pairs_of_bytes_become_well_formed)
{
    if (!can_judge_text()) GTEST_SKIP() << "no converter of UTF-8";
    for (unsigned pair = 0; pair < 0x10000; ++pair) {
        const std::string text{static_cast<char>(pair >> 8), static_cast<char>(pair)};
        const std::string valid = utf8_valid(text);
        ASSERT_TRUE(is_well_formed(valid)) << pair;
        ASSERT_EQ(valid == text, is_well_formed(text)) << pair;
    }
}

TEST(utf8_valid, random_bytes_become_well_formed)
{
    if (!can_judge_text()) GTEST_SKIP() << "no converter of UTF-8";
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 24, '\0');
        for (char &c : text) c = static_cast<char>(random() % 3 == 0 ? random() : 0x80 | (random() & 0x7F));
        ASSERT_TRUE(is_well_formed(utf8_valid(text)));
        ASSERT_EQ(utf8_valid(text) == text, is_well_formed(text));
    }
}
