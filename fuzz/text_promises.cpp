#include "fuzz/text_promises.h"

#include "fuzz/support.h"

#include "text/utf8_valid.h"

#include <string>

void promise_utf8(std::string_view text)
{
    fuzz_promise(utf8_valid(text) == text);
}

void promise_no_controls(std::string_view text)
{
    promise_utf8(text);
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<uint8_t>(text[i]);
        fuzz_promise((byte >= 0x20 || byte == '\n') && byte != 0x7F);
        fuzz_promise(byte != 0xC2 || static_cast<uint8_t>(text[i + 1]) >= 0xA0);
    }
}
