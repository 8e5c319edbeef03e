#include "mpeg_ts_overview/contents/utf8_text.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/overview_contents/well_formed.h"
#include "tests/support/hex.h"

namespace {

std::string utf16(std::string_view digits)
{
    const bytes units = hex(digits);
    return utf16_text(units.data(), units.data() + units.size());
}

} // namespace

TEST(utf8_text, well_formed_text_stays_as_it_is)
{
    for (const std::string text :
         {"", "A", "\u00E9\u3042", "\U00010000", "\U0010FFFF", "\u0800\uD7FB\uE000\uFFFF"})
        EXPECT_EQ(valid_utf8(text), text);
    EXPECT_EQ(valid_utf8(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(utf8_text, each_longest_beginning_of_a_broken_sequence_is_one_replacement)
{
    EXPECT_EQ(valid_utf8("a\x80z"), "a\uFFFDz");
    EXPECT_EQ(valid_utf8("a\xE3\x81z"), "a\uFFFDz");
    EXPECT_EQ(valid_utf8("a\xF0\x90\x80"), "a\uFFFD");
    EXPECT_EQ(valid_utf8("\xC3\xC3\xA9"), "\uFFFD\u00E9");
    EXPECT_EQ(valid_utf8("\xFF\xFE"), "\uFFFD\uFFFD");
}

TEST(utf8_text, overlong_forms_surrogates_and_too_high_codes_are_no_characters)
{
    EXPECT_EQ(valid_utf8("\xC0\x80"), "\uFFFD\uFFFD");
    EXPECT_EQ(valid_utf8("\xC1\xBF"), "\uFFFD\uFFFD");
    EXPECT_EQ(valid_utf8("\xE0\x9F\xBF"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(valid_utf8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(valid_utf8("\xF0\x8F\xBF\xBF"), "\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(valid_utf8("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(valid_utf8("\xF5\x80\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(utf8_text, all_pairs_of_bytes_become_well_formed)
{
    for (unsigned pair = 0; pair < 0x10000; ++pair) {
        const std::string text{static_cast<char>(pair >> 8), static_cast<char>(pair)};
        const std::string valid = valid_utf8(text);
        ASSERT_TRUE(is_well_formed(valid)) << pair;
        ASSERT_EQ(valid == text, is_well_formed(text)) << pair;
    }
}

TEST(utf8_text, random_bytes_become_well_formed)
{
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 24, '\0');
        for (char &c : text) c = static_cast<char>(random() % 3 == 0 ? random() : 0x80 | (random() & 0x7F));
        ASSERT_TRUE(is_well_formed(valid_utf8(text)));
        ASSERT_EQ(valid_utf8(text) == text, is_well_formed(text));
    }
}

TEST(utf8_text, utf_16_is_read_high_byte_first_with_its_pairs)
{
    EXPECT_EQ(utf16("0041 00E9 3042"), "A\u00E9\u3042");
    EXPECT_EQ(utf16("D83D DE00"), "\U0001F600");
    EXPECT_EQ(utf16(""), "");
}

TEST(utf8_text, half_a_utf_16_pair_or_unit_is_a_replacement)
{
    EXPECT_EQ(utf16("D83D 0041"), "\uFFFDA");
    EXPECT_EQ(utf16("DE00 0041"), "\uFFFDA");
    EXPECT_EQ(utf16("D83D"), "\uFFFD");
    EXPECT_EQ(utf16("D83D DE"), "\uFFFD\uFFFD");
    EXPECT_EQ(utf16("0041 00"), "A\uFFFD");
    EXPECT_EQ(utf16("D83D D83D DE00"), "\uFFFD\U0001F600");
}

TEST(utf8_text, latin_1_bytes_are_code_points)
{
    const bytes code = hex("65 E9 80");
    EXPECT_EQ(latin_1_text(code.data(), code.data() + 3), "e\u00E9\u0080");
    EXPECT_EQ(latin_1_text(code.data(), code.data()), "");
}

TEST(utf8_text, code_points_that_are_none_are_appended_as_replacements)
{
    std::string text;
    append_code_point(text, 0xD800);
    append_code_point(text, 0x110000);
    append_code_point(text, 0);
    EXPECT_EQ(text, std::string("\uFFFD\uFFFD\0", 7));
}
