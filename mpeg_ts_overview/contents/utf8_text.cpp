#include "mpeg_ts_overview/contents/utf8_text.h"

#include "text/utf8.h"

namespace {

bool is_high_surrogate(unsigned unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool is_low_surrogate(unsigned unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// What may stand in the second byte behind a first one, and how many bytes follow it (RFC 3629, 4).
struct sequence_rule {
    unsigned first_code_bits;
    unsigned bytes_behind;
    unsigned lowest_second;
    unsigned highest_second;
};

/// bytes_behind is 0 for a byte that begins no sequence.
sequence_rule rule_of(unsigned first)
{
    if (first >= 0xC2 && first <= 0xDF) return {first & 0x1F, 1, 0x80, 0xBF};
    if (first == 0xE0) return {0x0, 2, 0xA0, 0xBF};
    if (first == 0xED) return {0xD, 2, 0x80, 0x9F};
    if (first >= 0xE1 && first <= 0xEF) return {first & 0x0F, 2, 0x80, 0xBF};
    if (first == 0xF0) return {0x0, 3, 0x90, 0xBF};
    if (first >= 0xF1 && first <= 0xF3) return {first & 0x07, 3, 0x80, 0xBF};
    if (first == 0xF4) return {0x4, 3, 0x80, 0x8F};
    return {0, 0, 0, 0};
}

const uint8_t *bytes_of(std::string_view text)
{
    return reinterpret_cast<const uint8_t *>(text.data());
}

} // namespace

void append_code_point(std::string &text, unsigned code)
{
    char buffer[5] = {};
    char *w = buffer;
    utf8_encode(&w, buffer + sizeof(buffer) - 1, code);
    text.append(buffer, w);
}

unsigned next_utf8_code_point(const uint8_t **position, const uint8_t *fence)
{
    const unsigned first = *(*position)++;
    if (first < 0x80) return first;

    const sequence_rule rule = rule_of(first);
    if (rule.bytes_behind == 0) return replacement_character;
    unsigned code = rule.first_code_bits;
    for (unsigned i = 0; i < rule.bytes_behind; ++i) {
        const unsigned lowest = i == 0 ? rule.lowest_second : 0x80;
        const unsigned highest = i == 0 ? rule.highest_second : 0xBF;
        if (*position == fence || **position < lowest || **position > highest) return replacement_character;
        code = code << 6 | (*(*position)++ & 0x3Fu);
    }
    return code;
}

unsigned next_utf16_code_point(const uint8_t **position, const uint8_t *fence)
{
    const auto unit_at = [](const uint8_t *p) { return static_cast<unsigned>(p[0]) << 8 | p[1]; };
    if (fence - *position < 2) {
        *position = fence;
        return replacement_character;
    }
    const unsigned unit = unit_at(*position);
    *position += 2;
    if (is_low_surrogate(unit)) return replacement_character;
    if (!is_high_surrogate(unit)) return unit;

    if (fence - *position < 2 || !is_low_surrogate(unit_at(*position))) return replacement_character;
    const unsigned low = unit_at(*position);
    *position += 2;
    return 0x10000 + ((unit & 0x3FF) << 10 | (low & 0x3FF));
}

std::string utf16_text(const uint8_t *start, const uint8_t *fence)
{
    std::string text;
    while (start < fence) append_code_point(text, next_utf16_code_point(&start, fence));
    return text;
}

std::string latin_1_text(const uint8_t *start, const uint8_t *fence)
{
    std::string text;
    for (; start < fence; ++start) append_code_point(text, *start);
    return text;
}

std::string valid_utf8(std::string_view text)
{
    std::string valid;
    const uint8_t *const fence = bytes_of(text) + text.size();
    for (const uint8_t *p = bytes_of(text); p < fence;)
        append_code_point(valid, next_utf8_code_point(&p, fence));
    return valid;
}
