// A multiple_string_structure of ATSC: valid UTF-8, and what is cut says no other than the whole.
#include "fuzz/support.h"
#include "fuzz/text_promises.h"

#include "mpeg_ts_overview/contents/atsc_text.h"

#include <algorithm>

namespace {

/// Of a block of exactly that size.
std::vector<atsc_string> strings_of(const uint8_t *start, size_t size)
{
    const std::vector<uint8_t> block(start, start + size);
    return atsc_strings(block.data(), block.data() + block.size());
}

/// Of the last string the cut may have taken a part.
void check_cut(const std::vector<atsc_string> &cut, const std::vector<atsc_string> &whole)
{
    fuzz_promise(cut.size() <= whole.size());
    for (size_t i = 0; i < cut.size(); ++i) {
        fuzz_promise(cut[i].language == whole[i].language);
        fuzz_promise(i + 1 == cut.size() || cut[i].text == whole[i].text);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz_input in = {data, data + size};
    const size_t cut_by = in.word();
    const std::vector<atsc_string> strings = strings_of(in.p, in.left());

    fuzz_promise(strings.size() <= 255);
    size_t characters = 0;
    for (const atsc_string &string : strings) {
        promise_utf8(string.language);
        promise_utf8(string.text);
        fuzz_promise(string.language.size() >= 3 && string.language.size() <= 6);
        characters += string.text.size();
    }
    // "(compressed)" is longer than any segment that says so; else a byte is at most three of UTF-8.
    fuzz_promise(characters <= 13 * in.left());
    check_cut(strings_of(in.p, in.left() - std::min(cut_by, in.left())), strings);
    return 0;
}
