#include "text/utf8.h"

namespace {

constexpr unsigned replacement_character = 0xFFFD;

char continuation_byte(unsigned code, unsigned shift)
{
    return static_cast<char>(0x80 | ((code >> shift) & 0x3F));
}

} // namespace

void utf8_encode(char **w, const char *fence, unsigned code)
{
    if ((code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF) code = replacement_character;

    const unsigned length = code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
    if (fence - *w < static_cast<long>(length)) return;

    constexpr unsigned char first_byte_mark[] = {0, 0x00, 0xC0, 0xE0, 0xF0};
    unsigned shift = 6 * (length - 1);
    *(*w)++ = static_cast<char>(first_byte_mark[length] | (code >> shift));
    while (shift > 0) {
        shift -= 6;
        *(*w)++ = continuation_byte(code, shift);
    }
}
