#include "tests/overview_contents/teletext_stream.h"

#include "mpeg_ts_overview/contents/teletext_characters.h"

#include <gtest/gtest.h>

namespace {

/// The text of a row that begins with these codes, without the blanks behind them.
std::string text_of(const bytes &codes, unsigned national_option = 0)
{
    teletext_row row;
    row.fill(' ');
    std::copy(codes.begin(), codes.end(), row.begin());
    const std::string text = teletext_row_text(row, national_option);
    EXPECT_EQ(text.substr(text.size() - (40 - codes.size())), std::string(40 - codes.size(), ' '));
    return text.substr(0, text.size() - (40 - codes.size()));
}

} // namespace

TEST(teletext_characters, letters_and_digits_are_themselves)
{
    EXPECT_EQ(text_of(text_bytes("A Z a z 0 9 !\"%&'()*+,-./:;<=>?")), "A Z a z 0 9 !\"%&'()*+,-./:;<=>?");
}

TEST(teletext_characters, each_national_option_has_its_thirteen)
{
    const bytes codes = hex("23 24 40 5B 5C 5D 5E 5F 60 7B 7C 7D 7E");
    const char *const expected[] = {
        "\u00A3$@\u2190\u00BD\u2192\u2191#\u2014\u00BC\u2016\u00BE\u00F7",
        "#$\u00A7\u00C4\u00D6\u00DC^_\u00B0\u00E4\u00F6\u00FC\u00DF",
        "#\u00A4\u00C9\u00C4\u00D6\u00C5\u00DC_\u00E9\u00E4\u00F6\u00E5\u00FC",
        "\u00A3$\u00E9\u00B0\u00E7\u2192\u2191#\u00F9\u00E0\u00F2\u00E8\u00EC",
        "\u00E9\u00EF\u00E0\u00EB\u00EA\u00F9\u00EE#\u00E8\u00E2\u00F4\u00FB\u00E7",
        "\u00E7$\u00A1\u00E1\u00E9\u00ED\u00F3\u00FA\u00BF\u00FC\u00F1\u00E8\u00E0",
        "#\u016F\u010D\u0165\u017E\u00FD\u00ED\u0159\u00E9\u00E1\u011B\u00FA\u0161",
        "\u00A3$@\u2190\u00BD\u2192\u2191#\u2014\u00BC\u2016\u00BE\u00F7",
    };
    for (unsigned option = 0; option < 8; ++option) EXPECT_EQ(text_of(codes, option), expected[option]);
}

TEST(teletext_characters, spacing_attributes_are_blanks)
{
    for (unsigned code = 0; code < 0x20; ++code)
        EXPECT_EQ(text_of({static_cast<uint8_t>(code)}), " ") << code;
}

TEST(teletext_characters, wrong_parity_is_the_replacement_character)
{
    EXPECT_EQ(text_of({'A', teletext_wrong_parity, 'B'}), "A\uFFFDB");
}

TEST(teletext_characters, the_last_code_is_a_square)
{
    EXPECT_EQ(text_of(hex("7F")), "\u25A0");
}

TEST(teletext_characters, mosaics_follow_a_mosaic_colour_up_to_an_alpha_colour)
{
    EXPECT_EQ(text_of(hex("7F 11 7F 41 07 7F")), "\u25A0 \u2588A \u25A0");
    EXPECT_EQ(text_of(hex("17 7F 00 61")), " \u2588 a");
}

TEST(teletext_characters, a_mosaic_is_the_nearest_that_four_quarters_give)
{
    EXPECT_EQ(text_of(hex("11 20")), "  ");
    EXPECT_EQ(text_of(hex("11 21 22 23")), " \u2598\u259D\u2580");
    EXPECT_EQ(text_of(hex("11 24 28 2C")), " \u2598\u259D\u2580");
    EXPECT_EQ(text_of(hex("11 30 60 70")), " \u2596\u2597\u2584");
    EXPECT_EQ(text_of(hex("11 35 6A 7F")), " \u258C\u2590\u2588");
    EXPECT_EQ(text_of(hex("11 34 68 7C")), " \u2596\u2597\u2584");
    EXPECT_EQ(text_of(hex("11 25 2A 2F")), " \u2598\u259D\u2580");
    EXPECT_EQ(text_of(hex("11 61 32")), " \u259A\u259E");
}
