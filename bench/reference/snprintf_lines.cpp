// Lines with three numbers by the C library's formatting: snprintf_lines <count>, to standard output in large
// blocks.
#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <vector>

int main(int argc, char **argv)
{
    const unsigned long count = argc == 2 ? std::strtoul(argv[1], nullptr, 0) : 0;
    constexpr size_t longest_line = 256;
    std::vector<char> text(65536);
    size_t held = 0;

    for (unsigned long i = 0; i < count; ++i) {
        const auto number = static_cast<unsigned>(i);
        held += static_cast<size_t>(std::snprintf(text.data() + held, longest_line,
                                                  "    Now tracking PID 0x%04x type=0x%04x number %u\n",
                                                  number & 0x1FFF, number & 0xFFFF, number % 1000));
        if (held + longest_line > text.size()) {
            if (write(STDOUT_FILENO, text.data(), held) < 0) return 1;
            held = 0;
        }
    }
    return write(STDOUT_FILENO, text.data(), held) < 0 ? 1 : 0;
}
