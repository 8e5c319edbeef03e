#include "mpeg_ts_overview/contents/teletext_characters.h"

#include "text/utf8.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace {

constexpr char32_t replacement_character = 0xFFFD;
constexpr size_t national_count = 13;

/// The codes that a national option replaces, table 36.
constexpr uint8_t national_codes[national_count] = {0x23, 0x24, 0x40, 0x5B, 0x5C, 0x5D, 0x5E,
                                                    0x5F, 0x60, 0x7B, 0x7C, 0x7D, 0x7E};

/// By C12 C13 C14.
constexpr char32_t national_characters[8][national_count] = {
  // English: pound, dollar, at, arrow left, 1/2, arrow right, arrow up, number, dash, 1/4, double bar, 3/4,
  // division
    {0xA3, 0x24,  0x40,  0x2190, 0xBD,  0x2192, 0x2191, 0x23,  0x2014, 0xBC, 0x2016, 0xBE, 0xF7 },
 // German: number, dollar, section, A" O" U" circumflex, underscore, degree, a" o" u" sharp s
    {0x23, 0x24,  0xA7,  0xC4,   0xD6,  0xDC,   0x5E,   0x5F,  0xB0,   0xE4, 0xF6,   0xFC, 0xDF },
 // Swedish, Finnish, Hungarian: number, currency, E' A" O" A-ring U" underscore, e' a" o" a-ring u"
    {0x23, 0xA4,  0xC9,  0xC4,   0xD6,  0xC5,   0xDC,   0x5F,  0xE9,   0xE4, 0xF6,   0xE5, 0xFC },
 // Italian: pound, dollar, e', degree, c-cedilla, arrow right, arrow up, number, u` a` o` e` i`
    {0xA3, 0x24,  0xE9,  0xB0,   0xE7,  0x2192, 0x2191, 0x23,  0xF9,   0xE0, 0xF2,   0xE8, 0xEC },
 // French: e' i" a` e" e^ u` i^ number, e` a^ o^ u^ c-cedilla
    {0xE9, 0xEF,  0xE0,  0xEB,   0xEA,  0xF9,   0xEE,   0x23,  0xE8,   0xE2, 0xF4,   0xFB, 0xE7 },
 // Portuguese, Spanish: c-cedilla, dollar, inverted exclamation, a' e' i' o' u', inverted question, u"
  // n~ e` a`
    {0xE7, 0x24,  0xA1,  0xE1,   0xE9,  0xED,   0xF3,   0xFA,  0xBF,   0xFC, 0xF1,   0xE8, 0xE0 },
 // Czech, Slovak: number, u-ring, c t z with caron, y' i' r-caron, e' a' e-caron, u' s-caron
    {0x23, 0x16F, 0x10D, 0x165,  0x17E, 0xFD,   0xED,   0x159, 0xE9,   0xE1, 0x11B,  0xFA, 0x161},
 // reserved: as English
    {0xA3, 0x24,  0x40,  0x2190, 0xBD,  0x2192, 0x2191, 0x23,  0x2014, 0xBC, 0x2016, 0xBE, 0xF7 },
};

/// The characters that divide a cell in four: bit 0 is the upper left, 1 upper right, 2 lower left, 3 lower
/// right quarter.
constexpr char32_t quarters[16] = {0x20,   0x2598, 0x259D, 0x2580, 0x2596, 0x258C, 0x259E, 0x259B,
                                   0x2597, 0x259A, 0x2590, 0x259C, 0x2584, 0x2599, 0x259F, 0x2588};

/// A half of a block mosaic, three cells from the top, as its upper (1) and lower (2) quarter. The middle
/// goes with the upper one unless the lower one is lit and the upper one is not.
constexpr unsigned quarters_of_half(bool upper, bool middle, bool lower)
{
    return (upper || (middle && !lower) ? 1u : 0u) | (lower ? 2u : 0u);
}

/// EN 300 706 15.7.1: bits 0 and 1 are the upper cells, 2 and 3 the middle ones, 4 and 6 the lower ones.
constexpr char32_t mosaic(uint8_t code)
{
    const unsigned left = quarters_of_half(code & 0x01, code & 0x04, code & 0x10);
    const unsigned right = quarters_of_half(code & 0x02, code & 0x08, code & 0x40);
    return quarters[(left & 1) | (right & 1) << 1 | (left & 2) << 1 | (right & 2) << 2];
}

char32_t alphanumeric(uint8_t code, unsigned national_option)
{
    const auto *const national = std::find(std::begin(national_codes), std::end(national_codes), code);
    if (national != std::end(national_codes))
        return national_characters[national_option & 7][national - std::begin(national_codes)];
    return code == 0x7F ? char32_t{0x25A0} : char32_t{code};
}

/// Codes 0x40 to 0x5F are letters among mosaics too.
bool has_mosaic(uint8_t code)
{
    return (code & 0x20) != 0;
}

} // namespace

std::string teletext_row_text(const teletext_row &row, unsigned national_option)
{
    char text[4 * teletext_column_count + 1];
    char *w = text;
    bool mosaics = false;

    for (const uint8_t code : row) {
        char32_t character = ' ';
        if (code == teletext_wrong_parity)
            character = replacement_character;
        else if (code >= 0x20)
            character = mosaics && has_mosaic(code) ? mosaic(code) : alphanumeric(code, national_option);
        else if (code <= 0x07)
            mosaics = false; // alpha colours
        else if (code >= 0x10 && code <= 0x17)
            mosaics = true; // mosaic colours
        utf8_encode(&w, text + sizeof(text) - 1, character);
    }
    return {text, w};
}
