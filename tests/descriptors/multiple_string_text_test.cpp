#include "tests/support/report_test.h"

#include "mpeg_ts_analysis/descriptors/multiple_string.h"

#include <cstring>
#include <map>

struct multiple_string_text : report_test {
    /// The report of one segment of a structure, from its segment line on.
    std::string report_of_segment(unsigned compression_type, unsigned mode, const bytes &data)
    {
        settings.dump_descriptors_mode = dump_descriptors_none;
        const bytes structure = join({hex("01 65 6E 67 01"), big_endian(compression_type, 1),
                                      big_endian(mode, 1), big_endian(data.size(), 1), data});
        desc_atsc_A65_2009_6_39_multiple_string_structure(structure.data(),
                                                          static_cast<unsigned>(structure.size()), 0);
        const std::string before =
            "    string #1/1: ISO_639_language_code='eng' number_segments=1\n        segment #1: ";
        const std::string text = report();
        EXPECT_EQ(text.substr(0, before.size()), before);
        return text.substr(std::min(before.size(), text.size()));
    }
};

static std::string two_digits(unsigned value)
{
    const char digits[] = "0123456789abcdef";
    return {digits[value / 16], digits[value % 16]};
}

/// U+0080 to U+07FF as two bytes, U+0800 to U+FFFF as three, below that as one.
static std::string utf8_of(unsigned code)
{
    const auto byte = [](unsigned value) { return static_cast<char>(value); };
    if (code < 0x80) return {byte(code)};
    if (code < 0x800) return {byte(0xC0 + code / 64), byte(0x80 + code % 64)};
    return {byte(0xE0 + code / 4096), byte(0x80 + code / 64 % 64), byte(0x80 + code % 64)};
}

static const std::map<unsigned, std::string> mode_names = {
    {0x00, "ANSI (select unicode code range 0x0000-0x00FF)"       },
    {0x01, "Sselect unicode code range 0x0100-0x01FF"             },
    {0x02, "Select unicode code range 0x0200-0x02FF"              },
    {0x03, "Select unicode code range 0x0300-0x03FF"              },
    {0x04, "Select unicode code range 0x0400-0x04FF"              },
    {0x05, "Select unicode code range 0x0500-0x05FF"              },
    {0x06, "Select unicode code range 0x0600-0x06FF"              },
    {0x09, "Select unicode code range 0x0900-0x09FF"              },
    {0x0A, "Select unicode code range 0x0A00-0x0AFF"              },
    {0x0B, "Select unicode code range 0x0B00-0x0BFF"              },
    {0x0C, "Select unicode code range 0x0C00-0x0CFF"              },
    {0x0D, "Select unicode code range 0x0D00-0x0DFF"              },
    {0x0E, "Select unicode code range 0x0E00-0x0EFF"              },
    {0x0F, "Select unicode code range 0x0F00-0x0FFF"              },
    {0x10, "Select unicode code range 0x1000-0x10FF"              },
    {0x20, "Select unicode code range 0x2000-0x20FF"              },
    {0x21, "Select unicode code range 0x2100-0x21FF"              },
    {0x22, "Select unicode code range 0x2200-0x22FF"              },
    {0x23, "Select unicode code range 0x2300-0x23FF"              },
    {0x24, "Select unicode code range 0x2400-0x24FF"              },
    {0x25, "Select unicode code range 0x2500-0x25FF"              },
    {0x26, "Select unicode code range 0x2600-0x26FF"              },
    {0x27, "Select unicode code range 0x2700-0x27FF"              },
    {0x30, "Select unicode code range 0x3000-0x30FF"              },
    {0x31, "Select unicode code range 0x3100-0x31FF"              },
    {0x32, "Select unicode code range 0x3200-0x32FF"              },
    {0x33, "Select unicode code range 0x3300-0x33FF"              },
    {0x3E, "Select Standard Compression Scheme for Unicode (SCSU)"},
    {0x3F, "Select Unicode, UTF-16 Form"                          },
};

/// Every page selector converts; SCSU, UTF-16 and what has no name do not.
TEST_F(multiple_string_text, every_mode_is_named_and_converted_or_refused)
{
    for (unsigned mode = 0; mode <= 0xFF; ++mode) {
        const auto name = mode_names.find(mode);
        const bool named = name != mode_names.end();
        const std::string line = "compression_type=0x00(none) mode=0x" + two_digits(mode) + "(" +
                                 (named ? name->second : "") + ") number_bytes=2\n";
        const std::string refused = "!!! ATSC Multi-segment string: mode type 0x" + two_digits(mode) +
                                    " not supported\n            string: ''\n";
        const std::string converted =
            "            string: '" + utf8_of(mode * 256 + 0x41) + utf8_of(mode * 256 + 0xE9) + "'\n";
        const bool supported = named && mode < 0x3E;
        EXPECT_EQ(report_of_segment(0x00, mode, hex("41 E9")), line + (supported ? converted : refused));
    }
}

TEST_F(multiple_string_text, mode_1_gives_two_UTF8_bytes)
{
    EXPECT_EQ(
        report_of_segment(0x00, 0x01, hex("41")),
        "compression_type=0x00(none) mode=0x01(Sselect unicode code range 0x0100-0x01FF) number_bytes=1\n"
        "            string: '\xC5\x81'\n");
}

TEST_F(multiple_string_text, mode_0x20_gives_three_UTF8_bytes)
{
    EXPECT_EQ(
        report_of_segment(0x00, 0x20, hex("AC")),
        "compression_type=0x00(none) mode=0x20(Select unicode code range 0x2000-0x20FF) number_bytes=1\n"
        "            string: '\xE2\x82\xAC'\n");
}

TEST_F(multiple_string_text, every_compression_but_none_is_refused_ahead_of_the_mode)
{
    for (unsigned type = 1; type <= 0xFF; ++type) {
        std::string name;
        if (type == 1) name = "Huffman coding using tables defined in Table C4 and C5 in Annex C";
        if (type == 2) name = "Huffman coding using tables defined in Table C6 and C7 in Annex C";
        EXPECT_EQ(report_of_segment(type, 0x3F, hex("41")),
                  "compression_type=0x" + two_digits(type) + "(" + name +
                      ") mode=0x3f(Select Unicode, UTF-16 Form) number_bytes=1\n"
                      "!!! ATSC Multi-segment string: compression type 0x" +
                      two_digits(type) + " not supported\n            string: ''\n");
    }
}

TEST_F(multiple_string_text, the_longest_segment_of_a_structure_is_printed_whole)
{
    std::string expected = "compression_type=0x00(none) mode=0x33(Select unicode code range 0x3300-0x33FF) "
                           "number_bytes=255\n            string: '";
    for (unsigned i = 0; i < 255; ++i) expected += "\xE3\x8D\x81";
    EXPECT_EQ(report_of_segment(0x00, 0x33, repeated(0x41, 255)), expected + "'\n");
}

TEST_F(multiple_string_text, a_buffer_of_1024_bytes_keeps_1023)
{
    const bytes data = repeated('x', 2000);
    char text[1024];
    std::memset(text, 0x55, sizeof(text));

    atsc_multiple_string_segment_to_utf8(text, sizeof(text), data.data(), 2000, 0x00, 0x00);
    EXPECT_EQ(std::string(text), std::string(1023, 'x'));
    EXPECT_EQ(report(), "");
}

TEST_F(multiple_string_text, a_text_is_cut_at_a_whole_character)
{
    const bytes data = repeated(0x41, 2000);
    char text[1024];

    atsc_multiple_string_segment_to_utf8(text, sizeof(text), data.data(), 2000, 0x00, 0x01);
    EXPECT_EQ(std::strlen(text), 1022u); // 511 characters of 2 bytes
    EXPECT_EQ(std::string(text + 1020), "\xC5\x81");

    atsc_multiple_string_segment_to_utf8(text, sizeof(text), data.data(), 2000, 0x00, 0x20);
    EXPECT_EQ(std::strlen(text), 1023u); // 341 characters of 3 bytes
    EXPECT_EQ(std::string(text + 1020), "\xE2\x81\x81");

    char small[6];
    atsc_multiple_string_segment_to_utf8(small, sizeof(small), data.data(), 2000, 0x00, 0x20);
    EXPECT_EQ(std::string(small), "\xE2\x81\x81");
}

TEST_F(multiple_string_text, a_buffer_of_no_bytes_is_not_touched)
{
    char text = 'x';
    const bytes data = hex("41");

    atsc_multiple_string_segment_to_utf8(&text, 0, data.data(), 1, 0x01, 0x00);
    EXPECT_EQ(text, 'x');
    EXPECT_EQ(report(), "");
}

TEST_F(multiple_string_text, a_buffer_of_one_byte_holds_the_empty_text)
{
    char text = 'x';
    const bytes data = hex("41");

    atsc_multiple_string_segment_to_utf8(&text, 1, data.data(), 1, 0x00, 0x00);
    EXPECT_EQ(text, '\0');
}

TEST_F(multiple_string_text, what_is_refused_leaves_the_empty_text)
{
    char text[4] = "xyz";
    const bytes data = hex("41");

    atsc_multiple_string_segment_to_utf8(text, sizeof(text), data.data(), 1, 0x02, 0x00);
    EXPECT_EQ(std::string(text), "");
    EXPECT_EQ(report(), "!!! ATSC Multi-segment string: compression type 0x02 not supported\n");

    std::strcpy(text, "xyz");
    atsc_multiple_string_segment_to_utf8(text, sizeof(text), data.data(), 1, 0x00, 0x3E);
    EXPECT_EQ(std::string(text), "");
    EXPECT_EQ(report(), "!!! ATSC Multi-segment string: mode type 0x3e not supported\n");

    std::strcpy(text, "xyz");
    atsc_multiple_string_segment_to_utf8(text, sizeof(text), data.data(), 0, 0x02, 0x3E);
    EXPECT_EQ(std::string(text), "");
    EXPECT_EQ(report(), "");
}
