// Writes a stream to standard output that asks for much memory:
//   make_flood programs   program association tables that name every program there is
//   make_flood all        also a guide table's announcement of every PID that is still free, and the longest
//                         section on every PID
#include "tests/support/stream_builder.h"

#include <cstdio>
#include <string_view>

namespace {

constexpr unsigned pid_count = 0x2000;
constexpr unsigned pmt_pid = 0x0020;
constexpr unsigned atsc_base_pid = 0x1FFB;

void add_programs(stream_builder &stream)
{
    constexpr unsigned programs_a_section = 250;
    constexpr unsigned last_program = 0xFFFF;

    for (unsigned first = 1; first <= last_program; first += programs_a_section) {
        std::vector<std::pair<unsigned, unsigned>> programs;
        for (unsigned i = first; i < first + programs_a_section && i <= last_program; ++i)
            programs.emplace_back(i, pmt_pid);
        stream.section(0x0000, pat_section(0x0001, programs));
    }
}

bool is_taken(unsigned pid)
{
    return pid == 0x0000 || (pid >= 0x0010 && pid <= 0x0012) || pid == pmt_pid || pid == atsc_base_pid;
}

void add_announcements(stream_builder &stream)
{
    constexpr unsigned first_EIT = 0x0100;
    constexpr unsigned pids_a_section = 128;

    for (unsigned first = 0; first < pid_count; first += pids_a_section) {
        bytes entries;
        unsigned count = 0;
        for (unsigned pid = first; pid < first + pids_a_section; ++pid) {
            if (is_taken(pid)) continue;
            entries = join(
                {entries, big_endian(first_EIT, 2), big_endian(0xE000 | pid, 2), hex("E0 00000000 F000")});
            ++count;
        }
        const bytes body = join({hex("00"), big_endian(count, 2), entries, hex("F000")});
        stream.section(atsc_base_pid, long_section(0xC7, 0x0000, body));
    }
}

void add_longest_sections(stream_builder &stream)
{
    const bytes longest = join({hex("00 CB FFFF"), repeated(0x55, 4095)});
    for (unsigned pid = 0; pid < pid_count; ++pid) stream.unit(pid, longest);
}

} // namespace

int main(int argc, char **argv)
{
    const std::string_view what = argc == 2 ? argv[1] : "";
    if (what != "programs" && what != "all") return 1;

    stream_builder stream;
    add_programs(stream);
    if (what == "all") {
        add_announcements(stream);
        add_longest_sections(stream);
    }
    const bytes &content = stream.data();
    return std::fwrite(content.data(), 1, content.size(), stdout) == content.size() ? 0 : 1;
}
