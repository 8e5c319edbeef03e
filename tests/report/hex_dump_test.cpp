#include "mpeg_ts_analysis/report/hex_dump.h"

#include "tests/support/report_test.h"

#include <algorithm>
#include <cstdio>

struct hex_dump : report_test {
    using dump_function = void (*)(const uint8_t *p, const uint8_t *fence);

    /// The report of exactly these bytes.
    std::string dump_of(dump_function dump, const bytes &content)
    {
        const bytes block(content);
        dump(block.data(), block.data() + block.size());
        return report();
    }

    static bytes counting(size_t count)
    {
        bytes out;
        for (size_t i = 0; i < count; ++i) out.push_back(static_cast<uint8_t>(i));
        return out;
    }

    /// The two digits of a byte and a blank.
    static std::string digits(unsigned byte)
    {
        char text[8];
        std::snprintf(text, sizeof(text), "%02x ", byte);
        return text;
    }
};

TEST_F(hex_dump, hex_rows_are_indented_by_four_and_broken_after_16_bytes)
{
    EXPECT_EQ(dump_of(report_hex_rows, {}), "");
    EXPECT_EQ(dump_of(report_hex_rows, hex("47")), "    47 \n");
    EXPECT_EQ(dump_of(report_hex_rows, counting(15)), "    00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e \n");
    EXPECT_EQ(dump_of(report_hex_rows, counting(16)),
              "    00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f \n");
    EXPECT_EQ(dump_of(report_hex_rows, counting(18)), "    00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f \n"
                                                      "    10 11 \n");
    EXPECT_EQ(dump_of(report_hex_rows, counting(32)),
              "    00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f \n"
              "    10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f \n");
}

TEST_F(hex_dump, only_a_full_hex_and_text_row_has_its_text)
{
    EXPECT_EQ(dump_of(report_hex_and_text_rows, {}), "");
    EXPECT_EQ(dump_of(report_hex_and_text_rows, text_bytes("fifteen letters")),
              "    66 69 66 74 65 65 6e 20 6c 65 74 74 65 72 73 \n");
    EXPECT_EQ(dump_of(report_hex_and_text_rows, text_bytes("sixteen letters!seventeen")),
              "    73 69 78 74 65 65 6e 20 6c 65 74 74 65 72 73 21 sixteen letters!\n"
              "    73 65 76 65 6e 74 65 65 6e \n");
}

TEST_F(hex_dump, hex_and_text_rows_show_0x20_to_0x7e_as_text)
{
    EXPECT_EQ(dump_of(report_hex_and_text_rows, hex("1E 1F 20 21 7D 7E 7F 80 81 9F A0 C3 FE FF 00 0A")),
              "    1e 1f 20 21 7d 7e 7f 80 81 9f a0 c3 fe ff 00 0a .. !}~..........\n");
}

TEST_F(hex_dump, table_rows_fill_their_columns_with_blanks)
{
    EXPECT_EQ(dump_of(report_table_rows, {}), "");
    EXPECT_EQ(dump_of(report_table_rows, text_bytes("A")),
              "   41                                                A               \n");
    EXPECT_EQ(dump_of(report_table_rows, text_bytes("sixteen letters!and 9 too")),
              "   73 69 78 74 65 65 6e 20 6c 65 74 74 65 72 73 21   sixteen letters!\n"
              "   61 6e 64 20 39 20 74 6f 6f                        and 9 too       \n");
}

TEST_F(hex_dump, table_rows_show_0x20_to_0x7f_as_text)
{
    EXPECT_EQ(dump_of(report_table_rows, hex("1E 1F 20 21 7D 7E 7F 80 81 9F A0 C3 FE FF 00 0A")),
              "   1e 1f 20 21 7d 7e 7f 80 81 9f a0 c3 fe ff 00 0a   .. !}~\x7F.........\n");
}

TEST_F(hex_dump, descriptor_rows_are_indented_by_twelve_and_have_a_prefix_for_each_byte)
{
    EXPECT_EQ(dump_of(report_descriptor_rows, {}), "");
    EXPECT_EQ(dump_of(report_descriptor_rows, hex("AB CD")), "            0xab 0xcd \n");
    EXPECT_EQ(
        dump_of(report_descriptor_rows, counting(16)),
        "            0x00 0x01 0x02 0x03 0x04 0x05 0x06 0x07 0x08 0x09 0x0a 0x0b 0x0c 0x0d 0x0e 0x0f \n");
    EXPECT_EQ(dump_of(report_descriptor_rows, counting(17)),
              "            0x00 0x01 0x02 0x03 0x04 0x05 0x06 0x07 0x08 0x09 0x0a 0x0b 0x0c 0x0d 0x0e 0x0f \n"
              "            0x10 \n");
}

TEST_F(hex_dump, hex_bytes_stand_in_one_row_each_with_a_blank_behind_it)
{
    EXPECT_EQ(dump_of(report_hex_bytes, {}), "");
    EXPECT_EQ(dump_of(report_hex_bytes, hex("00 7F FF")), "00 7f ff ");
    std::string expected;
    for (unsigned i = 0; i < 255; ++i) expected += digits(i);
    EXPECT_EQ(dump_of(report_hex_bytes, counting(255)), expected);
}

TEST_F(hex_dump, a_hex_list_has_blanks_only_between_its_bytes)
{
    EXPECT_EQ(dump_of(report_hex_list, {}), "");
    EXPECT_EQ(dump_of(report_hex_list, hex("0A")), "0x0a");
    EXPECT_EQ(dump_of(report_hex_list, hex("00 7F FF")), "0x00 0x7f 0xff");
}

/// Every style at every length up to a few rows, against the rows put together format by format.
TEST_F(hex_dump, every_length_is_dumped_to_its_last_byte)
{
    for (size_t count = 0; count <= 257; ++count) {
        const bytes content = counting(count);
        std::string rows;
        std::string text_rows;
        std::string table_rows;
        std::string descriptor_rows;
        for (size_t row = 0; row < count; row += 16) {
            std::string hex_part;
            std::string prefixed_part;
            std::string text;
            std::string table_text;
            for (size_t i = row; i < std::min(row + 16, count); ++i) {
                const uint8_t byte = content[i];
                hex_part += digits(byte);
                prefixed_part += "0x" + digits(byte);
                text += byte >= 0x20 && byte <= 0x7E ? static_cast<char>(byte) : '.';
                table_text += byte >= 0x20 && byte <= 0x7F ? static_cast<char>(byte) : '.';
            }
            rows += "    " + hex_part + "\n";
            text_rows += "    " + hex_part + (text.size() == 16 ? text : "") + "\n";
            hex_part.resize(48, ' ');
            table_text.resize(16, ' ');
            table_rows += "   " + hex_part + "  " + table_text + "\n";
            descriptor_rows += "            " + prefixed_part + "\n";
        }
        EXPECT_EQ(dump_of(report_hex_rows, content), rows);
        EXPECT_EQ(dump_of(report_hex_and_text_rows, content), text_rows);
        EXPECT_EQ(dump_of(report_table_rows, content), table_rows);
        EXPECT_EQ(dump_of(report_descriptor_rows, content), descriptor_rows);
    }
}
