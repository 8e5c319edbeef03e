#include "text/utf8_valid.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// What may stand in the second byte behind a first one, and the size of the sequence (RFC 3629, 4); 0 for a
/// byte that begins none.
struct sequence_rule {
    size_t size;
    unsigned lowest_second;
    unsigned highest_second;
};

sequence_rule rule_of(unsigned first)
{
    if (first < 0x80) return {1, 0, 0};
    if (first >= 0xC2 && first <= 0xDF) return {2, 0x80, 0xBF};
    if (first == 0xE0) return {3, 0xA0, 0xBF};
    if (first == 0xED) return {3, 0x80, 0x9F};
    if (first >= 0xE1 && first <= 0xEF) return {3, 0x80, 0xBF};
    if (first == 0xF0) return {4, 0x90, 0xBF};
    if (first >= 0xF1 && first <= 0xF3) return {4, 0x80, 0xBF};
    if (first == 0xF4) return {4, 0x80, 0x8F};
    return {0, 0, 0};
}

/// How many bytes at the front of the text fit the rule.
size_t fitting_bytes(std::string_view text, const sequence_rule &rule)
{
    size_t fitting = 1;
    while (fitting < rule.size && fitting < text.size()) {
        const auto byte = static_cast<unsigned char>(text[fitting]);
        const unsigned lowest = fitting == 1 ? rule.lowest_second : 0x80;
        const unsigned highest = fitting == 1 ? rule.highest_second : 0xBF;
        if (byte < lowest || byte > highest) break;
        ++fitting;
    }
    return fitting;
}

/// How many bytes at the front are ASCII, or a few less.
size_t ascii_bytes(std::string_view text)
{
    constexpr uint64_t high_bits = 0x8080808080808080;
    size_t size = 0;

    for (uint64_t eight = 0; size + sizeof(eight) <= text.size(); size += sizeof(eight)) {
        std::memcpy(&eight, text.data() + size, sizeof(eight));
        if ((eight & high_bits) != 0) break;
    }
    return size;
}

} // namespace

std::string utf8_valid(std::string_view text)
{
    std::string valid(text.substr(0, ascii_bytes(text)));
    text.remove_prefix(valid.size());

    while (!text.empty()) {
        const sequence_rule rule = rule_of(static_cast<unsigned char>(text[0]));
        const size_t fitting = fitting_bytes(text, rule);
        valid += fitting == rule.size ? text.substr(0, fitting) : replacement;
        text.remove_prefix(fitting);
    }
    return valid;
}
