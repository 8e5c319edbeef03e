#include "mpeg_ts_overview/contents/atsc_text.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/hex.h"
#include "tests/support/well_formed.h"

namespace {

std::vector<atsc_string> strings_of(const bytes &structure)
{
    return atsc_strings(structure.data(), structure.data() + structure.size());
}

bytes segment(unsigned compression_type, unsigned mode, const bytes &text)
{
    return join({big_endian(compression_type, 1), big_endian(mode, 1), big_endian(text.size(), 1), text});
}

/// The text of a structure of one string of one segment.
std::string text_of(unsigned compression_type, unsigned mode, const bytes &text)
{
    const auto strings =
        strings_of(join({hex("01"), text_bytes("eng"), hex("01"), segment(compression_type, mode, text)}));
    return strings.size() == 1 ? strings[0].text : "not one string";
}

} // namespace

TEST(atsc_text, strings_have_a_language_and_joined_segments)
{
    const auto strings =
        strings_of(join({hex("02"), text_bytes("eng"), hex("02"), segment(0, 0, text_bytes("News ")),
                         segment(0, 4, hex("1C")), text_bytes("spa"), hex("01"),
                         segment(0, 0, hex("4E 6F 74 69 63 69 E1"))}));
    ASSERT_EQ(strings.size(), 2u);
    EXPECT_EQ(strings[0].language, "eng");
    EXPECT_EQ(strings[0].text, "News \u041C");
    EXPECT_EQ(strings[1].language, "spa");
    EXPECT_EQ(strings[1].text, "Notici\u00E1");
}

TEST(atsc_text, each_mode_below_0x3e_is_the_high_byte_of_code_points_or_reserved)
{
    for (unsigned mode = 0; mode < 0x3E; ++mode) {
        const bool is_reserved = mode == 0x07 || mode == 0x08 || (mode >= 0x11 && mode <= 0x1F) ||
                                 (mode >= 0x28 && mode <= 0x2F) || mode >= 0x34;
        const bytes utf16 = {static_cast<uint8_t>(mode), 0x41};
        EXPECT_EQ(text_of(0, mode, hex("41")), is_reserved ? "\uFFFD" : text_of(0, 0x3F, utf16)) << mode;
    }
    EXPECT_EQ(text_of(0, 0x30, hex("42")), "\u3042");
}

TEST(atsc_text, modes_0x3e_and_0x3f_are_scsu_and_utf_16)
{
    EXPECT_EQ(text_of(0, 0x3E, hex("12 9C")), "\u041C");
    EXPECT_EQ(text_of(0, 0x3F, hex("D83D DE00")), "\U0001F600");
}

TEST(atsc_text, compressed_segments_and_higher_modes_say_so)
{
    EXPECT_EQ(text_of(1, 0, hex("41")), "(compressed)");
    EXPECT_EQ(text_of(2, 0, hex("41")), "(compressed)");
    EXPECT_EQ(text_of(0xFF, 0, hex("41")), "(compressed)");
    for (unsigned mode = 0x40; mode <= 0xFF; ++mode)
        EXPECT_EQ(text_of(0, mode, hex("41")), "(compressed)") << mode;
}

TEST(atsc_text, a_segment_without_bytes_is_no_text)
{
    EXPECT_EQ(text_of(1, 0xFF, {}), "");
}

TEST(atsc_text, a_language_that_is_no_ascii_is_still_valid)
{
    const auto strings = strings_of(hex("01 FF 80 00 00"));
    ASSERT_EQ(strings.size(), 1u);
    EXPECT_EQ(strings[0].language, std::string("\u00FF\u0080\0", 5));
}

TEST(atsc_text, a_cut_structure_gives_what_is_there)
{
    const bytes whole = join({hex("02"), text_bytes("eng"), hex("01"), segment(0, 0, text_bytes("News")),
                              text_bytes("spa"), hex("01"), segment(0, 0, text_bytes("Hoy"))});
    const std::string first = "News";
    const std::string second = "Hoy";
    for (size_t length = 0; length <= whole.size(); ++length) {
        const auto strings = strings_of(bytes(whole.begin(), whole.begin() + static_cast<long>(length)));
        ASSERT_EQ(strings.size(), length < 5 ? 0u : length < 16 ? 1u : 2u) << length;
        if (!strings.empty()) {
            EXPECT_EQ(strings[0].text, first.substr(0, length < 8 ? 0 : length - 8)) << length;
        }
        if (strings.size() > 1) {
            EXPECT_EQ(strings[1].text, second.substr(0, length < 19 ? 0 : length - 19)) << length;
        }
    }
}

TEST(atsc_text, a_segment_that_overruns_ends_the_strings)
{
    const auto strings =
        strings_of(join({hex("02"), text_bytes("eng"), hex("02 00 00 FF"), text_bytes("all of it")}));
    ASSERT_EQ(strings.size(), 1u);
    EXPECT_EQ(strings[0].text, "all of it");
}

TEST(atsc_text, random_bytes_become_well_formed)
{
    std::mt19937 random(1);
    for (int round = 0; round < 5000; ++round) {
        bytes structure(random() % 64);
        for (uint8_t &byte : structure)
            byte = static_cast<uint8_t>(random() % 2 == 0 ? random() & 0x3F : random() & 3);
        for (const atsc_string &string : strings_of(structure)) {
            ASSERT_TRUE(is_well_formed(string.text));
            ASSERT_TRUE(is_well_formed(string.language));
        }
    }
}
