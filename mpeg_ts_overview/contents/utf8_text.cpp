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

} // namespace

void append_code_point(std::string &text, unsigned code)
{
    char buffer[5] = {};
    char *w = buffer;
    utf8_encode(&w, buffer + sizeof(buffer) - 1, code);
    text.append(buffer, w);
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
