#include "mpeg_ts_overview/contents/character_table.h"

#include <gtest/gtest.h>

#include "tests/support/hex.h"

namespace {

std::string converted(const char *name, const bytes &text)
{
    character_table table(name, iconv_open);
    EXPECT_TRUE(table.is_open());
    std::string result;
    table.append(result, text.data(), text.data() + text.size());
    return result;
}

} // namespace

TEST(character_table, a_table_that_the_c_library_lacks_is_not_open)
{
    const character_table table("NO-SUCH-TABLE", iconv_open);
    EXPECT_FALSE(table.is_open());
}

TEST(character_table, text_longer_than_one_step_is_converted_whole)
{
    for (const size_t length : {1u, 84u, 85u, 127u, 128u, 255u, 256u, 257u, 4096u}) {
        std::string expected;
        for (size_t i = 0; i < length; ++i) expected += "\u0416";
        EXPECT_EQ(converted("ISO-8859-5", repeated(0xB6, length)), expected) << length;
    }
}

TEST(character_table, each_byte_without_a_character_is_a_replacement)
{
    EXPECT_EQ(converted("ISO-8859-8", hex("41 A1 C0 42")), "A\uFFFD\uFFFDB");
    std::string expected;
    for (int i = 0; i < 300; ++i) expected += "\uFFFD";
    EXPECT_EQ(converted("ISO-8859-8", repeated(0xC0, 300)), expected);
}

TEST(character_table, a_character_cut_by_the_end_is_one_replacement)
{
    EXPECT_EQ(converted("EUC-KR", hex("41 B0")), "A\uFFFD");
    EXPECT_EQ(converted("ISO6937", hex("41 C2")), "A\uFFFD");
}

TEST(character_table, a_text_begins_anew_behind_a_cut_one)
{
    character_table table("ISO6937", iconv_open);
    std::string text;
    const bytes cut = hex("C2");
    const bytes letter = hex("65");
    table.append(text, cut.data(), cut.data() + 1);
    table.append(text, letter.data(), letter.data() + 1);
    EXPECT_EQ(text, "\uFFFDe");
}
