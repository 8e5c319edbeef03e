#include "mpeg_ts_analysis/teletext/teletext_unit.h"

#include "mpeg_ts_analysis/report/names.h"
#include "mpeg_ts_analysis/report/report.h"
#include "mpeg_ts_analysis/state/process_state.h"
#include "mpeg_ts_analysis/teletext/hamming.h"

#include <algorithm>

namespace {

constexpr uint8_t stuffing = 0xFF;
constexpr uint8_t framing_code_EBU = 0xE4;
constexpr unsigned data_block_offset = 4;
constexpr unsigned data_block_size = 40;
constexpr unsigned row_size = 10;
constexpr unsigned first_page_row = 1;
constexpr unsigned last_page_row = 25;

constexpr const char *colour_names[] = {"black", "red",     "green", "yellow",
                                        "blue",  "magenta", "cyan",  "white"};
constexpr const char *spacing_attribute_names[] = {"<NORMALSIZE>", "<DOUBLEHEIGHT>", "<DOUBLEWIDTH>",
                                                   "<DOUBLESIZE>"};

/// A character as it is shown: parity taken off.
uint8_t character_of(uint8_t byte)
{
    return reverse_bits(byte) & 0x7F;
}

void check_hamming(unsigned byte_number, uint8_t byte)
{
    const unsigned failures = hamming_8_4_failures(reverse_bits(byte));
    if (failures == 0) return;
    // kept: all four letters go by test A alone.
    const bool lettered = (failures & hamming_test_A) != 0;
    report_printf("!!! EBU Teletext hamming8/4 error byte %u %s\n", byte_number, lettered ? "ABCD" : "    ");
}

void print_line_number(uint8_t field_byte)
{
    const bool first_field = (field_byte & 0x20) != 0;
    const unsigned line_base = first_field ? 0 : 313;
    const unsigned line_offset = field_byte & 0x1F;

    report_printf("                field_parity=%u %s\n", first_field,
                  first_field ? "first field" : "second field");
    if (line_offset == 0)
        report_line("                line_offset=N/A");
    else
        report_printf("                line_offset=%u+%u = %u\n", line_base, line_offset,
                      line_base + line_offset);
}

void print_characters(const uint8_t *row)
{
    for (unsigned i = 0; i < row_size; ++i) {
        const uint8_t character = character_of(row[i]);
        report_printf("%c", character >= 0x20 && character <= 0x7E ? character : '.');
    }
    report_line("");
}

void print_display_rows(const uint8_t *data)
{
    for (unsigned row = 0; row < data_block_size; row += row_size) {
        report_printf("%s", row == 0 ? "      [display] data: " : "                      ");
        for (unsigned i = row; i < row + row_size; ++i) {
            const uint8_t reversed = reverse_bits(data[i]);
            report_printf("0x%02x%c", reversed, has_odd_parity(reversed) ? ' ' : '!');
        }
        print_characters(data + row);
    }
}

void print_raw_rows(const uint8_t *data)
{
    for (unsigned row = 0; row < data_block_size; row += row_size) {
        report_printf("%s", row == 0 ? "          [raw] data: " : "                      ");
        for (unsigned i = row; i < row + row_size; ++i) report_printf("0x%02x ", reverse_bits(data[i]));
        print_characters(data + row);
    }
}

/// One character of a page row; the box codes are sent twice and shown once.
void print_page_character(uint8_t character, uint8_t previous)
{
    if (character <= 0x07) {
        report_printf("<ALPHA %s>", name_of(colour_names, character));
        if (settings.colour_output) report_printf("\033[%um", 30u + character);
    } else if (character == 0x0A) {
        if (previous != character) report_printf("<ENDBOX>");
    } else if (character == 0x0B) {
        if (previous != character) report_printf("<STARTBOX>");
    } else if (character >= 0x0C && character <= 0x0F) {
        report_printf("%s", name_of(spacing_attribute_names, character - 0x0Cu));
    } else if (character < 0x20) {
        report_printf("<Unknown 0x%02x>", character);
    } else {
        report_printf("%c", character);
    }
}

void print_page_contents(const uint8_t *data)
{
    uint8_t previous = 0;

    report_printf("Displayable page contents: ");
    for (unsigned i = 0; i < data_block_size; ++i) {
        const uint8_t character = character_of(data[i]);
        print_page_character(character, previous);
        previous = character;
    }
    if (settings.colour_output) report_printf("\033[0m");
    report_line("");
}

struct packet_address {
    unsigned address = 0xFF;
    unsigned magazine = 0xFF; ///< 0 to 7
    unsigned row = 0xFF;      ///< 0 to 31
};

packet_address read_address(const uint8_t *d)
{
    packet_address at;

    check_hamming(4, d[2]);
    check_hamming(5, d[3]);
    at.address = hamming_8_4_nibble(reverse_bits(d[2])) + 16u * hamming_8_4_nibble(reverse_bits(d[3]));
    at.magazine = at.address & 7;
    at.row = at.address >> 3;
    return at;
}

void print_data_block(const uint8_t *d, unsigned row)
{
    const uint8_t *const data = d + data_block_offset;

    if (d[1] == framing_code_EBU) {
        print_display_rows(data);
        if (row >= first_page_row && row <= last_page_row) print_page_contents(data);
    } else if (!std::all_of(data, data + data_block_size, [](uint8_t byte) { return byte == stuffing; })) {
        print_raw_rows(data);
    }
}

} // namespace

void teletext_decode_data_unit(const uint8_t *d)
{
    const uint8_t framing_code = d[1];
    const bool stuffing_unit = d[1] == stuffing && d[2] == stuffing && d[3] == stuffing;
    const bool wrong_framing = framing_code != stuffing && framing_code != framing_code_EBU;
    const packet_address at = stuffing_unit ? packet_address{} : read_address(d);

    if (wrong_framing) report_line("!!! EBU teletext framing code is wrong");
    if (settings.dump_descriptors_mode == dump_descriptors_none) return;
    report_line("            data_field() [Teletext/ETSI EN 300 472 section 4.3 table 2]");
    print_line_number(d[0]);
    report_printf("                framing_code=0x%02x\n", framing_code);
    if (wrong_framing) report_line("!!! NOTICE: Nonstandard framing code");
    const uint8_t reversed_4 = reverse_bits(d[2]);
    const uint8_t reversed_5 = reverse_bits(d[3]);
    report_printf(
        "                magazine_and_packet_address=0x%02x [from bytes 4-5: %02x>%02x>%02x %02x>%02x>%02x]\n",
        at.address, d[2], reversed_4, hamming_8_4_checked_nibble(reversed_4), d[3], reversed_5,
        hamming_8_4_checked_nibble(reversed_5));
    if (framing_code != stuffing) report_printf("                    X/%u Y=%u\n", at.magazine, at.row);
    print_data_block(d, at.row);
}
