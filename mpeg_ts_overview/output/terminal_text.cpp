#include "mpeg_ts_overview/output/terminal_text.h"

#include <cstdint>

namespace {

constexpr uint32_t replacement_character = 0xFFFD;
constexpr std::string_view ellipsis = "...";

struct decoded_character {
    uint32_t code = replacement_character;
    size_t length = 1; ///< bytes
    bool valid = false;
};

/// The first character of a text that is not empty, RFC 3629.
decoded_character first_character(std::string_view text)
{
    const auto byte = [&](size_t i) { return static_cast<uint8_t>(text[i]); };
    const uint8_t lead = byte(0);
    if (lead < 0x80) return {lead, 1, true};
    const size_t length = lead >= 0xC2 && lead < 0xE0   ? 2
                          : (lead & 0xF0) == 0xE0       ? 3
                          : lead >= 0xF0 && lead < 0xF5 ? 4
                                                        : 0;
    if (length == 0 || text.size() < length) return {};
    uint32_t code = lead & (0x7FU >> length);
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return {};
        code = (code << 6) | (byte(i) & 0x3FU);
    }
    constexpr uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    if (code < least[length] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return {};
    return {code, length, true};
}

struct code_range {
    uint32_t first;
    uint32_t last;
};

/// C0, DEL and C1; ends of lines and paragraphs; embeddings, overrides and isolates of direction.
constexpr code_range controls[] = {
    {0x0000, 0x001F},
    {0x007F, 0x009F},
    {0x2028, 0x202E},
    {0x2066, 0x2069},
};

/// Marks that stand over the character before them, and characters of no width.
constexpr code_range without_width[] = {
    {0x0300, 0x036F},
    {0x0483, 0x0489},
    {0x0591, 0x05BD},
    {0x0610, 0x061A},
    {0x064B, 0x065F},
    {0x06D6, 0x06DC},
    {0x0E31, 0x0E31},
    {0x0E34, 0x0E3A},
    {0x0E47, 0x0E4E},
    {0x1AB0, 0x1AFF},
    {0x1DC0, 0x1DFF},
    {0x200B, 0x200F},
    {0x202A, 0x202E},
    {0x2060, 0x206F},
    {0x20D0, 0x20FF},
    {0xFE00, 0xFE0F},
    {0xFE20, 0xFE2F},
    {0xFEFF, 0xFEFF},
};

/// East_Asian_Width W and F of Unicode 15, pictures too; joined over what is not assigned.
constexpr code_range wide[] = {
    {0x1100,  0x115F },
    {0x231A,  0x231B },
    {0x2329,  0x232A },
    {0x23E9,  0x23EC },
    {0x23F0,  0x23F0 },
    {0x23F3,  0x23F3 },
    {0x25FD,  0x25FE },
    {0x2614,  0x2615 },
    {0x2648,  0x2653 },
    {0x267F,  0x267F },
    {0x2693,  0x2693 },
    {0x26A1,  0x26A1 },
    {0x26AA,  0x26AB },
    {0x26BD,  0x26BE },
    {0x26C4,  0x26C5 },
    {0x26CE,  0x26CE },
    {0x26D4,  0x26D4 },
    {0x26EA,  0x26EA },
    {0x26F2,  0x26F3 },
    {0x26F5,  0x26F5 },
    {0x26FA,  0x26FA },
    {0x26FD,  0x26FD },
    {0x2705,  0x2705 },
    {0x270A,  0x270B },
    {0x2728,  0x2728 },
    {0x274C,  0x274C },
    {0x274E,  0x274E },
    {0x2753,  0x2755 },
    {0x2757,  0x2757 },
    {0x2795,  0x2797 },
    {0x27B0,  0x27B0 },
    {0x27BF,  0x27BF },
    {0x2B1B,  0x2B1C },
    {0x2B50,  0x2B50 },
    {0x2B55,  0x2B55 },
    {0x2E80,  0x303E },
    {0x3041,  0x3247 },
    {0x3250,  0x4DBF },
    {0x4E00,  0xA4C6 },
    {0xA960,  0xA97C },
    {0xAC00,  0xD7A3 },
    {0xF900,  0xFAD9 },
    {0xFE10,  0xFE19 },
    {0xFE30,  0xFE6B },
    {0xFF01,  0xFF60 },
    {0xFFE0,  0xFFE6 },
    {0x16FE0, 0x1B2FB},
    {0x1F004, 0x1F004},
    {0x1F0CF, 0x1F0CF},
    {0x1F18E, 0x1F18E},
    {0x1F191, 0x1F19A},
    {0x1F200, 0x1F320},
    {0x1F32D, 0x1F335},
    {0x1F337, 0x1F37C},
    {0x1F37E, 0x1F393},
    {0x1F3A0, 0x1F3CA},
    {0x1F3CF, 0x1F3D3},
    {0x1F3E0, 0x1F3F0},
    {0x1F3F4, 0x1F3F4},
    {0x1F3F8, 0x1F43E},
    {0x1F440, 0x1F440},
    {0x1F442, 0x1F4FC},
    {0x1F4FF, 0x1F53D},
    {0x1F54B, 0x1F54E},
    {0x1F550, 0x1F567},
    {0x1F57A, 0x1F57A},
    {0x1F595, 0x1F596},
    {0x1F5A4, 0x1F5A4},
    {0x1F5FB, 0x1F64F},
    {0x1F680, 0x1F6C5},
    {0x1F6CC, 0x1F6CC},
    {0x1F6D0, 0x1F6D2},
    {0x1F6D5, 0x1F6DF},
    {0x1F6EB, 0x1F6EC},
    {0x1F6F4, 0x1F6FC},
    {0x1F7E0, 0x1F7F0},
    {0x1F90C, 0x1F93A},
    {0x1F93C, 0x1F945},
    {0x1F947, 0x1F9FF},
    {0x1FA70, 0x1FAF6},
    {0x20000, 0x3FFFD},
};

template <size_t count>
bool is_in(uint32_t code, const code_range (&ranges)[count])
{
    for (const code_range &range : ranges)
        if (code >= range.first && code <= range.last) return true;
    return false;
}

size_t columns_of_character(uint32_t code)
{
    if (code < 0x0300) return 1;
    if (is_in(code, without_width)) return 0;
    return is_in(code, wide) ? 2 : 1;
}

/// How many bytes at the start of the text fill at most that many columns.
size_t bytes_within(std::string_view text, size_t columns)
{
    size_t bytes = 0;
    while (bytes < text.size()) {
        const decoded_character character = first_character(text.substr(bytes));
        const size_t width = columns_of_character(character.code);
        if (width > columns) break;
        columns -= width;
        bytes += character.length;
    }
    return bytes;
}

} // namespace

std::string without_controls(std::string_view text)
{
    std::string clean;
    while (!text.empty()) {
        const decoded_character character = first_character(text);
        if (!character.valid)
            clean += "\xEF\xBF\xBD";
        else if (!is_in(character.code, controls))
            clean += text.substr(0, character.length);
        text.remove_prefix(character.length);
    }
    return clean;
}

size_t columns_of(std::string_view text)
{
    size_t columns = 0;
    while (!text.empty()) {
        const decoded_character character = first_character(text);
        columns += columns_of_character(character.code);
        text.remove_prefix(character.length);
    }
    return columns;
}

std::string cut_to(std::string_view text, size_t columns)
{
    const size_t whole = bytes_within(text, columns);
    if (whole == text.size()) return std::string(text);
    return std::string(text.substr(0, bytes_within(text, columns - ellipsis.size()))).append(ellipsis);
}

std::string filled_to(std::string_view text, size_t columns)
{
    std::string filled = cut_to(text, columns);
    filled.append(columns - columns_of(filled), ' ');
    return filled;
}

std::string wrapped(std::string_view first, const std::vector<std::string> &items, std::string_view between,
                    size_t indent)
{
    const std::string_view line_end = between.substr(0, between.find_last_not_of(' ') + 1);
    std::string text;
    std::string line(first);
    bool line_has_items = false;
    for (size_t i = 0; i < items.size(); ++i) {
        const size_t behind = i + 1 < items.size() ? columns_of(line_end) : 0;
        const std::string item = cut_to(items[i], line_columns - indent - behind);
        const size_t before = columns_of(line) + (line_has_items ? columns_of(between) : 0);
        if (columns_of(line) > indent && before + columns_of(item) + behind > line_columns) {
            text.append(line).append(line_has_items ? line_end : "").append("\n");
            line.assign(indent, ' ');
            line_has_items = false;
        }
        if (line_has_items) line += between;
        line += item;
        line_has_items = true;
    }
    return text.append(line).append("\n");
}
