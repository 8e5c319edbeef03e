// Two texts of DVB: valid UTF-8 whatever they are, the same again whatever came between.
#include "fuzz/support.h"
#include "fuzz/text_promises.h"

#include "mpeg_ts_overview/contents/dvb_text.h"

#include <algorithm>
#include <vector>

namespace {

using byte_list = std::vector<uint8_t>;

const std::string encoded = "(encoded)";
constexpr uint8_t line_end = 0x8A;

std::string text_of(dvb_text_converter &converter, const byte_list &field)
{
    return converter.text(field.data(), field.data() + field.size());
}

iconv_t no_table(const char *, const char *)
{
    return reinterpret_cast<iconv_t>(-1);
}

/// Bytes of the field that select a table of single bytes, or nothing when they select another.
bool selects_single_bytes(const byte_list &field, size_t *selector)
{
    const uint8_t first = field.empty() ? uint8_t{0} : field[0];
    *selector = first >= 0x20 ? 0 : first == 0x10 ? 3 : 1;
    return first >= 0x20 || (first == 0x10 && field.size() >= 3) || (first >= 1 && first <= 0xB);
}

/// A line end between two texts of one table stands between what they are alone.
void check_line_end(dvb_text_converter &converter, const byte_list &field)
{
    size_t selector = 0;
    if (!selects_single_bytes(field, &selector)) return;
    const size_t half = selector + (field.size() - selector) / 2;
    const auto middle = field.begin() + static_cast<ptrdiff_t>(half);
    const byte_list before(field.begin(), middle);
    byte_list behind(field.begin(), field.begin() + static_cast<ptrdiff_t>(selector));
    behind.insert(behind.end(), middle, field.end());
    const bool selects_another = selector == 0 && !behind.empty() && behind[0] < 0x20;
    if (selects_another || before.size() == selector || behind.size() == selector) return;

    byte_list both = before;
    both.push_back(line_end);
    both.insert(both.end(), middle, field.end());
    const std::string text = text_of(converter, both);
    if (text == encoded) return;
    fuzz_promise(text == text_of(converter, before) + "\n" + text_of(converter, behind));
}

void check_text(const byte_list &field, const std::string &text)
{
    promise_utf8(text);
    // No table has characters of more than four bytes, nor more than two for a byte.
    fuzz_promise(text.size() <= std::max(encoded.size(), 8 * field.size()));
    fuzz_promise(text.empty() || !field.empty());
    const bool is_ascii =
        std::all_of(field.begin(), field.end(), [](uint8_t byte) { return byte >= 0x20 && byte < 0x80; });
    if (is_ascii) fuzz_promise(text == std::string(field.begin(), field.end()));

    dvb_text_converter without_tables(no_table);
    const std::string plain = text_of(without_tables, field);
    fuzz_promise(plain == text || plain == encoded);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    const fuzz_input first_part = in.part(in.byte());
    const byte_list first(first_part.p, first_part.fence);
    const byte_list second(in.p, in.fence);

    dvb_text_converter converter;
    const std::string text = text_of(converter, first);
    check_text(first, text);
    check_text(second, text_of(converter, second));
    fuzz_promise(text_of(converter, first) == text);
    check_line_end(converter, first);
    check_line_end(converter, second);
    return 0;
}
