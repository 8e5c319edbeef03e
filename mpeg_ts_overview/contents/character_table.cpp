#include "mpeg_ts_overview/contents/character_table.h"

#include <cerrno>

#include "mpeg_ts_overview/contents/utf8_text.h"

namespace {

/// Room for one step of a conversion, in bytes; any size that holds one character works.
constexpr size_t step_size = 256;

const iconv_t no_descriptor = reinterpret_cast<iconv_t>(-1);

} // namespace

character_table::character_table(const char *name, iconv_opener open) : descriptor(open("UTF-8", name)) {}

character_table::~character_table()
{
    if (is_open()) iconv_close(descriptor);
}

bool character_table::is_open() const
{
    return descriptor != no_descriptor;
}

void character_table::append(std::string &text, const uint8_t *start, const uint8_t *fence)
{
    iconv(descriptor, nullptr, nullptr, nullptr, nullptr);

    // iconv does not write through its input pointer, whatever its type says.
    char *in = const_cast<char *>(reinterpret_cast<const char *>(start));
    auto in_left = static_cast<size_t>(fence - start);
    while (in_left > 0) {
        char step[step_size];
        char *out = step;
        size_t out_left = sizeof(step);
        const size_t in_before = in_left;
        const size_t outcome = iconv(descriptor, &in, &in_left, &out, &out_left);
        const int error = outcome == static_cast<size_t>(-1) ? errno : 0;
        text.append(step, out);

        const bool is_stuck = in_left == in_before && out == step;
        if (error == EINVAL) {
            append_code_point(text, replacement_character);
            return;
        }
        if (error == EILSEQ || (is_stuck && in_left > 0)) {
            append_code_point(text, replacement_character);
            ++in;
            --in_left;
        }
    }
}
