#include "mpeg_ts_overview/contents/dvb_text.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <random>

#include "tests/support/hex.h"
#include "tests/support/well_formed.h"

namespace {

std::string text_of(const bytes &field)
{
    dvb_text_converter converter;
    return converter.text(field.data(), field.data() + field.size());
}

iconv_t open_nothing(const char *, const char *)
{
    errno = EINVAL;
    return reinterpret_cast<iconv_t>(-1);
}

int times_opened;

iconv_t open_and_count(const char *to, const char *from)
{
    ++times_opened;
    return iconv_open(to, from);
}

} // namespace

TEST(dvb_text, a_text_without_bytes_is_empty)
{
    EXPECT_EQ(text_of({}), "");
    for (const char *const selector : {"01", "0B", "10 00 01", "11", "12", "13", "14", "15"})
        EXPECT_EQ(text_of(hex(selector)), "") << selector;
}

TEST(dvb_text, the_default_table_is_iso_6937_with_the_euro_sign)
{
    EXPECT_EQ(text_of(text_bytes("One #$~")), "One #$~");
    EXPECT_EQ(text_of(hex("A4 31")), "\u20AC"
                                     "1");
    EXPECT_EQ(text_of(hex("43 61 66 C2 65")), "Caf\u00E9");
    EXPECT_EQ(text_of(hex("C8 55 A4 C8 75")), "\u00DC\u20AC\u00FC");
    EXPECT_EQ(text_of(hex("A8 AC AF D0 D4 D5 E0 EF F0 FB FE")),
              "\u00A4\u2190\u2193\u2014\u2122\u266A\u2126\u0149\u0138\u00DF\u014B");
    EXPECT_EQ(text_of(hex("C2 20 C8 20")), "\u00B4\u00A8");
}

TEST(dvb_text, a_diacritic_without_its_letter_is_a_replacement)
{
    EXPECT_EQ(text_of(hex("41 C2")), "A\uFFFD");
    EXPECT_EQ(text_of(hex("C1 71")), "\uFFFDq");
    EXPECT_EQ(text_of(hex("C2 A4")), "\uFFFD\u20AC");
    EXPECT_EQ(text_of(hex("C2 8A 65")), "\uFFFD\ne");
    EXPECT_EQ(text_of(hex("C2 C2 65")), "\uFFFD\u00E9");
}

TEST(dvb_text, what_the_default_table_leaves_empty_is_a_replacement)
{
    EXPECT_EQ(text_of(hex("A6 D8 D9 DA DB E5")), "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(dvb_text, one_byte_selects_a_part_of_iso_8859)
{
    EXPECT_EQ(text_of(hex("01 BC D8 E0")), "\u041C\u0438\u0440");
    EXPECT_EQ(text_of(hex("02 C7 EE")), "\u0627\u064E");
    EXPECT_EQ(text_of(hex("03 C1 F9")), "\u0391\u03C9");
    EXPECT_EQ(text_of(hex("04 E0 FA")), "\u05D0\u05EA");
    EXPECT_EQ(text_of(hex("05 D0 FE")), "\u011E\u015F");
    EXPECT_EQ(text_of(hex("06 A1 E0")), "\u0104\u0101");
    EXPECT_EQ(text_of(hex("07 A1 DF")), "\u0E01\u0E3F");
    EXPECT_EQ(text_of(hex("09 C0 A1")), "\u0104\u201D");
    EXPECT_EQ(text_of(hex("0A A1 D0")), "\u1E02\u0174");
    EXPECT_EQ(text_of(hex("0B A4 BD")), "\u20AC\u0153");
}

TEST(dvb_text, three_bytes_select_a_part_of_iso_8859)
{
    const char *const texts[] = {"\u00E3", "\u0103", nullptr,  "\u00E3", "\u0443",
                                 "\u0643", "\u03B3", "\u05D3", "\u00E3", "\u00E3",
                                 "\u0E43", nullptr,  "\u0107", "\u00E3", "\u00E3"};
    for (unsigned part = 1; part <= 15; ++part) {
        const std::string expected = part == 12 ? "(encoded)" : part == 3 ? "\uFFFD" : texts[part - 1];
        EXPECT_EQ(text_of(join({hex("10 00"), big_endian(part, 1), hex("E3")})), expected) << part;
    }
    EXPECT_EQ(text_of(hex("10 00 03 A1")), "\u0126");
}

TEST(dvb_text, tables_0x11_and_0x14_are_16_bit_code_points)
{
    for (const char *const table : {"11", "14"}) {
        EXPECT_EQ(text_of(join({hex(table), hex("0041 4E2D 6587")})), "A\u4E2D\u6587");
        EXPECT_EQ(text_of(join({hex(table), hex("D83D DE00")})), "\U0001F600");
        EXPECT_EQ(text_of(join({hex(table), hex("0041 4E")})), "A\uFFFD");
        EXPECT_EQ(text_of(join({hex(table), hex("DC00 0041")})), "\uFFFDA");
    }
}

TEST(dvb_text, table_0x12_is_korean)
{
    EXPECT_EQ(text_of(hex("12 C7 D1 B1 B9 41")), "\uD55C\uAD6D"
                                                 "A");
    EXPECT_EQ(text_of(hex("12 C7 41 C7")), "\uFFFDA\uFFFD");
}

TEST(dvb_text, table_0x13_is_simplified_chinese)
{
    EXPECT_EQ(text_of(hex("13 D6 D0 CE C4 41")), "\u4E2D\u6587"
                                                 "A");
    EXPECT_EQ(text_of(hex("13 D6 41 D6")), "\uFFFDA\uFFFD");
}

TEST(dvb_text, table_0x15_is_utf_8)
{
    EXPECT_EQ(text_of(hex("15 C3 A9 F0 9F 98 80")), "\u00E9\U0001F600");
    EXPECT_EQ(text_of(hex("15 41 C3 42 ED A0 80")), "A\uFFFD"
                                                    "B\uFFFD\uFFFD\uFFFD");
}

TEST(dvb_text, single_byte_tables_drop_all_control_codes_but_the_line_end)
{
    for (const char *const table : {"", "01", "09", "10 00 02"})
        for (unsigned code = 0x80; code <= 0x9F; ++code) {
            const bytes field = join({hex(table), text_bytes("a"), big_endian(code, 1), text_bytes("z")});
            EXPECT_EQ(text_of(field), code == 0x8A ? "a\nz" : "az") << table << " " << code;
            const std::string letter = text_of(join({hex(table), hex("B0")}));
            const bytes high = join({hex(table), hex("B0"), big_endian(code, 1), hex("B0")});
            EXPECT_EQ(text_of(high), code == 0x8A ? letter + "\n" + letter : letter + letter)
                << table << " " << code;
        }
}

TEST(dvb_text, tables_of_10646_drop_all_private_control_codes_but_the_line_end)
{
    for (unsigned code = 0x80; code <= 0x9F; ++code) {
        const std::string expected = code == 0x8A ? "a\nz" : "az";
        for (const char *const table : {"11", "14"}) {
            const bytes field = join({hex(table), hex("0061 E0"), big_endian(code, 1), hex("007A")});
            EXPECT_EQ(text_of(field), expected) << table << " " << code;
        }
        EXPECT_EQ(text_of(join({hex("15 61 EE 82"), big_endian(code, 1), hex("7A")})), expected) << code;
    }
    EXPECT_EQ(text_of(hex("11 E07F E0A0 008A")), "\uE07F\uE0A0\u008A");
}

TEST(dvb_text, double_byte_tables_drop_them_too)
{
    for (const char *const table : {"12", "13"}) {
        for (unsigned code = 0x80; code <= 0x9F; ++code) {
            const std::string expected = code == 0x8A ? "a\nz" : "az";
            EXPECT_EQ(text_of(join({hex(table), hex("61 E0"), big_endian(code, 1), hex("7A")})), expected)
                << code;
            EXPECT_EQ(text_of(join({hex(table), hex("61"), big_endian(code, 1), hex("7A")})), expected)
                << code;
        }
    }
    EXPECT_EQ(text_of(hex("12 C7 D1 E0 8A B1 B9")), "\uD55C\n\uAD6D");
    EXPECT_EQ(text_of(hex("13 D6 D0 E0 86 CE C4 E0 87 8A E0")), "\u4E2D\u6587\n\uFFFD");
    EXPECT_EQ(text_of(hex("13 E0 A1 B0 E0 8A")), "\u5537\u73ED\n");
}

TEST(dvb_text, encoding_type_id_and_reserved_selections_are_encoded)
{
    for (const uint8_t first : hex("00 08 0C 0D 0E 0F 16 17 18 19 1A 1B 1C 1D 1E 1F"))
        EXPECT_EQ(text_of(join({big_endian(first, 1), text_bytes("text")})), "(encoded)") << unsigned{first};
    for (const char *const selection :
         {"10", "10 00", "10 00 00 41", "10 00 0C 41", "10 00 10 41", "10 01 01 41"})
        EXPECT_EQ(text_of(hex(selection)), "(encoded)") << selection;
}

TEST(dvb_text, a_table_that_the_c_library_lacks_is_encoded_unless_the_text_is_ascii)
{
    dvb_text_converter converter(open_nothing);
    const auto text = [&](const char *digits) {
        const bytes field = hex(digits);
        return converter.text(field.data(), field.data() + field.size());
    };
    for (const char *const field : {"C2 65", "41 A4", "01 B0", "10 00 02 B0", "12 C7 D1", "13 D6 D0"})
        EXPECT_EQ(text(field), "(encoded)") << field;
    EXPECT_EQ(text("41 42"), "AB");
    EXPECT_EQ(text("05 41 42"), "AB");
    EXPECT_EQ(text("11 00E9"), "\u00E9");
    EXPECT_EQ(text("15 C3 A9"), "\u00E9");
}

TEST(dvb_text, a_table_is_opened_once)
{
    times_opened = 0;
    dvb_text_converter converter(open_and_count);
    for (int i = 0; i < 3; ++i)
        for (const char *const digits : {"C2 65", "01 B0", "10 00 05 B0"}) {
            const bytes field = hex(digits);
            EXPECT_NE(converter.text(field.data(), field.data() + field.size()), "(encoded)");
        }
    EXPECT_EQ(times_opened, 2);
}

TEST(dvb_text, a_field_cut_anywhere_begins_like_the_whole)
{
    for (const char *const digits :
         {"43 61 66 C2 65 8A A4", "01 BC D8 E0 86", "10 00 0F A4 BD", "11 0041 D83D DE00 E08A",
          "12 C7 D1 E0 8A B1 B9", "13 D6 D0 41 CE C4", "14 4E2D 6587", "15 C3 A9 EE 82 8A F0 9F 98 80"}) {
        const bytes whole = hex(digits);
        const std::string whole_text = text_of(whole);
        for (size_t length = 0; length < whole.size(); ++length) {
            std::string text = text_of(bytes(whole.begin(), whole.begin() + static_cast<long>(length)));
            EXPECT_TRUE(is_well_formed(text));
            if (text == "(encoded)") continue;
            while (text.ends_with("\uFFFD")) text.resize(text.size() - 3);
            EXPECT_TRUE(whole_text.starts_with(text)) << digits << " cut at " << length;
        }
    }
}

TEST(dvb_text, random_bytes_in_any_table_become_well_formed)
{
    dvb_text_converter converter;
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        bytes field(1 + random() % 32);
        for (uint8_t &byte : field)
            byte = static_cast<uint8_t>(random() % 4 == 0 ? random() : 0x80 | random());
        field[0] = static_cast<uint8_t>(random() % 0x21);
        if (field[0] == 0x10 && field.size() > 3) {
            field[1] = 0;
            field[2] = static_cast<uint8_t>(random() % 17);
        }
        ASSERT_TRUE(is_well_formed(converter.text(field.data(), field.data() + field.size())));
    }
}
