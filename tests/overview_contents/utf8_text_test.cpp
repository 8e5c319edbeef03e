#include "mpeg_ts_overview/contents/utf8_text.h"

#include <gtest/gtest.h>

#include "tests/support/hex.h"

namespace {

std::string utf16(std::string_view digits)
{
    const bytes units = hex(digits);
    return utf16_text(units.data(), units.data() + units.size());
}

} // namespace

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
