#include "tests/support/hex.h"

#include <algorithm>

namespace {

int digit_value(char character)
{
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

} // namespace

bytes hex(std::string_view digits)
{
    bytes out;
    int high = -1;

    for (const char character : digits) {
        const int value = digit_value(character);
        if (value < 0) continue;
        if (high < 0) {
            high = value;
        } else {
            out.push_back(static_cast<uint8_t>(high * 16 + value));
            high = -1;
        }
    }
    return out;
}

bytes text_bytes(std::string_view text)
{
    return bytes(text.begin(), text.end());
}

bytes join(std::initializer_list<bytes> parts)
{
    size_t size = 0;
    for (const bytes &part : parts) size += part.size();
    bytes out(size);
    uint8_t *end = out.data();
    for (const bytes &part : parts) end = std::copy_n(part.data(), part.size(), end);
    return out;
}

bytes repeated(uint8_t byte, size_t count)
{
    return bytes(count, byte);
}

bytes big_endian(unsigned long long number, unsigned size)
{
    bytes out(size);
    for (unsigned i = 0; i < size; ++i) out[size - 1 - i] = static_cast<uint8_t>(number >> (8 * i));
    return out;
}
