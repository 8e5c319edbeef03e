#include "mpeg_ts_overview/contents/scsu.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/hex.h"
#include "tests/support/well_formed.h"

namespace {

std::string scsu(const bytes &text)
{
    return scsu_text(text.data(), text.data() + text.size());
}

} // namespace

TEST(scsu, ascii_and_the_first_window_are_latin_1)
{
    EXPECT_EQ(scsu(hex("D6 6C 20 66 6C 69 65 DF 74")), "\u00D6l flie\u00DFt");
    EXPECT_EQ(scsu(hex("09 0A 0D")), "\t\n\r");
    EXPECT_EQ(scsu(hex("00")), std::string("\0", 1));
}

TEST(scsu, a_selected_window_stays)
{
    EXPECT_EQ(scsu(hex("12 9C BE C1 BA B2 B0")), "\u041C\u043E\u0441\u043A\u0432\u0430");
}

TEST(scsu, every_window_has_its_place_at_the_start)
{
    EXPECT_EQ(scsu(hex("10 80 11 80 12 80 13 80 14 80 15 80 16 80 17 80")),
              "\u0080\u00C0\u0400\u0600\u0900\u3040\u30A0\uFF00");
}

TEST(scsu, one_character_is_quoted_from_static_and_dynamic_windows)
{
    EXPECT_EQ(scsu(hex("05 1C 41 05 1D E9")), "\u201CA\u201D\u00E9");
    EXPECT_EQ(scsu(hex("01 41 02 69 03 53 04 01 06 00 07 22 08 01")),
              "A\u00E9\u0153\u0301\u2080\u2122\u3001");
    EXPECT_EQ(scsu(hex("03 9C 9C")), "\u041C\u009C");
}

TEST(scsu, windows_are_defined_by_position)
{
    EXPECT_EQ(scsu(hex("18 09 80")), "\u0480");
    EXPECT_EQ(scsu(hex("1F 68 80")), "\uE000");
    EXPECT_EQ(scsu(hex("19 A7 FF")), "\uFFFF");
    EXPECT_EQ(scsu(hex("1A F9 80 1A FA 80 1A FB 80 1A FC 80 1A FD 80 1A FE 80 1A FF 80")),
              "\u00C0\u0250\u0370\u0530\u3040\u30A0\uFF60");
    EXPECT_EQ(scsu(hex("18 00 18 A8")), "\uFFFD\uFFFD");
}

TEST(scsu, extended_windows_reach_beyond_16_bits)
{
    EXPECT_EQ(scsu(hex("0B 01 EC 80")), "\U0001F600");
    EXPECT_EQ(scsu(hex("0B FF FF FF")), "\U0010FFFF");
    EXPECT_EQ(scsu(hex("0F F1 01 EC 80")), "\U0001F600");
}

TEST(scsu, unicode_mode_is_utf_16_until_a_window_is_selected)
{
    EXPECT_EQ(scsu(hex("0F 6C 34 D8 3D DE 00 E2 9C 41")), "\u6C34\U0001F600\u041CA");
    EXPECT_EQ(scsu(hex("0F F0 E0 41 30 01 E8 09 80")), "\uE041\u3001\u0480");
    EXPECT_EQ(scsu(hex("0F F2 00 41")), "\uFFFDA");
}

TEST(scsu, one_unit_is_quoted_in_single_byte_mode)
{
    EXPECT_EQ(scsu(hex("41 0E 6C 34 42")), "A\u6C34"
                                           "B");
}

TEST(scsu, reserved_tags_and_halves_of_pairs_are_replacements)
{
    EXPECT_EQ(scsu(hex("0C 41")), "\uFFFDA");
    EXPECT_EQ(scsu(hex("0F D8 3D E0 41")), "\uFFFDA");
}

TEST(scsu, what_the_end_cuts_is_one_replacement)
{
    for (const char *const text : {"01", "0B", "0B 01", "0E", "0E 41", "18", "0F 41", "0F F0", "0F F1 00"})
        EXPECT_EQ(scsu(hex(text)), "\uFFFD") << text;
}

TEST(scsu, random_bytes_become_well_formed)
{
    std::mt19937 random(1);
    for (int round = 0; round < 5000; ++round) {
        bytes text(random() % 24);
        for (uint8_t &byte : text)
            byte = static_cast<uint8_t>(random() % 2 == 0 ? random() & 0x1F : random());
        ASSERT_TRUE(is_well_formed(scsu(text)));
    }
}
