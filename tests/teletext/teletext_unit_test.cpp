#include "tests/support/report_test.h"
#include "tests/teletext/data_unit.h"

#include <algorithm>
#include <memory>

struct teletext_unit : report_test {
    /// The report of a data unit in a block of exactly its 44 bytes.
    std::string report_of(const bytes &unit)
    {
        const std::unique_ptr<uint8_t[]> block(new uint8_t[teletext_data_unit_length]);
        EXPECT_EQ(unit.size(), teletext_data_unit_length);
        std::copy(unit.begin(), unit.end(), block.get());
        teletext_decode_data_unit(block.get());
        return report();
    }
};

/// A row of blanks as the display dump shows it: 0x20 has odd parity.
static const std::string blank_rows =
    "      [display] data: 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n"
    "                      0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n"
    "                      0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n"
    "                      0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n";

static const std::string data_field =
    "            data_field() [Teletext/ETSI EN 300 472 section 4.3 table 2]\n";

TEST_F(teletext_unit, a_page_header_has_no_page_contents)
{
    EXPECT_EQ(report_of(data_unit(0xE7, 0xE4, 0, 0, repeated(0x04, 40))),
              data_field +
                  "                field_parity=1 first field\n"
                  "                line_offset=0+7 = 7\n"
                  "                framing_code=0xe4\n"
                  "                magazine_and_packet_address=0x00 [from bytes 4-5: a8>15>00 a8>15>00]\n"
                  "                    X/0 Y=0\n" +
                  blank_rows);
}

TEST_F(teletext_unit, a_page_row_has_page_contents)
{
    EXPECT_EQ(report_of(data_unit(0xC8, 0xE4, 1, 20, repeated(0x04, 40))),
              data_field +
                  "                field_parity=0 second field\n"
                  "                line_offset=313+8 = 321\n"
                  "                framing_code=0xe4\n"
                  "                magazine_and_packet_address=0xa1 [from bytes 4-5: 40>02>01 91>89>0a]\n"
                  "                    X/1 Y=20\n" +
                  blank_rows + "Displayable page contents: " + std::string(40, ' ') + "\n");
}

TEST_F(teletext_unit, every_magazine_and_row_is_read_from_its_address)
{
    for (unsigned magazine = 0; magazine < 8; ++magazine)
        for (unsigned row = 0; row < 32; ++row) {
            const bytes unit = data_unit(0xE7, 0xE4, magazine, row, repeated(0x04, 40));
            const unsigned address = magazine + 8 * row;
            const bool has_contents = row >= 1 && row <= 25;
            EXPECT_EQ(report_of(unit),
                      data_field +
                          "                field_parity=1 first field\n"
                          "                line_offset=0+7 = 7\n"
                          "                framing_code=0xe4\n"
                          "                magazine_and_packet_address=0x" +
                          two_digits(address) + " [from bytes 4-5: " + two_digits(unit[2]) + ">" +
                          two_digits(code_words[address % 16]) + ">0" + two_digits(address % 16).substr(1) +
                          " " + two_digits(unit[3]) + ">" + two_digits(code_words[address / 16]) + ">0" +
                          two_digits(address / 16).substr(1) + "]\n                    X/" +
                          std::to_string(magazine) + " Y=" + std::to_string(row) + "\n" + blank_rows +
                          (has_contents ? "Displayable page contents: " + std::string(40, ' ') + "\n" : ""));
        }
}

TEST_F(teletext_unit, field_parity_and_line_offset_are_used_as_received)
{
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        const bool first = byte / 32 % 2 == 1;
        const unsigned offset = byte % 32;
        const unsigned base = first ? 0 : 313;
        std::string lines = first ? "                field_parity=1 first field\n"
                                  : "                field_parity=0 second field\n";
        if (offset == 0)
            lines += "                line_offset=N/A\n";
        else
            lines += "                line_offset=" + std::to_string(base) + "+" + std::to_string(offset) +
                     " = " + std::to_string(base + offset) + "\n";
        EXPECT_EQ(report_of(data_unit(byte, 0xE4, 0, 0, repeated(0x04, 40))),
                  data_field + lines +
                      "                framing_code=0xe4\n"
                      "                magazine_and_packet_address=0x00 [from bytes 4-5: a8>15>00 a8>15>00]\n"
                      "                    X/0 Y=0\n" +
                      blank_rows);
    }
}

TEST_F(teletext_unit, a_stuffing_unit_has_no_address_and_no_data)
{
    EXPECT_EQ(report_of(repeated(0xFF, 44)),
              data_field +
                  "                field_parity=1 first field\n"
                  "                line_offset=0+31 = 31\n"
                  "                framing_code=0xff\n"
                  "                magazine_and_packet_address=0xff [from bytes 4-5: ff>ff>ff ff>ff>ff]\n");
}

TEST_F(teletext_unit, data_in_a_stuffing_unit_is_dumped_raw)
{
    bytes unit = repeated(0xFF, 44);
    unit[43] = 0x82;
    EXPECT_EQ(report_of(unit),
              data_field +
                  "                field_parity=1 first field\n"
                  "                line_offset=0+31 = 31\n"
                  "                framing_code=0xff\n"
                  "                magazine_and_packet_address=0xff [from bytes 4-5: ff>ff>ff ff>ff>ff]\n"
                  "          [raw] data: 0xff 0xff 0xff 0xff 0xff 0xff 0xff 0xff 0xff 0xff ..........\n"
                  "                      0xff 0xff 0xff 0xff 0xff 0xff 0xff 0xff 0xff 0xff ..........\n"
                  "                      0xff 0xff 0xff 0xff 0xff 0xff 0xff 0xff 0xff 0xff ..........\n"
                  "                      0xff 0xff 0xff 0xff 0xff 0xff 0xff 0xff 0xff 0x41 .........A\n");
}

TEST_F(teletext_unit, framing_code_0xFF_with_an_address_is_tested_but_not_shown_as_X_and_Y)
{
    EXPECT_EQ(report_of(join({hex("E7 FF A8 FF"), repeated(0xFF, 40)})),
              "!!! EBU Teletext hamming8/4 error byte 5 ABCD\n" + data_field +
                  "                field_parity=1 first field\n"
                  "                line_offset=0+7 = 7\n"
                  "                framing_code=0xff\n"
                  "                magazine_and_packet_address=0xf0 [from bytes 4-5: a8>15>00 ff>ff>ff]\n");
}

TEST_F(teletext_unit, a_wrong_framing_code_is_reported_twice_and_dumped_raw)
{
    EXPECT_EQ(report_of(data_unit(0xE7, 0x27, 1, 20, repeated(0x04, 40))),
              "!!! EBU teletext framing code is wrong\n" + data_field +
                  "                field_parity=1 first field\n"
                  "                line_offset=0+7 = 7\n"
                  "                framing_code=0x27\n"
                  "!!! NOTICE: Nonstandard framing code\n"
                  "                magazine_and_packet_address=0xa1 [from bytes 4-5: 40>02>01 91>89>0a]\n"
                  "                    X/1 Y=20\n"
                  "          [raw] data: 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n"
                  "                      0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n"
                  "                      0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n"
                  "                      0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20 0x20           \n");
}

TEST_F(teletext_unit, a_wrong_framing_code_over_data_of_ones_prints_no_data)
{
    for (unsigned framing_code = 0; framing_code < 0xFF; ++framing_code)
        if (framing_code != 0xE4) {
            EXPECT_EQ(
                report_of(data_unit(0xE7, framing_code, 1, 20, repeated(0xFF, 40))),
                "!!! EBU teletext framing code is wrong\n" + data_field +
                    "                field_parity=1 first field\n"
                    "                line_offset=0+7 = 7\n"
                    "                framing_code=0x" +
                    two_digits(framing_code) +
                    "\n"
                    "!!! NOTICE: Nonstandard framing code\n"
                    "                magazine_and_packet_address=0xa1 [from bytes 4-5: 40>02>01 91>89>0a]\n"
                    "                    X/1 Y=20\n");
        }
}

/// One bit of byte 4 turned: the tests fail, magazine and row come from the nibble as it stands.
TEST_F(teletext_unit, a_flipped_address_bit_is_reported_and_not_corrected)
{
    bytes unit = data_unit(0xE7, 0xE4, 0, 0, repeated(0x04, 40));
    unit[2] ^= 0x40; // b1 after the reversal: tests A, B, C and D
    EXPECT_EQ(report_of(unit),
              "!!! EBU Teletext hamming8/4 error byte 4 ABCD\n" + data_field +
                  "                field_parity=1 first field\n"
                  "                line_offset=0+7 = 7\n"
                  "                framing_code=0xe4\n"
                  "                magazine_and_packet_address=0x01 [from bytes 4-5: e8>17>ff "
                  "a8>15>00]\n"
                  "                    X/1 Y=0\n" +
                  blank_rows);
}

TEST_F(teletext_unit, four_blanks_stand_for_failures_without_test_A)
{
    bytes unit = data_unit(0xE7, 0xE4, 0, 0, repeated(0x04, 40));
    unit[2] ^= 0x02; // b6 after the reversal: test D alone
    unit[3] ^= 0x04; // b5 after the reversal: tests B, C and D
    EXPECT_EQ(report_of(unit),
              "!!! EBU Teletext hamming8/4 error byte 4     \n"
              "!!! EBU Teletext hamming8/4 error byte 5     \n" +
                  data_field +
                  "                field_parity=1 first field\n"
                  "                line_offset=0+7 = 7\n"
                  "                framing_code=0xe4\n"
                  "                magazine_and_packet_address=0x40 [from bytes 4-5: aa>55>ff "
                  "ac>35>ff]\n"
                  "                    X/0 Y=8\n" +
                  blank_rows + "Displayable page contents: " + std::string(40, ' ') + "\n");
}

/// All 256 values of either address byte, beside a table computed from the four equations.
TEST_F(teletext_unit, every_address_byte_is_tested_as_the_equations_say)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    for (unsigned received = 0; received <= 0xFF; ++received) {
        const hamming_byte byte(received);
        const std::string fault = byte.passes() ? "" : byte.A_fails ? "ABCD" : "    ";
        bytes unit = data_unit(0xE7, 0xE4, 0, 0, repeated(0x04, 40));

        unit[2] = static_cast<uint8_t>(received);
        EXPECT_EQ(report_of(unit),
                  byte.passes() ? "" : "!!! EBU Teletext hamming8/4 error byte 4 " + fault + "\n");
        unit[2] = 0xA8;
        unit[3] = static_cast<uint8_t>(received);
        EXPECT_EQ(report_of(unit),
                  byte.passes() ? "" : "!!! EBU Teletext hamming8/4 error byte 5 " + fault + "\n");
    }
}

TEST_F(teletext_unit, every_address_byte_is_shown_received_reversed_and_checked)
{
    for (unsigned received = 0; received <= 0xFF; ++received) {
        const hamming_byte byte(received);
        const std::string shown = two_digits(received) + ">" + two_digits(byte.reversed) + ">" +
                                  (byte.passes() ? two_digits(byte.nibble) : "ff");
        bytes unit = data_unit(0xE7, 0x00, 0, 0, repeated(0xFF, 40));
        const auto expected = [&](const std::string &number, unsigned address, const std::string &bracket) {
            return (byte.passes() ? ""
                                  : "!!! EBU Teletext hamming8/4 error byte " + number + " " +
                                        (byte.A_fails ? "ABCD" : "    ") + "\n") +
                   "!!! EBU teletext framing code is wrong\n" + data_field +
                   "                field_parity=1 first field\n"
                   "                line_offset=0+7 = 7\n"
                   "                framing_code=0x00\n"
                   "!!! NOTICE: Nonstandard framing code\n"
                   "                magazine_and_packet_address=0x" +
                   two_digits(address) + " [from bytes 4-5: " + bracket + "]\n                    X/" +
                   std::to_string(address % 8) + " Y=" + std::to_string(address / 8) + "\n";
        };

        unit[2] = static_cast<uint8_t>(received);
        EXPECT_EQ(report_of(unit), expected("4", byte.nibble, shown + " a8>15>00"));
        unit[2] = 0xA8;
        unit[3] = static_cast<uint8_t>(received);
        EXPECT_EQ(report_of(unit), expected("5", 16 * byte.nibble, "a8>15>00 " + shown));
    }
}

TEST_F(teletext_unit, dump_mode_none_leaves_only_the_faults)
{
    settings.dump_descriptors_mode = dump_descriptors_none;
    EXPECT_EQ(report_of(data_unit(0xE7, 0xE4, 1, 20, repeated(0x04, 40))), "");
    EXPECT_EQ(report_of(repeated(0xFF, 44)), "");
    EXPECT_EQ(report_of(join({hex("E7 27 00 00"), repeated(0x04, 40)})),
              "!!! EBU Teletext hamming8/4 error byte 4 ABCD\n"
              "!!! EBU Teletext hamming8/4 error byte 5 ABCD\n"
              "!!! EBU teletext framing code is wrong\n");
}

TEST_F(teletext_unit, raw_mode_is_like_contents)
{
    const bytes unit = data_unit(0xE7, 0xE4, 1, 20, repeated(0x04, 40));
    const std::string contents = report_of(unit);
    settings.dump_descriptors_mode = dump_descriptors_raw;
    EXPECT_EQ(report_of(unit), contents);
}
