// UTF-8 judged by the C library, which has no part in making it.
#pragma once

#include <iconv.h>

#include <cstddef>
#include <string>
#include <vector>

/// False where the C library's converters are not installed, as beside a cross compiler.
inline bool can_judge_text()
{
    const iconv_t descriptor = iconv_open("UTF-32BE", "UTF-8");
    const bool can = descriptor != reinterpret_cast<iconv_t>(-1);
    if (can) iconv_close(descriptor);
    return can;
}

/// True when the C library can read all of the text as UTF-8.
inline bool is_well_formed(std::string text)
{
    const iconv_t descriptor = iconv_open("UTF-32BE", "UTF-8");
    std::vector<char> out(4 * text.size() + 8);
    char *from = text.data();
    size_t from_left = text.size();
    char *to = out.data();
    size_t to_left = out.size();
    const size_t outcome = iconv(descriptor, &from, &from_left, &to, &to_left);
    iconv_close(descriptor);
    return outcome == 0 && from_left == 0;
}
