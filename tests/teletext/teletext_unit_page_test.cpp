#include "tests/support/report_test.h"
#include "tests/teletext/data_unit.h"

struct teletext_unit_page : report_test {
    /// The page contents line of a row of these characters, filled up with blanks, without its beginning and
    /// its line end.
    std::string page_contents(const bytes &characters)
    {
        const bytes unit = data_unit(0xE7, 0xE4, 1, 20, data_block(characters));
        teletext_decode_data_unit(unit.data());
        const std::string text = report();
        const std::string beginning = "Displayable page contents: ";
        const size_t at = text.find(beginning);
        if (at == std::string::npos) return "no page contents in\n" + text;
        EXPECT_EQ(text.back(), '\n');
        return text.substr(at + beginning.size(), text.size() - 1 - at - beginning.size());
    }
};

static std::string blanks(size_t count)
{
    return std::string(count, ' ');
}

TEST_F(teletext_unit_page, a_row_of_text_is_dumped_and_shown)
{
    const bytes unit = data_unit(0xE7, 0xE4, 1, 20, data_block(text_bytes("Teletext ~ 123")));
    teletext_decode_data_unit(unit.data());
    EXPECT_EQ(report(),
              "            data_field() [Teletext/ETSI EN 300 472 section 4.3 table 2]\n"
              "                field_parity=1 first field\n"
              "                line_offset=0+7 = 7\n"
              "                framing_code=0xe4\n"
              "                magazine_and_packet_address=0xa1 [from bytes 4-5: 40>02>01 91>89>0a]\n"
              "                    X/1 Y=20\n"
              "      [display] data: 0x54 0xe5 0xec 0xe5 0xf4 0xe5 0xf8 0xf4 0x20 0xfe Teletext ~\n"
              "                      0x20 0x31 0x32 0xb3 0x20 0x20 0x20 0x20 0x20 0x20  123      \n"
              "                      0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n"
              "                      0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n"
              "Displayable page contents: Teletext ~ 123                          \n");
}

/// 0xD4, 0x41, 0x80 and 0x7F reversed: 'T' and 'A' with even parity or right, a code and a block as dots.
TEST_F(teletext_unit_page, even_parity_is_marked_and_the_character_still_shown)
{
    bytes block = repeated(0x04, 40);
    block[0] = 0x2B;  // 0xd4: even
    block[1] = 0xC2;  // 0x43: odd
    block[10] = 0x82; // 0x41: even
    block[20] = 0x01; // 0x80: odd, character 0x00
    block[30] = 0xFE; // 0x7f: odd, no character of the dump
    block[39] = 0x00; // 0x00: even
    const bytes unit = data_unit(0xE7, 0xE4, 1, 20, block);
    teletext_decode_data_unit(unit.data());
    EXPECT_EQ(
        report(),
        "            data_field() [Teletext/ETSI EN 300 472 section 4.3 table 2]\n"
        "                field_parity=1 first field\n"
        "                line_offset=0+7 = 7\n"
        "                framing_code=0xe4\n"
        "                magazine_and_packet_address=0xa1 [from bytes 4-5: 40>02>01 91>89>0a]\n"
        "                    X/1 Y=20\n"
        "      [display] data: 0xd4!0x43 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 TC        \n"
        "                      0x41!0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 A         \n"
        "                      0x80 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 .         \n"
        "                      0x7f 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x00!.        .\n"
        "Displayable page contents: TC        A         <ALPHA black>         \x7F        <ALPHA black>\n");
}

TEST_F(teletext_unit_page, every_byte_of_a_dump_shows_its_parity_and_its_character)
{
    for (unsigned received = 0; received <= 0xFF; ++received) {
        const unsigned reversed = reversed_bits(received);
        unsigned ones = 0;
        for (unsigned bit = 0; bit < 8; ++bit) ones += reversed / (1u << bit) % 2;
        const unsigned character = reversed % 128;
        const std::string shown(10,
                                character >= 0x20 && character <= 0x7E ? static_cast<char>(character) : '.');
        std::string row;
        for (unsigned i = 0; i < 10; ++i) row += "0x" + two_digits(reversed) + (ones % 2 == 1 ? " " : "!");
        const bytes unit = data_unit(0xE7, 0xE4, 0, 31, repeated(static_cast<uint8_t>(received), 40));
        teletext_decode_data_unit(unit.data());
        EXPECT_EQ(report(),
                  "            data_field() [Teletext/ETSI EN 300 472 section 4.3 table 2]\n"
                  "                field_parity=1 first field\n"
                  "                line_offset=0+7 = 7\n"
                  "                framing_code=0xe4\n"
                  "                magazine_and_packet_address=0xf8 [from bytes 4-5: 0b>d0>08 57>ea>0f]\n"
                  "                    X/0 Y=31\n"
                  "      [display] data: " +
                      row + shown + "\n                      " + row + shown + "\n                      " +
                      row + shown + "\n                      " + row + shown + "\n");
    }
}

TEST_F(teletext_unit_page, every_control_code_has_its_tag)
{
    const char *const tags[32] = {"<ALPHA black>",  "<ALPHA red>",     "<ALPHA green>",  "<ALPHA yellow>",
                                  "<ALPHA blue>",   "<ALPHA magenta>", "<ALPHA cyan>",   "<ALPHA white>",
                                  "<Unknown 0x08>", "<Unknown 0x09>",  "<ENDBOX>",       "<STARTBOX>",
                                  "<NORMALSIZE>",   "<DOUBLEHEIGHT>",  "<DOUBLEWIDTH>",  "<DOUBLESIZE>",
                                  "<Unknown 0x10>", "<Unknown 0x11>",  "<Unknown 0x12>", "<Unknown 0x13>",
                                  "<Unknown 0x14>", "<Unknown 0x15>",  "<Unknown 0x16>", "<Unknown 0x17>",
                                  "<Unknown 0x18>", "<Unknown 0x19>",  "<Unknown 0x1a>", "<Unknown 0x1b>",
                                  "<Unknown 0x1c>", "<Unknown 0x1d>",  "<Unknown 0x1e>", "<Unknown 0x1f>"};
    for (unsigned code = 0; code < 32; ++code)
        EXPECT_EQ(page_contents(big_endian(code, 1)), tags[code] + blanks(39));
}

TEST_F(teletext_unit_page, every_other_character_is_itself)
{
    for (unsigned code = 0x20; code < 0x80; ++code)
        EXPECT_EQ(page_contents(big_endian(code, 1)), std::string(1, static_cast<char>(code)) + blanks(39));
}

TEST_F(teletext_unit_page, a_pair_of_box_codes_is_one_tag)
{
    EXPECT_EQ(page_contents(hex("0B 0B 41 0A 0A")), "<STARTBOX>A<ENDBOX>" + blanks(35));
}

TEST_F(teletext_unit_page, box_codes_apart_are_two_tags)
{
    EXPECT_EQ(page_contents(hex("0B 20 0B")), "<STARTBOX> <STARTBOX>" + blanks(37));
    EXPECT_EQ(page_contents(hex("0A 20 0A")), "<ENDBOX> <ENDBOX>" + blanks(37));
    EXPECT_EQ(page_contents(hex("0A 0B 0A 0B")), "<ENDBOX><STARTBOX><ENDBOX><STARTBOX>" + blanks(36));
}

TEST_F(teletext_unit_page, a_run_of_box_codes_is_one_tag)
{
    EXPECT_EQ(page_contents(repeated(0x0B, 40)), "<STARTBOX>");
    EXPECT_EQ(page_contents(repeated(0x0A, 3)), "<ENDBOX>" + blanks(37));
}

TEST_F(teletext_unit_page, pairs_of_other_codes_keep_both_tags)
{
    EXPECT_EQ(page_contents(hex("0D 0D 07 07")),
              "<DOUBLEHEIGHT><DOUBLEHEIGHT><ALPHA white><ALPHA white>" + blanks(36));
}

TEST_F(teletext_unit_page, a_box_code_does_not_count_for_the_next_row)
{
    EXPECT_EQ(page_contents(repeated(0x0B, 40)), "<STARTBOX>");
    EXPECT_EQ(page_contents(hex("0B")), "<STARTBOX>" + blanks(39));
}

TEST_F(teletext_unit_page, colour_output_adds_escape_sequences)
{
    settings.colour_output = true;
    EXPECT_EQ(page_contents(hex("00 01 02 03 04 05 06 07")),
              "<ALPHA black>\033[30m<ALPHA red>\033[31m<ALPHA green>\033[32m<ALPHA yellow>\033[33m"
              "<ALPHA blue>\033[34m<ALPHA magenta>\033[35m<ALPHA cyan>\033[36m<ALPHA white>\033[37m" +
                  blanks(32) + "\033[0m");
    EXPECT_EQ(page_contents(hex("0B 0B 0D")), "<STARTBOX><DOUBLEHEIGHT>" + blanks(37) + "\033[0m");
}

TEST_F(teletext_unit_page, no_colour_output_leaves_the_tags)
{
    settings.colour_output = false;
    EXPECT_EQ(page_contents(hex("01 07")), "<ALPHA red><ALPHA white>" + blanks(38));
}

TEST_F(teletext_unit_page, colour_output_does_not_touch_rows_without_contents)
{
    settings.colour_output = true;
    for (const unsigned row : {0u, 26u, 27u, 28u, 29u, 30u, 31u}) {
        const bytes unit = data_unit(0xE7, 0xE4, 1, row, data_block(hex("01")));
        teletext_decode_data_unit(unit.data());
        EXPECT_EQ(report().find('\033'), std::string::npos);
    }
}
