// Writes program association tables that name every program there is to standard output.
#include "tests/support/stream_builder.h"

#include <cstdio>

int main()
{
    constexpr unsigned programs_a_section = 250;
    constexpr unsigned last_program = 0xFFFF;
    stream_builder stream;

    for (unsigned first = 1; first <= last_program; first += programs_a_section) {
        std::vector<std::pair<unsigned, unsigned>> programs;
        for (unsigned i = first; i < first + programs_a_section && i <= last_program; ++i)
            programs.emplace_back(i, 0x0100);
        stream.section(0x0000, pat_section(0x0001, programs));
    }
    const bytes &content = stream.data();
    return std::fwrite(content.data(), 1, content.size(), stdout) == content.size() ? 0 : 1;
}
